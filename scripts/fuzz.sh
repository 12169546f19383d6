#!/usr/bin/env bash
# Builds the fuzz targets (clang, libFuzzer, AddressSanitizer, UBSan) and runs each of them: first
# over its seed corpus, then for the given number of seconds on fresh inputs.
#   scripts/fuzz.sh            # 8 s a target: the regression run CI makes
#   scripts/fuzz.sh 600        # ten minutes a target
# New inputs that reach further go into build-fuzz/corpus/<target>, never into the repository's
# seeds; a finding stops the run and leaves its input in build-fuzz/findings.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
ensure_packages clang libclang-rt-14-dev

SECONDS_EACH=${1:-8}
BUILD=${FUZZ_BUILD:-build-fuzz}
CXX=clang++ cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKW_FUZZ=ON >/dev/null
targets=()
for src in fuzz/fuzz_*.cpp; do targets+=("$(basename "$src" .cpp)"); done
cmake --build "$BUILD" --parallel "$(nproc)" --target defaultdb "${targets[@]}"

export QT_QPA_PLATFORM=offscreen KW_UNATTENDED=1 KW_DEFAULT_MDB="$PWD/$BUILD/default.mdb"
export ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1
mkdir -p "$BUILD/findings"
total_runs=0
for t in "${targets[@]}"; do
  seeds="fuzz/corpus/${t#fuzz_}"
  work="$BUILD/corpus/${t#fuzz_}"
  mkdir -p "$work"
  "$BUILD/fuzz/$t" -runs=0 -artifact_prefix="$BUILD/findings/$t-" "$seeds" >"$BUILD/$t.seeds.log" 2>&1 || {
    echo "fuzz: $t fails on its seeds"; tail -n 30 "$BUILD/$t.seeds.log"; exit 1; }
  "$BUILD/fuzz/$t" -max_total_time="$SECONDS_EACH" -timeout=10 -rss_limit_mb=4096 -print_final_stats=1 \
    -artifact_prefix="$BUILD/findings/$t-" "$work" "$seeds" >"$BUILD/$t.log" 2>&1 || {
    echo "fuzz: $t found a fault"; tail -n 40 "$BUILD/$t.log"; exit 1; }
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$BUILD/$t.log" | grep -o '[0-9]*$' || echo 0)
  total_runs=$((total_runs + runs))
  printf 'fuzz: %-20s %10s inputs in %ss, corpus %s files, no finding\n' "$t" "$runs" "$SECONDS_EACH" \
    "$(ls "$work" | wc -l)"
done
echo "fuzz: ${#targets[@]} targets, $total_runs inputs, 0 findings"
