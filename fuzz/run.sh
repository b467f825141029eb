#!/bin/bash
# Fuzzes for the given number of seconds, starting from the seeds in fuzz/seeds: the language for most of the
# time, beside it the other targets one after the other. A crash is kept in build/fuzzing/crashes; make it
# a named case of the tests.
set -eu
cd "$(dirname "$0")/.."
seconds=$1
build=build/fuzzing/fuzz
mkdir -p build/fuzzing/crashes
run_target() {
  local target=$1 time=$2
  local corpus="build/fuzzing/corpus/$target"
  mkdir -p "$corpus"
  "$build/$target" "$corpus" "fuzz/seeds/$target" -dict="$build/words.dict" \
    -max_total_time="$time" -timeout=10 -rss_limit_mb=2048 -max_len=4096 -print_final_stats=1 \
    -artifact_prefix="build/fuzzing/crashes/$target-" 2>&1 |
    grep -E 'ERROR|SUMMARY|stat::number_of_executed_units|Test unit written|Base64|Failure' |
    sed "s/^/$target: /"
  return "${PIPESTATUS[0]}"
}

# Two processes, for two cores.
(
  status=0
  run_target parser_fuzz $((seconds * 2 / 5)) || status=1
  run_target modify_fuzz $((seconds * 2 / 5)) || status=1
  run_target tokenizer_fuzz $((seconds / 5)) || status=1
  exit "$status"
) &
language=$!
status=0
for target in host_script_fuzz container_fuzz document_fuzz build_fuzz export_fuzz string_table_fuzz; do
  run_target "$target" $((seconds / 6)) || status=1
done
wait "$language" || status=1
exit "$status"
