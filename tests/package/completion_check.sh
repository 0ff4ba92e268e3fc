#!/usr/bin/env bash
# The tool's bash completion, sourced as bash-completion sources it: command
# lines and what TAB offers at their end; then every command, subcommand and
# option that the built tool's --help lists must be completed, and every
# command must have its entry in the manual page.
#
#   completion_check.sh korvalen.bash TOOL MANUAL_PAGE
set -uo pipefail
script=$(realpath "${1:?completion script}")
tool=$(realpath "${2:?built tool}")
page=$(realpath "${3:?manual page}")

# shellcheck source=/dev/null
source /usr/share/bash-completion/bash_completion
# shellcheck source=/dev/null
source "$script"
failures=0
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }

# offered LINE: the sorted words TAB offers at the end of LINE.
offered() {
  local line=$1
  COMP_LINE=$line
  COMP_POINT=${#line}
  read -ra COMP_WORDS <<<"$line"
  [[ $line == *' ' ]] && COMP_WORDS+=("")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  COMPREPLY=()
  _korvalen korvalen "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
  printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' ' | sed 's/ $//'
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
mkdir inst
touch inst/UNIDADES.CFG inst/UNITS.TXT info.txt

while IFS='|' read -r line expected; do
  got=$(offered "$line")
  [[ $got == "$expected" ]] || fail "'$line' offers '$got', not '$expected'"
done <<'CASES'
korvalen ca|catalog
korvalen -|--help --version
korvalen cfg |dump get set
korvalen errors |clear list show
korvalen catalog install |exporters importers machines
korvalen catalog formats --language 2 |CFG EXP IMP LST
korvalen columns parts|parts parts-window
korvalen send --parity |E M N O
korvalen send --port 1 --stop |1 1.5 2
korvalen text convert --to |ansi utf16
korvalen text cat --|--directory --help --json
korvalen cfg dump -C inst UNI|UNIDADES.CFG UNITS.TXT
korvalen cfg set -C inst UNIDADES.CFG |
korvalen state -C in|inst
korvalen translate in|info.txt inst
korvalen figures 3 |
CASES

# What the built tool lists, read from its --help: "Subcommands:" entries and
# the long options of "Options:".
listed() {
  "$tool" "$@" --help 2>/dev/null | awk '
    /^[A-Za-z]+:/ { section = $1; next }
    section == "SUBCOMMANDS:" || section == "Subcommands:" { if ($1 ~ /^[a-z]/) print "command " $1 }
    section == "OPTIONS:" || section == "Options:" {
      n = split($1, names, ",")
      for (i = 1; i <= n; i++) if (names[i] ~ /^--/) print "option " names[i]
    }'
}
checked=0
check_command() {
  local kind name
  while read -r kind name; do
    [[ $name == --help ]] && continue
    checked=$((checked + 1))
    if [[ $kind == command ]]; then
      [[ " $(offered "korvalen $* ") " == *" $name "* ]] || fail "'korvalen $*' does not complete $name"
      if [[ $# -eq 0 ]]; then
        grep -Eq "^\.B[IR]? \"?$name( |\"|$)" "$page" || fail "the manual page has no entry for $name"
      fi
      check_command "$@" "$name"
    else
      [[ " $(offered "korvalen $* --") " == *" $name "* ]] || fail "'korvalen $*' does not complete $name"
    fi
  done < <(listed "$@")
}
check_command
[[ $checked -gt 20 ]] || fail "only $checked commands and options read from the tool's --help"

echo "completion: $checked commands and options of the tool checked, $failures failure(s)"
[[ $failures -eq 0 ]]
