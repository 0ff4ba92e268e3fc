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
if find "$prefix/include" -path '*/posix/*' -o -path '*/win32/*' | grep -q .; then
  fail "platform implementation headers were installed"
fi

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
