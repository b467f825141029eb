#!/bin/bash
# clang-tidy (.clang-tidy: naming as an error, and a few checks) over the sources of the four layers,
# with the compile commands of the clang build.
set -eu -o pipefail
cd "$(dirname "$0")/.."
# The precompiled headers in them are made by the build.
[ -e build/fuzzing/runner/libvornrunner.a ] || cmake/build.sh fuzzing -DVORN_TESTS=ON >/dev/null
tests/sources.sh '.*\.cpp' platform libvornwout host runner |
  xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/fuzzing
