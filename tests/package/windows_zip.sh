#!/usr/bin/env bash
# The Windows zip of korvalen, made from the MinGW x86_64 build and used as a
# user unzips it, one check a call:
#
#   windows_zip.sh build    BUILD_DIR OUT  korvalen-X.Y.Z-win64.zip into OUT
#                                          (CPack), unzipped into OUT/unzipped
#   windows_zip.sh consumer OUT WORK       an outside program, cross-built with
#                                          find_package on the unzipped files,
#                                          run under Wine
#   windows_zip.sh tool     OUT WORK       the unzipped korvalen.exe --version
#                                          under Wine
set -euo pipefail
# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
check=${1:?check}
a=${2:?}
b=${3:?}
name=korvalen-$version-win64
wine=(/usr/lib/wine/wine64)
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="

case $check in
  build)
    cmake --build "$a" --target korvalen korvalen_tool
    rm -rf "$b"
    (cd "$a" && cpack -G ZIP -B "$b")
    [ -f "$b/$name.zip" ] || fail "no $b/$name.zip"
    headers=$(cd "$source_root" && find korvalen -maxdepth 2 -name '*.h' | sed "s|^|$name/include/|")
    same_lines "$name.zip" "$(printf '%s\n' "$headers" "$name/bin/KORVALEN.DLL" \
      "$name/bin/korvalen.exe" "$name/lib/libKORVALEN.dll.a" "$name/lib/pkgconfig/korvalen.pc" \
      "$name/lib/cmake/korvalen/"{korvalenConfig,korvalenConfigVersion,korvalenTargets,korvalenTargets-release}.cmake |
      sort)" "$(unzip -Z1 "$b/$name.zip" | grep -v '/$' | sort)"
    unzip -q "$b/$name.zip" -d "$b/unzipped"
    # The C++ runtime is linked in: the programs need no DLL but the system's
    # and KORVALEN.DLL.
    for f in bin/korvalen.exe bin/KORVALEN.DLL; do
      needed=$(x86_64-w64-mingw32-objdump -p "$b/unzipped/$name/$f" | sed -n 's/.*DLL Name: //p')
      echo "$f needs: $(tr '\n' ' ' <<<"$needed")"
      if grep -iE '^lib|^(msvcp|vcruntime)' <<<"$needed"; then fail "$f needs a runtime DLL"; fi
    done
    ;;

  consumer)
    dir="$a/unzipped/$name"
    rm -rf "$b"
    mkdir -p "$b/run"
    # The cross toolchain searches packages only below its own root: the
    # package is named by its directory, as a Windows user passes it.
    cmake -S "$source_root/tests/install" -B "$b/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DCMAKE_TOOLCHAIN_FILE="$source_root/cmake/toolchain-mingw-x86_64.cmake" \
      -Dkorvalen_DIR="$dir/lib/cmake/korvalen" -DCMAKE_EXE_LINKER_FLAGS=-static
    cmake --build "$b/build"
    # KORVALEN.DLL is found in the unzipped bin folder, through Wine's PATH.
    (cd "$b/run" && WINEPATH="$dir/bin" timeout 300 "${wine[@]}" "$b/build/consumer.exe" </dev/null) |
      tee "$b/consumer.log"
    grep -q '^consumer: OK' "$b/consumer.log" || fail "the consumer failed under Wine"
    ;;

  tool)
    rm -rf "$b"
    mkdir -p "$b"
    said=$(cd "$b" && timeout 300 "${wine[@]}" "$a/unzipped/$name/bin/korvalen.exe" --version \
      </dev/null | tr -d '\r')
    [ "$said" = "korvalen $version" ] || fail "korvalen.exe --version says '$said'"
    echo "$said"
    ;;

  *) fail "unknown check $check" ;;
esac
echo "package check $check: OK"
