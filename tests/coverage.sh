#!/bin/bash
# Runs the tests with coverage and prints, per folder, how many lines they reach.
set -eu
cd "$(dirname "$0")/.."
cmake --preset coverage >/dev/null
cmake --build --preset coverage >/dev/null
find build/coverage -name '*.gcda' -delete
for program in build/coverage/tests/*_tests; do "$program" >/dev/null || echo "FAILED $program"; done
command -v gcovr >/dev/null || { echo "For the table: apt-get install gcovr"; exit 1; }
gcovr --root . --object-directory build/coverage --filter 'platform/|libvornwout/|host/|runner/' \
  --exclude-throw-branches --print-summary
