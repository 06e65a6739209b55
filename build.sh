#!/usr/bin/env bash
# One-command set-up: installs what is missing (Debian), builds, and runs the example or the tests.
#   ./build.sh example   build, run the bundled example project, then inspect its run
#   ./build.sh test      build, then run every test with CTest but the slow ones (label "slow")
#   ./build.sh slow      build, then run the slow tests only (CI runs them once)
#   ./build.sh bench     build in Release, then run the benchmarks
#   ./build.sh sanitize  build with ASan/UBSan, then run every test but the slow ones
#   ./build.sh deps      only install what is missing
set -euo pipefail
cd "$(dirname "$0")"
what=${1:-test}

packages="cmake g++ make python3 libboost-filesystem-dev libboost-system-dev libgtest-dev libgmock-dev libbenchmark-dev libpng-dev zlib1g-dev python3-vtk9 nlohmann-json3-dev clang-format"
missing=""
for p in $packages; do
  dpkg -s "$p" >/dev/null 2>&1 || missing="$missing $p"
done
if [ -n "$missing" ]; then
  echo "Installing:$missing"
  sudo_cmd=""; [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq $missing
fi

jobs=$(nproc)
build() {  # build DIR [cmake options...]
  local dir=$1; shift
  cmake -S . -B "$dir" "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
}

case "$what" in
  deps)
    ;;
  example)
    build build
    examples/run.sh build/Kavex3_GridGen/Kavex3_GridGen
    # ParaView files, slice pictures and the body report of that run, in build/example-run_inspect
    exec build/tools/Kavex3_Inspect/Kavex3_Inspect build/example-run "$(ls build/example-run/*.Grid | head -n 1)"
    ;;
  test)
    build build
    ctest --test-dir build --output-on-failure -j "$jobs" -LE slow
    ;;
  slow)
    build build
    ctest --test-dir build --output-on-failure -L slow
    ;;
  bench)
    build build-release -DCMAKE_BUILD_TYPE=Release -DKAVEX_BUILD_TESTS=OFF
    bin=build-release/bench
    for b in "$bin"/bench_*; do
      case $(basename "$b") in bench_worker | bench_intersect) continue ;; esac
      [ -x "$b" ] && "$b"
    done
    # The surfaces and grids of the timed runs are made once, into the build folder.
    python3 bench/make_cases.py "$bin/cases" 256
    "$bin/bench_intersect" "$bin/cases/torus.stl" "$bin/cases/torus_256.grid"
    "$bin/bench_worker" build-release/Kavex3_GridGen/Kavex3_GridGen "$bin/cases/sphere1m.stl"
    ;;
  sanitize)
    build build-asan -DKAVEX_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
    # Leaks are checked; tests/lsan.supp spares only the line generator's records, which live to
    # the end of the process by design.
    ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0" \
        ctest --test-dir build-asan --output-on-failure -j "$jobs" -LE slow
    ;;
  *)
    echo "usage: $0 example|test|slow|bench|sanitize|deps" >&2
    exit 2
    ;;
esac
