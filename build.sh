#!/usr/bin/env bash
# One-command set-up: installs what is missing (Debian), builds, and runs the example or the tests.
#   ./build.sh example   build, then run the bundled example project
#   ./build.sh test      build, then run every test with CTest
#   ./build.sh bench     build in Release, then run the benchmarks
#   ./build.sh sanitize  build with ASan/UBSan, then run every test
set -euo pipefail
cd "$(dirname "$0")"
what=${1:-test}

packages="cmake g++ make libboost-filesystem-dev libboost-system-dev libgtest-dev libgmock-dev libbenchmark-dev"
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
  example)
    build build
    exec examples/run.sh build/Kavex3_GridGen/Kavex3_GridGen
    ;;
  test)
    build build
    ctest --test-dir build --output-on-failure -j "$jobs"
    ;;
  bench)
    build build-release -DCMAKE_BUILD_TYPE=Release -DKAVEX_BUILD_TESTS=OFF
    for b in build-release/bench/bench_*; do [ -x "$b" ] && "$b"; done
    ;;
  sanitize)
    build build-asan -DKAVEX_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
    # Leaks are checked; tests/lsan.supp spares only the line generator's records, which live to
    # the end of the process by design.
    ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0" \
        ctest --test-dir build-asan --output-on-failure -j "$jobs"
    ;;
  *)
    echo "usage: $0 example|test|bench|sanitize" >&2
    exit 2
    ;;
esac
