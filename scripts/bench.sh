#!/usr/bin/env bash
# Builds and runs the benchmarks, and writes docs/performance.md and its plot.
# Usage: scripts/bench.sh [options of Google Benchmark]
# With options, such as --benchmark_filter=FindByte, it prints and writes
# nothing. Wants a quiet machine with 4 GiB of memory to spare.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh check
cmake --preset bench
cmake --build --preset bench
program=build/bench/bench/quill_bench
if (($#)); then
  exec "$program" "$@"
fi
"$program" --benchmark_min_time=0.3 --benchmark_out=build/bench/results.json \
  --benchmark_out_format=json
bench/report.py build/bench/results.json
