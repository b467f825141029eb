#!/bin/bash
# Runs the benchmarks of a build's bench folder: medians of nine repetitions, or once with --smoke. Then
# the limits that the project promises; one that is broken fails the run, but not with --smoke.
set -eu
folder=$1
options="--benchmark_repetitions=9 --benchmark_report_aggregates_only=true"
[ "${2:-}" = --smoke ] && options="--benchmark_min_time=0.01"
found=0
for program in "$folder"/*_bench; do
  found=1
  "$program" $options
done
[ "$found" = 1 ]
"$folder/limits" "$folder/../runner/vornwout" "${2:-}"
