#!/usr/bin/env bash
# The main job of korvalen on a Debian 12 machine (as root, or with sudo):
# builds the `korvalen` tool (Release, in build/main) and shows the settings
# of the sample installation with it.
#
#   bash scripts/run-main-job.sh [SETTINGS FILE]
#
# The file defaults to the sample's unit factors, samples/installation/UNIDADES.CFG
# (or its machine parameter set CFGSMACH.CFG where that is missing).
set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
DIR="$ROOT/build/main"
if [ $# -gt 0 ]; then
  file=$1
else
  for file in "$ROOT"/samples/installation/{UNIDADES.CFG,CFGSMACH.CFG}; do
    [ -f "$file" ] && break
  done
fi

# shellcheck source=install-deps.sh
source "$ROOT/scripts/install-deps.sh"
korvalen_install_packages "${KORVALEN_MAIN_PACKAGES[@]}"

cmake -S "$ROOT" -B "$DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DKORVALEN_BUILD_TESTS=OFF -DKORVALEN_BUILD_TOOL=ON >/dev/null
cmake --build "$DIR" -j 2

tool="$DIR/tools/korvalen/korvalen"
[ -x "$tool" ] || { echo "run-main-job: the tool was not built ($tool)" >&2; exit 1; }
echo "\$ korvalen cfg dump ${file#"$ROOT"/}"
"$tool" cfg dump "$file"
echo
echo "\$ korvalen state -C samples/installation"
"$tool" state -C "$ROOT/samples/installation"
echo
echo "\$ korvalen params -C samples/installation"
"$tool" params -C "$ROOT/samples/installation"
echo
echo "\$ korvalen settings -C samples/installation"
"$tool" settings -C "$ROOT/samples/installation"
echo
echo "\$ korvalen lang list -C samples/installation"
"$tool" lang list -C "$ROOT/samples/installation"
