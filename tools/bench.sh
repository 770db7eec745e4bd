#!/usr/bin/env bash
# Builds the optimised headless preset and runs the Google Benchmark measurements.
# Extra arguments go to the benchmark program (for instance --benchmark_filter=Toolbar).
set -euo pipefail
cd "$(dirname "$0")/.."

echo "== checking packages"
tools/deps.sh headless

echo "== building (optimised, with benchmarks)"
cmake --preset release >/dev/null
cmake --build --preset release --target korvel_bench

echo "== running"
build/release/bench/korvel_bench "$@"
