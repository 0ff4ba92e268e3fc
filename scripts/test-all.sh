#!/usr/bin/env bash
# The whole test run of korvalen on a Debian 12 machine (as root, or with sudo):
#
#   bash scripts/test-all.sh [STEP...]
#
# Installs what it needs, then runs these steps, each in its own directory
# under build/ (default: all of them, in this order):
#   linux     native Release build (with the benchmarks when bench/ has them)
#             and its ctest suites
#   sanitize  Debug build with AddressSanitizer and UndefinedBehaviorSanitizer,
#             ctest
#   windows   x86_64 cross build with MinGW-w64, ctest under Wine
#   win32     i686 cross build of the library, and its export table check
#   install   cmake --install of the linux build into build/install, then an
#             outside program built with find_package and one with pkg-config
#   package   the Debian packages from the linux build, installed into a clean
#             root and used there (find_package, pkg-config, the tool); the
#             Windows zip from the windows build, an outside program built
#             against the unzipped files and the tool, run under Wine
#   fuzz      clang build of the libFuzzer targets in fuzz/, each run for
#             FUZZ_SECONDS (default 60) seconds
# Every ctest test and every other step counts once in the closing line
# "N passed, N failed"; the exit status is non-zero when anything failed.
# Logs: build/logs/.
set -uo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
BUILD="$ROOT/build"
LOGS="$BUILD/logs"
JOBS=2
FUZZ_SECONDS=${FUZZ_SECONDS:-60}
ALL_STEPS=(linux sanitize windows win32 install package fuzz)

steps=("$@")
[ ${#steps[@]} -gt 0 ] || steps=("${ALL_STEPS[@]}")
for s in "${steps[@]}"; do
  [[ " ${ALL_STEPS[*]} " == *" $s "* ]] || { echo "unknown step '$s' (steps: ${ALL_STEPS[*]})" >&2; exit 2; }
done

passed=0
failed=0
failures=()
started=$SECONDS

pass() { passed=$((passed + 1)); echo "PASS $1"; }
fail() { failed=$((failed + 1)); failures+=("$1"); echo "FAIL $1${2:+ ($2)}"; }

# run NAME LOG COMMAND...: one counted step; its output goes to the log, whose
# end is shown when it fails.
run() {
  local name=$1 log=$2 t0=$SECONDS
  shift 2
  if "$@" >"$log" 2>&1; then
    pass "$name [$((SECONDS - t0))s]"
    return 0
  fi
  echo "---- last lines of $log"
  tail -n 60 "$log"
  echo "----"
  fail "$name [$((SECONDS - t0))s]" "log: ${log#"$ROOT"/}"
  return 1
}

# ctest_counted NAME BUILD_DIR [CTEST ARGS...]: runs the suites and counts each
# test; a run that ends without its summary counts as one failure.
ctest_counted() {
  local name=$1 dir=$2 log="$LOGS/$1-ctest.log" t0=$SECONDS
  shift 2
  ctest --test-dir "$dir" --output-on-failure -j "$JOBS" --timeout 900 --no-tests=error "$@" \
    2>&1 | tee "$log"
  local summary total bad
  summary=$(grep -E '^[0-9]+% tests passed, [0-9]+ tests? failed out of [0-9]+' "$log" | tail -n 1)
  if [ -z "$summary" ]; then
    fail "$name ctest" "no test summary; log: ${log#"$ROOT"/}"
    return
  fi
  total=$(sed -E 's/.* out of ([0-9]+).*/\1/' <<<"$summary")
  bad=$(sed -E 's/.* ([0-9]+) tests? failed.*/\1/' <<<"$summary")
  passed=$((passed + total - bad))
  failed=$((failed + bad))
  if [ "$bad" -gt 0 ]; then
    local t
    while read -r t; do failures+=("$name ctest: $t"); done < <(
      sed -n '/The following tests FAILED:/,$p' "$log" | grep -E '^[[:space:]]+[0-9]+ - ' |
        sed -E 's/^[[:space:]]+[0-9]+ - //')
  fi
  echo "$name ctest: $((total - bad)) of $total passed [$((SECONDS - t0))s]"
}

# configure_and_build NAME DIR [CMAKE ARGS...]
configure_and_build() {
  local name=$1 dir=$2
  shift 2
  run "$name configure" "$LOGS/$name-configure.log" \
    cmake -S "$ROOT" -B "$dir" -G Ninja "$@" &&
    run "$name build" "$LOGS/$name-build.log" cmake --build "$dir" -j "$JOBS"
}

step_linux() {
  local args=(-DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$BUILD/install")
  if [ -f "$ROOT/bench/CMakeLists.txt" ]; then
    args+=(-DKORVALEN_BUILD_BENCH=ON)  # built to keep it compiling, not run here
  fi
  configure_and_build linux "$BUILD/linux" "${args[@]}" &&
    ctest_counted linux "$BUILD/linux"
}

step_sanitize() {
  configure_and_build sanitize "$BUILD/sanitize" -DCMAKE_BUILD_TYPE=Debug \
    -DKORVALEN_SANITIZE=ON &&
    ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
      ctest_counted sanitize "$BUILD/sanitize"
}

# The first start of Wine creates its prefix (a minute or so); done here, with
# a time limit, so that no test pays for it.
wine_ready() {
  export WINEDEBUG=-all
  # No Mono or Gecko installers: the tests are plain console programs.
  export WINEDLLOVERRIDES="mscoree,mshtml="
  timeout 300 /usr/lib/wine/wine64 wineboot --init </dev/null
  # The machine tests make real windows; with no display, Wine's null display
  # driver gives them. It takes effect once the running Wine programs end.
  timeout 120 /usr/lib/wine/wine64 reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f \
    </dev/null
  timeout 60 /usr/lib/wine/wineserver -w || true
  timeout 120 /usr/lib/wine/wine64 cmd /c echo wine ready </dev/null
}

step_windows() {
  configure_and_build windows "$BUILD/windows" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw-x86_64.cmake" \
    -DKORVALEN_BUILD_TOOL=ON || return
  run "windows wine start" "$LOGS/windows-wine.log" wine_ready || return
  ctest_counted windows "$BUILD/windows"
}

step_win32() {
  local dir="$BUILD/win32"
  configure_and_build win32 "$dir" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw-i686.cmake" \
    -DKORVALEN_BUILD_TESTS=OFF -DKORVALEN_BUILD_TOOL=OFF || return
  # No 32-bit Wine here: only the export table of the DLL is checked.
  local dll
  dll=$(find "$dir/korvalen" -maxdepth 1 -iname 'korvalen.dll' | head -n 1)
  run "win32 exports" "$LOGS/win32-exports.log" \
    bash "$ROOT/tests/exports/check_exports.sh" --list "$ROOT/exports/korvalen.exports" \
    --library "${dll:-$dir/korvalen/KORVALEN.dll}" --format pe \
    --objdump i686-w64-mingw32-objdump --cxxfilt i686-w64-mingw32-c++filt &&
    tail -n 1 "$LOGS/win32-exports.log"
}

step_install() {
  if [ ! -f "$BUILD/linux/build.ninja" ]; then
    fail "install" "needs the linux step's build"
    return
  fi
  # Only the library is needed; the linux step built it already.
  run "install build" "$LOGS/install-build.log" \
    cmake --build "$BUILD/linux" -j "$JOBS" --target korvalen &&
    run "install + consumers" "$LOGS/install.log" \
      bash "$ROOT/tests/install/run.sh" "$BUILD/linux" "$BUILD/install" "$BUILD/consumer"
}

step_package() {
  local out="$BUILD/packages" check
  if [ -f "$BUILD/linux/build.ninja" ]; then
    if run "package deb build" "$LOGS/package-deb-build.log" \
      bash "$ROOT/tests/package/debian.sh" build "$BUILD/linux" "$out/deb" &&
      run "package deb install" "$LOGS/package-deb-install.log" \
        bash "$ROOT/tests/package/debian.sh" install "$out/deb" "$out/root"; then
      for check in cmake pkgconfig tool; do
        run "package deb $check" "$LOGS/package-deb-$check.log" \
          bash "$ROOT/tests/package/debian.sh" "$check" "$out/root" "$out/deb-$check"
      done
    fi
  else
    fail "package deb" "needs the linux step's build"
  fi
  if [ -f "$BUILD/windows/build.ninja" ]; then
    if run "package zip build" "$LOGS/package-zip-build.log" \
      bash "$ROOT/tests/package/windows_zip.sh" build "$BUILD/windows" "$out/zip" &&
      run "package wine start" "$LOGS/package-wine.log" wine_ready; then
      for check in consumer tool; do
        run "package zip $check" "$LOGS/package-zip-$check.log" \
          bash "$ROOT/tests/package/windows_zip.sh" "$check" "$out/zip" "$out/zip-$check"
      done
    fi
  else
    fail "package zip" "needs the windows step's build"
  fi
}

step_fuzz() {
  local dir="$BUILD/fuzz"
  if [ ! -f "$ROOT/fuzz/CMakeLists.txt" ]; then
    echo "fuzz: fuzz/ has no CMakeLists.txt yet, nothing to build or run"
    pass "fuzz (no targets yet)"
    return
  fi
  CC=clang CXX=clang++ configure_and_build fuzz "$dir" -DCMAKE_BUILD_TYPE=Debug \
    -DKORVALEN_BUILD_FUZZ=ON -DKORVALEN_SANITIZE=ON -DKORVALEN_BUILD_TESTS=OFF \
    -DKORVALEN_BUILD_TOOL=OFF || return
  local targets=() f
  while IFS= read -r f; do targets+=("$f"); done < <(
    find "$dir/fuzz" -type f -perm -u+x ! -path '*/CMakeFiles/*' ! -path '*/seeds/*' ! -name '*.so*' \
      2>/dev/null | sort)
  if [ ${#targets[@]} -eq 0 ]; then
    echo "fuzz: the fuzz build made no targets, nothing to run"
    pass "fuzz (no targets yet)"
    return
  fi
  # Two fuzzers at a time, one per core.
  local pids=() names=() logs=() t0=$SECONDS
  collect() {
    local i
    for i in "${!pids[@]}"; do
      if wait "${pids[$i]}"; then
        pass "fuzz ${names[$i]} ${FUZZ_SECONDS}s"
      else
        echo "---- last lines of ${logs[$i]}"
        tail -n 40 "${logs[$i]}"
        echo "----"
        fail "fuzz ${names[$i]}" "log: ${logs[$i]#"$ROOT"/}; inputs that failed are in build/fuzz/"
      fi
    done
    pids=() names=() logs=()
  }
  for f in "${targets[@]}"; do
    local name corpus seeds=() s
    name=$(basename "$f")
    corpus="$dir/corpus/$name"
    mkdir -p "$corpus"
    # Seeds kept in the repository, or built (fuzz/seeds/), are read, never
    # written.
    for s in "$ROOT/fuzz/corpus/$name" "$ROOT/fuzz/corpus/${name%_fuzz}" "$dir/fuzz/seeds/${name%_fuzz}"; do
      [ -d "$s" ] && seeds+=("$s")
    done
    echo "fuzz: $name for ${FUZZ_SECONDS}s"
    (cd "$dir" && exec "$f" -max_total_time="$FUZZ_SECONDS" -timeout=20 -rss_limit_mb=4096 \
      -print_final_stats=1 "$corpus" "${seeds[@]}") >"$LOGS/fuzz-$name.log" 2>&1 &
    pids+=($!) names+=("$name") logs+=("$LOGS/fuzz-$name.log")
    [ ${#pids[@]} -lt "$JOBS" ] || collect
  done
  collect
  echo "fuzz: ${#targets[@]} target(s) [$((SECONDS - t0))s]"
}

mkdir -p "$LOGS"
echo "== korvalen test run: ${steps[*]}"
# shellcheck source=install-deps.sh
source "$ROOT/scripts/install-deps.sh"
if korvalen_install_packages "${KORVALEN_ALL_PACKAGES[@]}"; then
  for s in "${steps[@]}"; do
    echo
    echo "== $s"
    "step_$s"
  done
else
  fail "install packages"
fi

echo
echo "== summary [$(((SECONDS - started) / 60))m $(((SECONDS - started) % 60))s]"
for f in "${failures[@]}"; do echo "  failed: $f"; done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
