#!/usr/bin/env bash
# The performance table of docs/performance.md: builds the benchmarks in Release
# (build-bench/), runs the in-memory benchmarks, the wire-speed runs of the reference jobs
# at 115200 and 9600 baud on a pseudo-terminal, and the footprint, then prints one table.
# Not part of CI; takes a few minutes (the 9600-baud runs alone about a minute).
#
#   scripts/bench.sh            everything
#   scripts/bench.sh --quick    shorter runs, no 9600-baud runs
#
# Results are kept in build-bench/bench-results/ (bench.json, wire.jsonl, footprint.json).
# Profiling one benchmark deterministically (instruction counts, see docs/performance.md):
#   POSPRINT_BENCH_ITERATIONS=200 valgrind --tool=callgrind \
#     build-bench/bench/posprint_bench --benchmark_filter='^receipt/TMT70'
set -euo pipefail
cd "$(dirname "$0")/.."

quick=0
[ "${1:-}" = "--quick" ] && quick=1

for tool in cmake ninja python3 strip; do
  command -v "$tool" >/dev/null || { echo "bench: $tool is missing (scripts/setup-debian.sh installs it)" >&2; exit 2; }
done

build=build-bench
results="$build/bench-results"
jobs=$(nproc 2>/dev/null || echo 2)

echo "== build (Release, $build/) ==" >&2
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DPOSPRINT_BENCH=ON -DPOSPRINT_TESTS=OFF >/dev/null
cmake --build "$build" -j"$jobs" --target posprint_bench posprint_wire posprint_wait_meter posprint posprint_drivers >&2
mkdir -p "$results"

echo "== in-memory benchmarks ==" >&2
if [ $quick -eq 1 ]; then
  repetitions=1 min_time=0.1
else
  repetitions=3 min_time=0.5
fi
"$build/bench/posprint_bench" --benchmark_min_time=$min_time --benchmark_repetitions=$repetitions \
  --benchmark_report_aggregates_only=$([ $repetitions -gt 1 ] && echo true || echo false) \
  --benchmark_out="$results/bench.json" --benchmark_out_format=json >&2

echo "== wire speed ==" >&2
bauds=115200,9600
[ $quick -eq 1 ] && bauds=115200
"$build/bench/posprint_wire" --baud $bauds > "$results/wire.jsonl"

echo "== footprint ==" >&2
plugin=$(readlink -f "$build/libposprint_drivers.so")
cp "$plugin" "$results/plugin-stripped.so"
strip --strip-all "$results/plugin-stripped.so"
stripped=$(stat -c %s "$results/plugin-stripped.so")
# Peak memory of `posprint run` on the sample receipt, its bytes going to a file.
rss=$(POSPRINT_PLUGIN="$plugin" "$build/bench/posprint_wire" --peak-rss "$build/tools/posprint/posprint" run \
        --model TMT70 --port "file:$results/sample-receipt.bin" --params examples/receipt.params examples/receipt.xml)
printf '{"plugin_stripped_bytes": %s, "peak_rss_kb": %s}\n' "$stripped" "$rss" > "$results/footprint.json"

echo >&2
python3 bench/report.py "$results"
