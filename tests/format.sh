#!/bin/bash
# Runs clang-format with the given options over all sources: -i to format, --dry-run -Werror to check.
set -eu -o pipefail
cd "$(dirname "$0")/.."
tests/sources.sh '.*\.(h|cpp)' | xargs clang-format "$@"
