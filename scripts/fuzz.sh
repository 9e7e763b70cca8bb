#!/usr/bin/env bash
# Builds the libFuzzer harnesses (clang, AddressSanitizer, UndefinedBehaviorSanitizer) in
# build-fuzz/ and runs each one for SECONDS (default 10) from its seed corpus.
#
#   scripts/fuzz.sh            # the short run of the test script: 10 s a harness
#   scripts/fuzz.sh 300        # the longer run: 5 minutes a harness
#
# New inputs that reach new code are kept in build-fuzz/corpus/<harness>/ (so a later run
# goes on from there); an input that crashes a harness is written to
# build-fuzz/findings/<harness>-crash-* and the script fails. Reproduce one with
#   build-fuzz/fuzz/fuzz_<harness> build-fuzz/findings/<harness>-crash-...
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-10}
build=build-fuzz
jobs=$(nproc 2>/dev/null || echo 2)

CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DPOSPRINT_FUZZ=ON -DPOSPRINT_SANITIZE=ON -DPOSPRINT_TESTS=OFF -DPOSPRINT_WERROR=ON >/dev/null
cmake --build "$build" -j"$jobs" --target fuzz_all

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:symbolize=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

mkdir -p "$build/findings"
failed=0
printf '%-10s %8s %12s %10s %8s %9s\n' harness seconds executions exec/s corpus findings
for binary in "$build"/fuzz/fuzz_*; do
  harness=${binary##*/fuzz_}
  corpus="$build/corpus/$harness"
  mkdir -p "$corpus"
  log="$build/findings/$harness.log"
  dict=()
  [ -f "fuzz/$harness.dict" ] && dict=(-dict="fuzz/$harness.dict")
  # -timeout: an input that runs this long counts as a hang; -rss_limit_mb: as a leak.
  stamp="$build/findings/.$harness-started"
  touch "$stamp"
  status=0
  "$binary" "$corpus" "fuzz/corpus/$harness" "${dict[@]}" -max_total_time="$seconds" -timeout=10 \
    -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$build/findings/$harness-" >"$log" 2>&1 || status=$?
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  speed=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
  units=$(find "$corpus" -type f | wc -l)
  found=$(find "$build/findings" -name "$harness-*" -newer "$stamp" ! -name '*.log' | wc -l)
  printf '%-10s %8s %12s %10s %8s %9s\n' "$harness" "$seconds" "${runs:-?}" "${speed:-?}" "$units" "$found"
  if [ "$status" -ne 0 ]; then
    failed=1
    echo "fuzz_$harness failed (exit $status); its log: $log" >&2
    grep -E 'ERROR|runtime error|SUMMARY|Test unit written' "$log" | head -20 >&2 || true
  fi
done
exit "$failed"
