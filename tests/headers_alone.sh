#!/bin/bash
# Every header includes what it needs: it is compiled by itself, here or as the first line of its source.
set -eu -o pipefail
cd "$(dirname "$0")/.."

# A source that includes its own header first has compiled it already.
without_source() {
  local header source
  while read -r header; do
    source=${header%.h}.cpp
    [ -e "$source" ] && [ "$(grep -m 1 '^#include' "$source")" = "#include \"$header\"" ] || echo "$header"
  done
}

tests/sources.sh '.*\.h' | without_source | xargs -P "$(nproc)" -I {} \
  g++ -std=c++20 -fsyntax-only -x c++ -Wall -Wextra -Werror -DVORN_BUILD_DIR=\".\" -DVORN_SOURCE_DIR=\".\" -I. -Ilibvornwout/include -include {} \
  /dev/null
