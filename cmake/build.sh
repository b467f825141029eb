#!/bin/sh
# Configures and builds a preset, with ninja where that is installed: build.sh PRESET [CMAKE OPTION...].
# A build folder that exists keeps the generator that it was made with.
set -eu
cd "$(dirname "$0")/.."
preset=$1
shift
if command -v ninja >/dev/null; then export CMAKE_GENERATOR=Ninja; fi
cmake --preset "$preset" "$@" >/dev/null
exec cmake --build --preset "$preset" --parallel "$(nproc)"
