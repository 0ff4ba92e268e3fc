#!/usr/bin/env bash
# The Debian packages of korvalen, made from the linux build and used from a
# clean root, one check a call:
#
#   debian.sh build   BUILD_DIR OUT   libkorvalen1, libkorvalen-dev and
#                                     korvalen-tools into OUT (CPack)
#   debian.sh install OUT ROOT        dpkg installs them into the empty ROOT;
#                                     each holds its own files and no other
#   debian.sh cmake     ROOT WORK     an outside program with find_package
#   debian.sh pkgconfig ROOT WORK     an outside program with pkg-config
#   debian.sh tool      ROOT WORK     the installed tool on the sample
#                                     installation, its manual page and
#                                     completion
set -euo pipefail
# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
check=${1:?check}
a=${2:?}
b=${3:?}
arch=$(dpkg --print-architecture)
packages=(libkorvalen1 libkorvalen-dev korvalen-tools)

# In the root, programs find the installed library and nothing from the build.
use_root() {
  export LD_LIBRARY_PATH="$1/usr/lib"
  rm -rf "$2"
  mkdir -p "$2/run"
}

case $check in
  build)
    cmake --build "$a" --target korvalen korvalen_tool
    rm -rf "$b"
    (cd "$a" && cpack -G DEB -B "$b")
    for p in "${packages[@]}"; do
      deb="$b/${p}_${version}-1_$arch.deb"
      [ -f "$deb" ] || fail "no $deb"
      [ "$(dpkg-deb -f "$deb" Version)" = "$version-1" ] || fail "$p: version is not $version-1"
    done
    for p in libkorvalen-dev korvalen-tools; do
      depends=$(dpkg-deb -f "$b/${p}_${version}-1_$arch.deb" Depends)
      echo "$p depends on: $depends"
      [[ ", $depends," == *", libkorvalen1 (= $version"* ]] ||
        fail "$p does not depend on libkorvalen1 of its own version"
    done
    ;;

  install)
    root=$b
    rm -rf "$root"
    mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates"
    touch "$root/var/lib/dpkg/status"
    # The root has no libc or libstdc++ packages: their dependencies are not
    # looked for. Two packages holding one file would fail here.
    debs=()
    for p in "${packages[@]}"; do debs+=("$a/${p}_${version}-1_$arch.deb"); done
    dpkg --root="$root" --force-depends --force-not-root --force-script-chrootless \
      --log=/dev/null -i "${debs[@]}" >"$root.dpkg.log" 2>&1 || {
      cat "$root.dpkg.log"
      fail "dpkg could not install the packages"
    }
    # What each package holds, directories left out.
    listing() { dpkg --root="$root" -L "$1" | while read -r f; do
      [ -d "$root$f" ] && [ ! -L "$root$f" ] || echo "$f"; done | sort; }
    gtk=""
    if dpkg-deb -c "$a/libkorvalen1_${version}-1_$arch.deb" | grep korvalen-gtk >/dev/null; then
      gtk=$(printf '/usr/lib/libkorvalen-gtk.so.1\n/usr/lib/libkorvalen-gtk.so.%s' "$version")
    fi
    same_lines libkorvalen1 "$(printf '/usr/lib/libkorvalen.so.1\n/usr/lib/libkorvalen.so.%s\n%s' \
      "$version" "$gtk" | sed '/^$/d' | sort)" "$(listing libkorvalen1)"
    headers=$(cd "$source_root" && find korvalen -maxdepth 2 -name '*.h' | sed 's|^|/usr/include/|')
    same_lines libkorvalen-dev "$(printf '%s\n' "$headers" /usr/lib/libkorvalen.so \
      /usr/lib/pkgconfig/korvalen.pc /usr/lib/cmake/korvalen/korvalenConfig.cmake \
      /usr/lib/cmake/korvalen/korvalenConfigVersion.cmake \
      /usr/lib/cmake/korvalen/korvalenTargets.cmake \
      /usr/lib/cmake/korvalen/korvalenTargets-release.cmake | sort)" "$(listing libkorvalen-dev)"
    same_lines korvalen-tools "$(printf '%s\n' /usr/bin/korvalen \
      /usr/share/bash-completion/completions/korvalen /usr/share/man/man1/korvalen.1 | sort)" \
      "$(listing korvalen-tools)"
    [ "$(readlink "$root/usr/lib/libkorvalen.so")" = libkorvalen.so.1 ] ||
      fail "libkorvalen.so does not link to libkorvalen.so.1"
    echo "installed: $(dpkg --root="$root" -l | grep -c '^ii') packages"
    ;;

  cmake)
    use_root "$a" "$b"
    cmake -S "$source_root/tests/install" -B "$b/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DCMAKE_PREFIX_PATH="$a/usr"
    found=$(sed -n 's/^korvalen_DIR:PATH=//p' "$b/build/CMakeCache.txt")
    [ "$found" = "$a/usr/lib/cmake/korvalen" ] || fail "find_package found $found, not the root's"
    cmake --build "$b/build"
    ldd "$b/build/consumer" | grep -F "$a/usr/lib/libkorvalen.so.1" ||
      fail "the consumer does not load the root's library"
    (cd "$b/run" && "$b/build/consumer")
    ;;

  pkgconfig)
    use_root "$a" "$b"
    export PKG_CONFIG_LIBDIR="$a/usr/lib/pkgconfig"
    [ "$(pkg-config --modversion korvalen)" = "$version" ] || fail "pkg-config: not version $version"
    # shellcheck disable=SC2046  # the flags are words on purpose
    g++ -std=c++20 -Wall -Wextra -Werror "$source_root/tests/install/pkgconfig_check.cpp" \
      -o "$b/pkgconfig_check" $(pkg-config --cflags --libs korvalen)
    (cd "$b/run" && "$b/pkgconfig_check")
    ;;

  tool)
    use_root "$a" "$b"
    tool="$a/usr/bin/korvalen"
    [ "$("$tool" --version)" = "korvalen $version" ] || fail "--version does not say $version"
    cp -r "$source_root/samples/installation" "$b/installation"
    "$tool" params -C "$b/installation" >"$b/params.txt"
    [ -s "$b/params.txt" ] || fail "params printed nothing"
    if "$tool" --help | grep -qE '^ +doctor( |$)'; then
      "$tool" doctor -C "$b/installation" || fail "doctor found faults in the sample installation"
    else
      echo "this tool has no doctor command: not run"
    fi
    MANWIDTH=80 man -l "$a/usr/share/man/man1/korvalen.1" | grep -q 'korvalen' ||
      fail "the installed manual page does not show"
    bash -c "source /usr/share/bash-completion/bash_completion &&
      source '$a/usr/share/bash-completion/completions/korvalen' && complete -p korvalen" ||
      fail "the installed completion does not register"
    ;;

  *) fail "unknown check $check" ;;
esac
echo "package check $check: OK"
