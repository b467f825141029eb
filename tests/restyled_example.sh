#!/bin/bash
# Runs examples/open-data/restyle.qxs on the report of report.json and compares what the document shows
# before and after with restyle.expected, which lies beside the job; --update writes that file anew.
#
#   restyled_example.sh PROGRAM [--update]
set -eu
program=$1
data=examples/open-data
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C.UTF-8 COLUMNS=200
show() {
  "$program" show "$work/$1" --no-pager --color never "${@:2}" | sed "s|$work/||; s/^── $1 ─*$/── $1/"
}
object() { show "$1" --object "$(number "$1" "$2")" | sed -n 1,32p; }
number() { "$program" show "$work/$1" --no-pager --outline | sed -nE "s/^ *([0-9]+) .*$2.*/\1/p" | head -n 1; }

"$program" build "$data/report.json" -o "$work/report.qxv" >/dev/null
{
  show report.qxv --outline
  "$program" run --handle "OUT=$work" "$data/restyle.qxs"
  show restyled.qxw --outline
  for label in 'Persons on the Titanic' 'Oesophageal cancer' 'Correlations' 'Share indices by year' 'Sunspot numbers'; do
    printf '\nBefore: '
    object report.qxv "$label"
    printf '\nAfter: '
    object restyled.qxw "$label"
  done
  printf '\nLooks of the correlations: '
  "$program" show "$work/restyled.qxw" --json --object "$(number restyled.qxw Correlations)" |
    jq -S '[.. | objects | select(has("bold") or has("italic") or has("look")) | del(.notes)]'
} >"$work/out" 2>&1
sed -i -E 's/ +$//' "$work/out"
if [ "${2:-}" = --update ]; then
  cp "$work/out" "$data/restyle.expected"
  exit
fi
diff -u "$data/restyle.expected" "$work/out"
