#!/bin/bash
# Another program reads what we write: jq takes every line of a trace as one JSON object with an event,
# and finds in it the requests that the example job makes.
set -eu -o pipefail
cd "$(dirname "$0")/.."
program=$1
trace=$(mktemp)
trap 'rm -f "$trace"' EXIT
"$program" run --quiet --trace "$trace" examples/first-steps/two_documents.qxs
[ "$(jq -r .event "$trace" | wc -l)" = "$(wc -l <"$trace")" ]
requests=$(jq -r 'select(.event == "request") | "\(.id) \(.command) \(.name)"' "$trace")
expected='1 4 figures
2 4 remarks
3 0 figures
4 0 remarks
5 2 
6 3 minutes
7 1 figures
8 2 
9 1 ALL'
[ "$requests" = "$expected" ] || { diff <(echo "$expected") <(echo "$requests"); exit 1; }
jq -r 'select(.event == "table") | .cells[].value' "$trace" | grep '^日本 and' >/dev/null
