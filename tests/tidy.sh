#!/bin/bash
# clang-tidy (.clang-tidy: naming as an error, and a few checks) over the sources of the four layers.
set -eu
cd "$(dirname "$0")/.."
database=build/fuzzing
[ -e "$database/compile_commands.json" ] || { database=build/release; cmake --preset release >/dev/null; }
git ls-files 'platform/*.cpp' 'libvornwout/*.cpp' 'host/*.cpp' 'runner/*.cpp' |
  xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p "$database" 2>/dev/null
