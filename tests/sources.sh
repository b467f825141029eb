#!/bin/bash
# Lists the sources whose names match the pattern in $1 below the folders in the other arguments, or
# below all folders with code. Fails on an empty list, so that no gate passes by checking nothing.
set -eu
cd "$(dirname "$0")/.."
pattern=$1
shift
[ $# -gt 0 ] || set -- platform libvornwout host runner tests bench fuzz examples
find "$@" -type f -regextype posix-extended -regex "$pattern" | sort | grep .
