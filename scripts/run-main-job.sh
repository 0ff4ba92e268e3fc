#!/usr/bin/env bash
# The main job of korvalen on a Debian 12 machine (as root, or with sudo):
# builds the library and the `korvalen` tool (Release, in build/main), then
# takes the tool on a tour of the sample installation: what it shows, one
# setting changed in place, the error reports, and the installation check
# before and after a killed writer's work file is planted. The tour works on
# a copy (build/main/tour), so the sample stays as it is.
#
#   bash scripts/run-main-job.sh
set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
DIR="$ROOT/build/main"

# shellcheck source=install-deps.sh
source "$ROOT/scripts/install-deps.sh"
korvalen_install_packages "${KORVALEN_MAIN_PACKAGES[@]}"

cmake -S "$ROOT" -B "$DIR" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DKORVALEN_BUILD_TESTS=OFF -DKORVALEN_BUILD_TOOL=ON >/dev/null
cmake --build "$DIR" -j 2

tool="$DIR/tools/korvalen/korvalen"
[ -x "$tool" ] || { echo "run-main-job: the tool was not built ($tool)" >&2; exit 1; }
tour="$DIR/tour"
rm -rf "$tour"
cp -r "$ROOT/samples/installation" "$tour"

# korvalen ARGS...: shows the command line as typed in the tour's folder, runs
# it there, and shows a non-zero exit status.
korvalen() {
  echo
  echo "\$ korvalen $*"
  local status=0
  (cd "$tour" && "$tool" "$@") || status=$?
  [ "$status" -eq 0 ] || echo "(exit status $status)"
  return 0
}

echo "The tour, in a copy of samples/installation:"
korvalen --version
korvalen params -C .
korvalen state -C .
korvalen catalog machines -C .
korvalen cfg get -C . CFGSMACH.CFG A001
korvalen cfg set -C . CFGSMACH.CFG A001 1 ON
korvalen cfg get -C . CFGSMACH.CFG A001 --json
korvalen errors -C .
korvalen doctor -C .
echo
echo "\$ touch ORDENACT.SYS.work    # what a writer killed halfway leaves"
touch "$tour/ORDENACT.SYS.work"
korvalen doctor -C .
