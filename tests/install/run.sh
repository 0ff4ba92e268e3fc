#!/usr/bin/env bash
# Installs a built korvalen into a fresh prefix and builds two outside programs
# against it: consumer.cpp through the CMake package (find_package), and
# pkgconfig_check.cpp with nothing but pkg-config. Both are run.
#
#   tests/install/run.sh LIBRARY_BUILD_DIR PREFIX WORK_DIR
#
# LIBRARY_BUILD_DIR must have been configured with CMAKE_INSTALL_PREFIX=PREFIX
# (the pkg-config file records the prefix it was configured for).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=${1:?library build directory}
prefix=${2:?install prefix}
work=${3:?work directory}

fail() { echo "install check: $*" >&2; exit 1; }

rm -rf "$prefix" "$work"
mkdir -p "$work/run"

echo "== cmake --install $build --prefix $prefix"
cmake --install "$build" --prefix "$prefix" >"$work/install.log" || {
  cat "$work/install.log"; fail "cmake --install failed"; }

# What an application needs from the prefix.
pc=$(find "$prefix" -path '*/pkgconfig/korvalen.pc' | head -n 1)
config=$(find "$prefix" -path '*/cmake/korvalen/korvalenConfig.cmake' | head -n 1)
[ -n "$pc" ] || fail "no pkgconfig/korvalen.pc under $prefix"
[ -n "$config" ] || fail "no cmake/korvalen/korvalenConfig.cmake under $prefix"
[ -f "$prefix/include/korvalen/korvalen.h" ] || fail "no include/korvalen/korvalen.h"
[ -f "$prefix/include/korvalen/export.h" ] || fail "no include/korvalen/export.h"
libdir=$(dirname "$(dirname "$pc")")
[ -L "$libdir/libkorvalen.so" ] || fail "no libkorvalen.so link in $libdir"
[ -L "$libdir/libkorvalen.so.1" ] || fail "no libkorvalen.so.1 link in $libdir"
soname=$(objdump -p "$libdir/libkorvalen.so" | awk '$1 == "SONAME" { print $2 }')
[ "$soname" = "libkorvalen.so.1" ] || fail "SONAME is '$soname', not libkorvalen.so.1"

# Exactly the public headers are installed: those outside internal/ and the
# platform backends, each one compiling by itself (so none leans on a header
# that is not installed).
source_root=$(cd "$here/../.." && pwd)
expected=$(cd "$source_root" && find korvalen -maxdepth 2 -name '*.h' | sort)
installed=$(cd "$prefix/include" && find korvalen -name '*.h' | sort)
[ "$expected" = "$installed" ] || {
  diff <(echo "$expected") <(echo "$installed") || true
  fail "the installed headers are not the public ones (< source, > installed)"; }
echo "== $(echo "$installed" | wc -l) public headers, each compiled alone"
while read -r h; do
  echo "#include <$h>" | g++ -std=c++20 -Wall -Wextra -Wpedantic -Werror -fsyntax-only \
    -I"$prefix/include" -x c++ - || fail "$h does not compile by itself"
done <<<"$installed"

# Every name the export list marks as exported is declared by the umbrella
# header: a using-declaration of a name that is not there fails to compile.
names=$(sed -n 's/^+ \([A-Za-z_][A-Za-z0-9_]*\).*/\1/p' "$source_root/exports/korvalen.exports")
{
  echo "#include <korvalen/korvalen.h>"
  echo "namespace exported {"
  for n in $names; do echo "using ::$n;"; done
  echo "}"
} >"$work/exported_names.cpp"
g++ -std=c++20 -fsyntax-only -I"$prefix/include" "$work/exported_names.cpp" ||
  fail "the installed headers do not declare every exported name"
echo "== $(echo "$names" | wc -w) exported names declared by the installed headers"

echo "== consumer through find_package(korvalen)"
cmake -S "$here" -B "$work/cmake" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_PREFIX_PATH="$prefix" >"$work/configure.log" || {
  cat "$work/configure.log"; fail "configuring the consumer failed"; }
cmake --build "$work/cmake" || fail "building the consumer failed"
(cd "$work/run" && "$work/cmake/consumer") || fail "the consumer failed"

echo "== consumer through pkg-config"
export PKG_CONFIG_PATH="$(dirname "$pc")"
flags=$(pkg-config --cflags --libs korvalen) || fail "pkg-config does not know korvalen"
echo "pkg-config --cflags --libs korvalen: $flags"
pc_libdir=$(pkg-config --variable=libdir korvalen)
# shellcheck disable=SC2086  # the flags are words on purpose
g++ -std=c++20 -Wall -Wextra -Werror "$here/pkgconfig_check.cpp" -o "$work/pkgconfig_check" \
  $flags -Wl,-rpath,"$pc_libdir" || fail "building with the pkg-config flags failed"
(cd "$work/run" && "$work/pkgconfig_check") || fail "the pkg-config program failed"

echo "install check: OK"
