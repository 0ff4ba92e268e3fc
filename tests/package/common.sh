# shellcheck shell=bash
# Shared by debian.sh and windows_zip.sh: the source tree, the one project
# version (from the project() line of the top CMakeLists.txt) and fail.
source_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
version=$(sed -nE 's/^project\(korvalen VERSION ([0-9]+\.[0-9]+\.[0-9]+).*/\1/p' \
  "$source_root/CMakeLists.txt")
fail() { echo "package check: $*" >&2; exit 1; }
[ -n "$version" ] || fail "no version in the project() line of CMakeLists.txt"

# same_lines NAME EXPECTED ACTUAL: the two sorted lists of lines must match.
same_lines() {
  [ "$2" = "$3" ] && return 0
  diff <(echo "$2") <(echo "$3") || true
  fail "$1: not the expected files (< expected, > found)"
}
