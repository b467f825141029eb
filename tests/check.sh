#!/bin/bash
# Runs every ring of the tests and closes with the sum: "N passed, N failed".
#
#   release build (gcc): repository, fault and job tests, examples, benchmarks once, the installed package
#   clang build with AddressSanitizer and UBSan: the unit tests, and the others again, fuzzing for 60 seconds
#   gates: format, naming and tidy checks, headers that compile alone
set -u
cd "$(dirname "$0")/.."
passed=0
failed=0
log=$(mktemp -d)
trap 'rm -rf "$log"' EXIT
started=$SECONDS

stage() { printf '\n== %s (%d s)\n' "$*" $((SECONDS - started)); }

# Counts one step; its output is shown when it fails.
step() {
  local name=$1
  shift
  if "$@" >"$log/step" 2>&1; then
    passed=$((passed + 1))
    echo "ok      $name"
  else
    failed=$((failed + 1))
    echo "FAILED  $name"
    tail -n 80 "$log/step"
    return 1
  fi
}

# Counts the tests of a program that has run: its output says how many passed, in GoogleTest's words or as
# "N passed, N failed".
judge() {
  local name=$1 status=$2 out=$3 good bad
  good=$(sed -nE 's/^\[  PASSED  \] ([0-9]+) tests?\.$/\1/p; s/^([0-9]+) passed, [0-9]+ failed$/\1/p' "$out" | tail -n 1)
  bad=$(sed -nE 's/^\[  FAILED  \] ([0-9]+) tests?, listed below:$/\1/p; s/^[0-9]+ passed, ([0-9]+) failed$/\1/p' "$out" | tail -n 1)
  grep -h -A 1 ': Skipped$' "$out"
  good=${good:-0}
  bad=${bad:-0}
  # A program that died, or ran nothing, is a failure whatever it printed.
  if [ "$status" -ne 0 ] && [ "$bad" -eq 0 ] || [ $((good + bad)) -eq 0 ]; then bad=$((bad + 1)); fi
  passed=$((passed + good))
  failed=$((failed + bad))
  if [ "$bad" -eq 0 ]; then
    echo "ok      $name: $good"
  else
    echo "FAILED  $name: $good passed, $bad failed"
    grep -vE '^\[ +(OK|RUN) ' "$out" | tail -n 150
  fi
}

# Runs test programs of a build, as many at a time as there are processors.
suites() {
  local programs=("${@:2}") program name running=0
  programs=("${programs[@]/#/$1/tests/}")
  for program in "${programs[@]}"; do
    name=$(basename "$program")
    {
      "$program" >"$log/$name" 2>&1
      echo $? >"$log/$name.status"
    } &
    running=$((running + 1))
    if [ "$running" -ge "$(nproc)" ]; then
      wait -n
      running=$((running - 1))
    fi
  done
  wait
  for program in "${programs[@]}"; do
    name=$(basename "$program")
    judge "$name" "$(cat "$log/$name.status")" "$log/$name"
  done
}

build() {
  # A demo may have configured the same folder without tests.
  cmake/build.sh "$@" -DVORN_TESTS=ON >"$log/build" 2>&1 && return
  grep -A 20 -E 'rror|FAILED' "$log/build" | head -n 100
  return 1
}

finish() {
  printf '\n%d s in all\n%d passed, %d failed\n' $((SECONDS - started)) "$passed" "$failed"
  [ "$failed" -eq 0 ]
  exit
}

stage gates
step "format" tests/format.sh --dry-run -Werror
stage "release build"
step "build (gcc)" build release -DVORN_UNIT_TESTS=OFF || finish
stage "release tests"
suites build/release fault_tests job_tests repository_tests
step "benchmarks run" bench/run.sh build/release/bench --smoke
step "installed package serves an outside host" tests/installed_package.sh build/release
step "the restyled example is as expected" tests/restyled_example.sh build/release/runner/vornwout
step "demo" examples/demo.sh build/release/runner/vornwout
step "a validator and a browser read exported pages" tests/readers/exports.sh build/release/runner/vornwout
step "jq reads a trace" tests/traces_with_jq.sh build/release/runner/vornwout
stage "build with sanitizers"
if step "build (clang, AddressSanitizer, UBSan, libFuzzer)" build fuzzing; then
  stage "tests with sanitizers"
  # A smaller quarantine of freed memory: the leak check after each test walks all of it.
  export ASAN_OPTIONS=quarantine_size_mb=8:thread_local_quarantine_size_kb=128
  suites build/fuzzing host_tests platform_tests runner_tests libvornwout_tests fault_tests job_tests repository_tests
  unset ASAN_OPTIONS
  stage fuzzing
  step "fuzzing for 60 seconds" fuzz/run.sh 60
fi
stage "more gates"
step "headers compile alone" tests/headers_alone.sh
step "naming and tidy" tests/tidy.sh
finish
