#!/bin/bash
# Runs a first job; then builds a document from real data, saves it with a password in one job, opens
# it again in another, and shows it; then restyles it and exports it. What it makes stays in build/demo.
set -eu
cd "$(dirname "$0")/.."
program=$1
data=examples/open-data
out=build/demo

say() { printf '\n\n$ vornwout'; printf ' %s' "$@"; printf '\n\n'; }
run() {
  say "$@"
  "$program" "$@"
}

rm -rf "$out"
mkdir -p "$out"
printf 'sunspots\n' >"$out/password"

run run examples/first-steps/two_documents.qxs

run build "$data/report.json" -o "$out/report.qxv"
run run --handle "OUT=$PWD/$out" "$data/protect.qxs"
run run --handle "OUT=$PWD/$out" "$data/reopen.qxs"

protected=("$out/protected.qxv" --password-file "$out/password" --no-pager)
run show "${protected[@]}" --outline
number=$("$program" show "${protected[@]}" --outline |
  sed -nE 's/^ *([0-9]+) .*Admissions by department.*/\1/p')
run show "${protected[@]}" --object "$number"

# The same report restyled by a third job: before and after.
run run --handle "OUT=$PWD/$out" "$data/restyle.qxs"
for document in report.qxv restyled.qxw; do
  number=$("$program" show "$out/$document" --outline --no-pager |
    sed -nE 's/^ *([0-9]+) .*Persons on the Titanic.*/\1/p')
  run show "$out/$document" --object "$number" --no-pager
done

# What others read of it.
run run --handle "OUT=$PWD/$out" "$data/publish.qxs"

# Without the password nothing is shown.
say show "$out/protected.qxv"
if "$program" show "$out/protected.qxv" --no-pager 2>&1; then
  echo "The document opened without its password." >&2
  exit 1
fi

cat <<END


The report as others read it:
  $PWD/$out/report.html
      a page for any browser, light and dark, with everything in it
  $PWD/$out/report.txt
      a text, its charts beside it

Go on from here:
  $program show $out/report.qxv
      turns the pages of the document
  $program run examples/first-steps/two_documents.qxs
      runs the first job again; change it before
  $program run --handle OUT=$out $data/publish.qxs
      exports the report again; change the job before
  $program help
      lists the commands of this version
  $out/report.qxw, $out/restyled.qxw
      are zip files with index.html, a page for any browser
  examples/open-data/README.md
      tells where the data come from
END
