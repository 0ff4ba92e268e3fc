# bash completion for the korvalen tool: commands, subcommands, options, the
# words an argument takes, and files or directories where one is expected.
# Installed as share/bash-completion/completions/korvalen.

_korvalen() {
  local cur prev words cword
  _init_completion || return

  local commands="cfg state params settings migrate lang catalog figures favorites columns
    machine errors text send translate doctor"

  # The command, its subcommand and how many arguments precede the word.
  local i word command="" subcommand="" args=0 directory=""
  for ((i = 1; i < cword; i++)); do
    word=${words[i]}
    case $word in
      -C | --directory)
        directory=${words[i + 1]}
        ((i++))
        continue
        ;;
      --port | --baud | --parity | --data | --stop | --handshake | --translate | --to | \
        --language | --machine)
        ((i++))
        continue
        ;;
      -*) continue ;;
    esac
    if [[ -z $command ]]; then
      command=$word
    elif [[ -z $subcommand && $command == @(cfg|lang|catalog|favorites|errors|text) ]]; then
      subcommand=$word
    else
      ((args++))
    fi
  done

  case $prev in
    -C | --directory)
      _filedir -d
      return
      ;;
    --translate)
      _filedir
      return
      ;;
    --parity) COMPREPLY=($(compgen -W "N O E M" -- "$cur")) && return ;;
    --data) COMPREPLY=($(compgen -W "5 6 7 8" -- "$cur")) && return ;;
    --stop) COMPREPLY=($(compgen -W "1 1.5 2" -- "$cur")) && return ;;
    --handshake) COMPREPLY=($(compgen -W "none xon rts" -- "$cur")) && return ;;
    --to) COMPREPLY=($(compgen -W "utf16 ansi" -- "$cur")) && return ;;
    --port | --baud | --language | --machine) return ;;
  esac

  if [[ -z $command ]]; then
    COMPREPLY=($(compgen -W "$commands --help --version" -- "$cur"))
    return
  fi

  # Options: -C and --help everywhere, --json on the reading commands.
  local options="-C --directory --help" json="--json" subcommands="" words_here="" files=""
  case $command in
    cfg)
      subcommands="dump get set"
      case $subcommand in
        dump) options+=" --comments $json" ;;
        get) options+=" $json" ;;
      esac
      [[ $subcommand && $args -eq 0 ]] && files=file
      ;;
    lang)
      subcommands="list strings"
      [[ $subcommand ]] && options+=" $json"
      [[ $subcommand == strings && $args -eq 0 ]] && files=file
      ;;
    catalog)
      subcommands="machines importers exporters formats install remove"
      case $subcommand in
        formats)
          options+=" --language $json"
          ((args == 0)) && words_here="IMP EXP LST CFG"
          ;;
        install | remove) ((args == 0)) && words_here="machines importers exporters" ;;
        ?*) options+=" $json" ;;
      esac
      ;;
    favorites)
      subcommands="add remove"
      [[ $subcommand ]] || options+=" $json"
      ;;
    errors)
      subcommands="list show clear"
      [[ $subcommand == clear ]] || options+=" $json"
      ;;
    text)
      subcommands="cat convert"
      case $subcommand in
        cat)
          options+=" $json"
          ((args == 0)) && files=file
          ;;
        convert)
          options+=" --to"
          ((args < 2)) && files=file
          ;;
      esac
      ;;
    state | params | machine | doctor | figures) options+=" $json" ;;
    settings) options+=" --machine $json" ;;
    columns)
      options+=" $json"
      ((args == 0)) && words_here="parts figures sheets lists parts-window sheets-window"
      ;;
    send)
      options+=" --port --baud --parity --data --stop --handshake --translate"
      ((args == 0)) && files=file
      ;;
    translate) ((args < 3)) && files=file ;;
    migrate) ;;
    *) return ;;
  esac

  if [[ $cur == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$cur"))
  elif [[ $subcommands && -z $subcommand ]]; then
    COMPREPLY=($(compgen -W "$subcommands" -- "$cur"))
  elif [[ $words_here ]]; then
    COMPREPLY=($(compgen -W "$words_here" -- "$cur"))
  elif [[ $files && $directory && $cur != /* ]]; then
    # A relative file argument is taken inside the -C directory.
    local IFS=$'\n'
    COMPREPLY=($(cd -- "$directory" 2>/dev/null && compgen -f -- "$cur"))
    compopt -o filenames 2>/dev/null
  elif [[ $files ]]; then
    _filedir
  fi
} &&
  complete -F _korvalen korvalen
