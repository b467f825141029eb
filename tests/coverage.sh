#!/bin/bash
# Runs the tests with coverage and prints, per folder, how many lines they reach.
set -eu
cd "$(dirname "$0")/.."
command -v gcovr >/dev/null || { echo "First: apt-get install gcovr"; exit 1; }
cmake/build.sh coverage >/dev/null
find build/coverage -name '*.gcda' -delete
for program in build/coverage/tests/*_tests; do "$program" >/dev/null || echo "FAILED $program"; done
gcovr --root . --object-directory build/coverage --filter 'platform/|libvornwout/|host/|runner/' \
  --exclude-throw-branches --print-summary
