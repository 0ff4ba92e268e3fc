#!/usr/bin/env bash
# Compares the export table of the built library with exports/korvalen.exports.
#
#   check_exports.sh --list FILE --library LIB --format elf|pe
#                    [--nm NM] [--objdump OBJDUMP] [--cxxfilt CXXFILT]
#
# elf: the dynamic symbols that LIB defines (nm -D --defined-only).
# pe:  the names of the DLL's export directory (objdump -p).
# Every symbol is demangled and reduced to the name the list uses: a free
# function's name, or the class of a member, vtable, typeinfo or thunk.
# Fails, listing each offender, when a '+' name is not exported, a '-' name is
# exported, or an exported name is not in the list at all.
set -euo pipefail

list="" library="" format="" nm_tool=nm objdump_tool=objdump cxxfilt_tool=c++filt
while [ $# -gt 0 ]; do
  case "$1" in
    --list) list=$2; shift 2 ;;
    --library) library=$2; shift 2 ;;
    --format) format=$2; shift 2 ;;
    --nm) nm_tool=$2; shift 2 ;;
    --objdump) objdump_tool=$2; shift 2 ;;
    --cxxfilt) cxxfilt_tool=$2; shift 2 ;;
    *) echo "check_exports: unknown argument $1" >&2; exit 2 ;;
  esac
done
for f in "$list" "$library"; do
  [ -f "$f" ] || { echo "check_exports: no such file: '$f'" >&2; exit 2; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# --- the list -----------------------------------------------------------------
# One line per name: mark, name, and "C" when it must have C linkage.
awk -v file="$list" -v format="$format" '
  /^[[:space:]]*(#|$)/ { next }
  {
    line = $0
    c = (line ~ /#.*extern "C"/) ? "C" : "-"
    posix_only = (line ~ /#.*POSIX only/)
    sub(/[[:space:]]*#.*/, "", line)
    n = split(line, f, /[[:space:]]+/)
    if (n != 2 || (f[1] != "+" && f[1] != "-") || f[2] !~ /^[A-Za-z_][A-Za-z0-9_]*$/) {
      printf "%s:%d: not a \"+ Name\" or \"- Name\" line: %s\n", file, NR, $0 > "/dev/stderr"
      bad = 1; next
    }
    if (f[2] in seen) {
      printf "%s:%d: %s is listed twice\n", file, NR, f[2] > "/dev/stderr"
      bad = 1; next
    }
    seen[f[2]] = 1
    # What the library gives only where the system does not: not exported on
    # Windows, where the system has it.
    if (posix_only && format == "pe") f[1] = "-"
    print f[1], f[2], c
  }
  END { exit bad }' "$list" >"$work/list" || { echo "check_exports: malformed list" >&2; exit 1; }

# --- the export table -----------------------------------------------------------
case "$format" in
  elf)
    # Absolute and linker-made symbols are not the library's interface.
    "$nm_tool" -D --defined-only "$library" |
      awk 'NF >= 3 && $2 != "A" { print $3 }' |
      grep -vxE '_init|_fini|_edata|_end|__bss_start' >"$work/raw" || true
    ;;
  pe)
    # The name pointer table: "[   n] +base[   m]  hint name" (binutils 2.40),
    # or "[n] name" in older versions; the name is always the last field.
    "$objdump_tool" -p "$library" |
      awk '/^\[Ordinal\/Name Pointer\] Table/ { on = 1; next }
           on && /^[[:space:]]*\[[[:space:]]*[0-9]+\]/ { print $NF; next }
           on && NF == 0 { on = 0 }' >"$work/raw"
    ;;
  *) echo "check_exports: --format must be elf or pe" >&2; exit 2 ;;
esac
# Export names carry no platform underscore, so demangle them as they stand.
if [ "$format" = pe ]; then
  "$cxxfilt_tool" -n <"$work/raw" >"$work/demangled"
else
  "$cxxfilt_tool" <"$work/raw" >"$work/demangled"
fi
[ "$(wc -l <"$work/raw")" -eq "$(wc -l <"$work/demangled")" ] ||
  { echo "check_exports: demangler changed the line count" >&2; exit 1; }

# raw symbol, demangled text, base name
paste -d '\t' "$work/raw" "$work/demangled" | awk -F '\t' '
  function strip_templates(s,   out, depth, i, ch) {
    out = ""; depth = 0
    for (i = 1; i <= length(s); i++) {
      ch = substr(s, i, 1)
      if (ch == "<" && substr(s, i - 8, 8) != "operator") { depth++; continue }
      if (ch == ">" && depth > 0) { depth--; continue }
      if (depth == 0) out = out ch
    }
    return out
  }
  {
    raw = $1; text = $2; s = text
    # Type information of function, pointer and builtin types: clang emits it
    # for the function checks of UndefinedBehaviorSanitizer.
    if (text ~ /^typeinfo (name )?for /) {
      subject = text
      sub(/^typeinfo (name )?for /, "", subject)
      if (subject ~ /[(*&]/ || subject ~ /^((unsigned|signed|short|long|int|char|wchar_t|char8_t|char16_t|char32_t|bool|float|double|void|const|volatile|__int128|decltype\(nullptr\)) ?)+$/) {
        print raw "\t" text "\t" "<builtin>"
        next
      }
    }
    sub(/^(typeinfo name for |typeinfo for |vtable for |VTT for |guard variable for |non-virtual thunk to |virtual thunk to |covariant return thunk to |construction vtable for )/, "", s)
    # "construction vtable for Base-in-Derived" belongs to Derived.
    if (text ~ /^construction vtable for /) sub(/^.*-in-/, "", s)
    s = strip_templates(s)
    p = index(s, "(")
    if (p > 0) s = substr(s, 1, p - 1)
    q = index(s, "::")
    if (q > 0) {
      # Scope of a member: the word just before the first "::".
      head = substr(s, 1, q - 1)
      n = split(head, w, " ")
      base = w[n]
    } else {
      n = split(s, w, " ")
      base = w[n]
    }
    print raw "\t" text "\t" base
  }' >"$work/symbols"

# Vague-linkage instantiations of the standard library templates, and type
# information of builtin types, that the compiler emits with default
# visibility are not part of the interface.
toolchain='^(std|__gnu_cxx|__cxxabiv1|<builtin>)$'
awk -F '\t' -v re="$toolchain" '$3 ~ re' "$work/symbols" >"$work/toolchain"
awk -F '\t' -v re="$toolchain" '$3 !~ re' "$work/symbols" >"$work/ours"

# --- comparison -------------------------------------------------------------------
# Findings as "section<TAB>name<TAB>symbol", sorted, then printed by section.
report=$(awk -F '\t' '
  FNR == NR { split($0, f, " "); mark[f[2]] = f[1]; clink[f[2]] = f[3]; next }
  {
    base = $3; exported[base] = 1
    if (!(base in mark)) print "4\t" $2 "\t"
    else if (mark[base] == "-") print "3\t" base "\t" $2
    if ($1 == base) unmangled[base] = 1
  }
  END {
    for (n in mark) {
      if (mark[n] == "+" && !(n in exported)) print "1\t" n "\t"
      if (mark[n] == "+" && clink[n] == "C" && (n in exported) && !(n in unmangled))
        print "2\t" n "\t"
    }
  }' "$work/list" "$work/ours" | LC_ALL=C sort -t "$(printf '\t')" -k1,1 -k2,2 -k3,3 -u |
  awk -F '\t' '
    BEGIN {
      title[1] = "Listed with + but not exported:"
      title[2] = "Listed as extern \"C\" but exported only mangled:"
      title[3] = "Listed with - but exported (mark them + when done):"
      title[4] = "Exported but not in the list:"
    }
    $1 != section { section = $1; print title[section]; name = "" }
    $1 == 3 { if ($2 != name) print "  " $2; name = $2; print "      " $3; next }
    { print "  " $2 }')

plus=$(awk '$1 == "+"' "$work/list" | wc -l)
minus=$(awk '$1 == "-"' "$work/list" | wc -l)
echo "export table of $(basename "$library"): $(wc -l <"$work/ours") symbols," \
  "$(wc -l <"$work/toolchain") standard-library or builtin-type symbols ignored;" \
  "list: $plus implemented, $minus to come"
if [ -n "$report" ]; then
  echo "$report"
  echo "exports: FAILED"
  exit 1
fi
echo "exports: OK"
