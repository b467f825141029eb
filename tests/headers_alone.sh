#!/bin/bash
# Compiles every header by itself: each includes what it needs.
set -eu -o pipefail
cd "$(dirname "$0")/.."
tests/sources.sh '.*\.h' | xargs -P "$(nproc)" -I {} \
  g++ -std=c++20 -fsyntax-only -x c++ -Wall -Wextra -Werror -DVORN_BUILD_DIR=\".\" -DVORN_SOURCE_DIR=\".\" -I. -Ilibvornwout/include -include {} \
  /dev/null
