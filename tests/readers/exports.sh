#!/bin/bash
# Opens what OUTPUT EXPORT makes of the example document, and of hostile ones, with programs that are not ours.
#
#   exports.sh PROGRAM [FOLDER for screenshots]
set -eu -o pipefail
program=$(realpath "$1")
screenshots=${2:+--screenshots $(realpath "$2")}
cd "$(dirname "$0")/../.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$program" build examples/open-data/report.json -o "$work/report.qxv" >"$work/log"

# Labels and cells that try to be something else, a cell of a megabyte, and 16,384 columns.
{
  echo 'region,what,amount'
  printf '"<script>alert(1)</script>","</table><img src=x onerror=alert(2)>",1\n'
  printf '"\xd9\x85\xd8\xb1\xd8\xad\xd8\xa8\xd8\xa7","a\xe2\x80\xaeb\xe2\x80\x8bc",2\n'
  printf '"&lt;b&gt;","""quoted"" &amp;",3\n'
} >"$work/hostile.csv"
{
  echo 'row,column,text'
  printf 'long,only,"%s"\n' "$(head -c 1000000 /dev/zero | tr '\0' 'x')"
} >"$work/long.csv"
awk 'BEGIN { print "row,column,amount"; for (i = 1; i <= 16384; i++) print "r,c" i "," i }' >"$work/wide.csv"
for name in hostile long wide; do
  case $name in
    hostile) columns=(--rows region --columns what --value amount) ;;
    long) columns=(--rows row --columns column --value text --format A8) ;;
    wide) columns=(--rows row --columns column --value amount) ;;
  esac
  "$program" build --table "$work/$name.csv" "${columns[@]}" -o "$work/$name.qxv" >>"$work/log"
done

for name in report hostile long wide; do
  cat >"$work/$name.qxs" <<JOB
OUTPUT OPEN FILE='$work/$name.qxv'.
OUTPUT EXPORT PRINT=ERRORS /CONTENTS LAYERS=ALL /HTML DOCUMENTFILE='$work/$name.html' INTERACTLAYERS=YES.
OUTPUT EXPORT PRINT=ERRORS /HTML DOCUMENTFILE='$work/$name-plain.html' STYLING=NO.
OUTPUT CLOSE *.
* Again, without the logs of the commands so far.
OUTPUT OPEN FILE='$work/$name.qxv'.
OUTPUT EXPORT PRINT=ERRORS /CONTENTS LAYERS=ALL /TEXT DOCUMENTFILE='$work/$name.txt' SEPARATOR=TAB.
OUTPUT CLOSE *.
OUTPUT OPEN FILE='$work/$name.qxv'.
OUTPUT EXPORT PRINT=ERRORS /CONTENTS LAYERS=ALL /TEXT DOCUMENTFILE='$work/$name-16.txt' SEPARATOR=TAB ENCODING=UTF16.
JOB
  "$program" run --quiet "$work/$name.qxs" >>"$work/log"
  "$program" show "$work/$name.qxv" --json >"$work/$name.json"
  for page in "$name" "$name-plain"; do
    # shellcheck disable=SC2086 # two words or none
    tests/readers/html_page.py "$work/$page.html" "$work/$name.json" $screenshots
  done
  # In every encoding the same text, and in it every cell.
  iconv -f UTF-16 -t UTF-8 "$work/$name-16.txt" | sed "s/$name-16\\([0-9]*\\.png\\)/$name\\1/" |
    cmp - "$work/$name.txt"
  tests/readers/tab_text.py "$work/$name.txt" "$work/$name.json"
done
