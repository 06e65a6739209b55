#!/usr/bin/env bash
# Builds the libFuzzer targets of the readers with clang in build-fuzz and runs each one for a
# bounded time, seeded with the bundled examples and the small public test files in tests/data.
#   tools/run_fuzzers.sh [SECONDS_EACH] [TARGET...]   (default 60 seconds; mesh spec points layers)
# Inputs that fail are kept as build-fuzz/findings/TARGET-*; the corpus grows in build-fuzz/corpus.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
secs=${1:-60}
shift || true
targets=${*:-mesh spec points layers}

if ! command -v clang++ >/dev/null; then
  sudo_cmd=""; [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq clang
fi
cmake -S . -B build-fuzz -DKAVEX_FUZZ=ON -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKAVEX_BUILD_TESTS=OFF -DKAVEX_BUILD_BENCH=OFF >/dev/null
nice -n 10 cmake --build build-fuzz -j2 --target $(printf 'fuzz_%s ' $targets)

data="$root/tests/data"
seeds() {  # seeds TARGET: the files a target starts from
  case $1 in
    mesh) ls "$data"/stl/*.[sS][tT][lL] "$data"/plot3d/* 2>/dev/null |
            while read -r f; do [ "$(stat -c %s "$f")" -le 65536 ] && echo "$f"; done || true ;;
    spec) ls examples/*/*.Grid ;;
    points) ls examples/*/*.cut ;;
    layers) ls examples/*/layers.dat ;;
  esac
}

# The specifications name their points and layer files relative to the working directory; two
# examples have a block.cut of their own, and one file of each name is enough there.
work=build-fuzz/work
mkdir -p "$work" build-fuzz/findings
cp examples/cut_body/block.cut examples/cut_body/layers.dat examples/stl_body/pyramid.stl "$work"/
status=0
for t in $targets; do
  corpus=build-fuzz/corpus/$t
  mkdir -p "$corpus"
  # Seeds are named after their folder too, so that equal names do not replace each other.
  for f in $(seeds "$t"); do cp "$f" "$corpus/$(basename "$(dirname "$f")")_$(basename "$f")"; done
  echo "=== fuzz_$t for ${secs}s"
  (cd "$work" && ASAN_OPTIONS=detect_leaks=0 nice -n 10 "$root/build-fuzz/tests/fuzz/fuzz_$t" \
    -max_total_time="$secs" -timeout=10 -rss_limit_mb=2048 -max_len=65536 -close_fd_mask=3 \
    -print_final_stats=1 -artifact_prefix="$root/build-fuzz/findings/$t-" "$root/$corpus") \
    2>&1 | grep -E "stat::number_of_executed_units|ERROR|SUMMARY|Test unit written|Done" ||
    true
  [ -n "$(ls build-fuzz/findings/"$t"-* 2>/dev/null)" ] && status=1
done
ls -l build-fuzz/findings
exit $status
