#!/bin/bash
# clang-tidy (.clang-tidy: naming as an error, and a few checks) over the sources of the four layers,
# with the compile commands of the clang build.
set -eu -o pipefail
cd "$(dirname "$0")/.."
[ -e build/fuzzing/compile_commands.json ] || cmake --preset fuzzing >/dev/null
tests/sources.sh '.*\.cpp' platform libvornwout host runner |
  xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/fuzzing
