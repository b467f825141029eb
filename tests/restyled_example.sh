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

# How an object, its title, labels, cells and texts look, one line for each look with what has it.
looks() {
  "$program" show "$work/$1" --json --object "$2" | jq -cS '
    def look: with_entries(select(.key | IN("bold", "italic", "underlined", "textColor", "color",
      "backgroundColor", "font", "size", "width")));
    def looks(what): map({look: look, what: what}) | group_by(.look) | .[] |
      select(.[0].look != {}) | .[0].look + {of: map(.what)};
    (.objects[0] | {name: .["label"], size, title: .content.titleLook, summary: .content.summary} |
      with_entries(select(.value != null))),
    (.objects[0].content |
      ([.dimensions[]?.categories[]] | looks(.["label"])),
      ([.cells[]?] | looks(.text)),
      ([.paragraphs[]?.runs[]] | looks(.text)))'
}
# The names of the table looks that the tables of a document have.
table_looks() {
  python3 - "$work/$1" <<'END'
import re, sys, zipfile
with zipfile.ZipFile(sys.argv[1]) as document:
    parts = [name for name in document.namelist() if name.startswith("objects/")]
    objects = "".join(document.read(part).decode() for part in parts)
print(*re.findall(r'<table-look><tableProperties[^>]* name="([^"]*)"', objects) or ["none"])
END
}
# What the elements of a chart are drawn with, and the parts that they were found to be.
styles() {
  "$program" show "$work/$1" --raw --object "$(number "$1" "$2")" |
    grep -oE '<[a-z]+ [^>]*style="[^>]*>' |
    sed -E 's/ (d|x|y|width|height|transform)="[^"]*"//g' | sort | uniq -c
}

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
  printf '\nLooks and sizes:\n'
  for label in Sunspots 'Sunspot numbers' 'Persons on the Titanic' 'Oesophageal cancer'; do
    looks restyled.qxw "$(number restyled.qxw "$label")"
  done
  # Three texts have this label; the last one was changed.
  text=$("$program" show "$work/restyled.qxw" --no-pager --outline |
    sed -nE 's/^ *([0-9]+) .*What the figures say.*/\1/p' | tail -n 1)
  show restyled.qxw --object "$text"
  looks restyled.qxw "$text"
  printf '\nTable looks before: '
  table_looks report.qxv
  printf 'Table looks after: '
  table_looks restyled.qxw
  printf '\nA chart before:\n'
  styles report.qxv Sunspots
  printf '\nThe chart after:\n'
  styles restyled.qxw Sunspots
} >"$work/out" 2>&1
sed -i -E 's/ +$//' "$work/out"
if [ "${2:-}" = --update ]; then
  cp "$work/out" "$data/restyle.expected"
  exit
fi
diff -u "$data/restyle.expected" "$work/out"
