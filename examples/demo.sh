#!/bin/bash
# Runs the example job and tells where to look next.
set -eu
cd "$(dirname "$0")/.."
program=$1
job=examples/first-steps/two_documents.qxs
echo "vornwout run $job"
echo
"$program" run "$job"
echo
echo "The job is $job; change it and run it again:"
echo "  $program run $job"
echo "  $program run --trace /tmp/trace.jsonl $job    what was sent to the host, as JSON lines"
echo "  $program help                                 the commands of this version"
