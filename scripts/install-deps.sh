#!/usr/bin/env bash
# Installs the Debian packages that building and testing korvalen needs.
# Sourced by test-all.sh and run-main-job.sh; also runnable by itself:
#
#   bash scripts/install-deps.sh [all|main]
#
# Idempotent: when every package is installed already, apt is not called at
# all; otherwise `apt-get update` runs once and only the missing packages are
# installed.

# What the library, the tool and the native tests need.
KORVALEN_MAIN_PACKAGES=(
  cmake ninja-build g++ binutils pkg-config
  libgtest-dev googletest libpugixml-dev libcli11-dev nlohmann-json3-dev
)
# Plus the sanitizer and fuzzing compiler, the benchmark library, the Windows
# cross compilers with their binutils, Wine to run the Windows tests, socat,
# which gives the serial-link tests under Wine a pseudo-terminal pair, and
# GTK 3 with a virtual X server for the dialogs' module and its tests, and the
# Debian packaging tools, zip and bash-completion for the packages and their
# checks.
KORVALEN_ALL_PACKAGES=(
  "${KORVALEN_MAIN_PACKAGES[@]}"
  clang libclang-rt-14-dev libbenchmark-dev
  g++-mingw-w64-x86-64 g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
  g++-mingw-w64-i686 g++-mingw-w64-i686-posix binutils-mingw-w64-i686
  wine wine64 socat
  libgtk-3-dev xvfb xauth
  debhelper dpkg-dev fakeroot zip unzip bash-completion
)

korvalen_missing_packages() {
  local p
  for p in "$@"; do
    dpkg-query -W -f='${db:Status-Abbrev}' "$p" 2>/dev/null | grep -q '^ii' || echo "$p"
  done
}

# korvalen_install_packages PACKAGE... : installs those not yet installed.
korvalen_install_packages() {
  local missing
  missing=$(korvalen_missing_packages "$@")
  if [ -z "$missing" ]; then
    echo "packages: all $# present"
    return 0
  fi
  local sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "packages: missing $(echo $missing), and not root to install them" >&2
      return 1
    }
    sudo=(sudo)
  fi
  echo "packages: installing $(echo $missing)"
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -q </dev/null || return 1
  # shellcheck disable=SC2086  # one word per package
  "${sudo[@]}" apt-get install -y -q --no-install-recommends $missing </dev/null || return 1
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
  set -euo pipefail
  case "${1:-all}" in
    all) korvalen_install_packages "${KORVALEN_ALL_PACKAGES[@]}" ;;
    main) korvalen_install_packages "${KORVALEN_MAIN_PACKAGES[@]}" ;;
    *) echo "usage: $0 [all|main]" >&2; exit 2 ;;
  esac
fi
