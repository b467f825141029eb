#!/usr/bin/python3
"""Reads an exported text with tabs as a spreadsheet would, and compares it with the document that it was made of.

usage: tab_text.py TEXT.txt DOCUMENT.json

DOCUMENT.json is what `vornwout show --json` prints. Every cell of its visible tables is a field of the text.
"""

import collections
import csv
import json
import re
import sys

from documents import shown_cells

csv.field_size_limit(sys.maxsize)


def shown(text):
    """What a field can hold: tabs and line ends part fields, and what nobody sees is not written."""
    return " ".join("".join(c for c in text if c.isprintable() or c in "\t\r\n").split())


def without_marks(field):
    """What stands before the marks of footnotes."""
    return re.sub(r" \[[a-z]+(, ?[a-z]+)*\]$", "", field)


def main():
    with open(sys.argv[1], encoding="utf-8-sig", newline="") as stream:
        fields = collections.Counter(
            without_marks(shown(field)) for row in csv.reader(stream, delimiter="\t") for field in row)
    with open(sys.argv[2], encoding="utf-8") as stream:
        document = json.load(stream)
    cells = 0
    faults = 0
    for cell in shown_cells(document):
        cells += 1
        text = shown(cell)
        if fields[text] == 0:
            faults += 1
            print(f"  the text does not have {cell[:100]!r}", file=sys.stderr)
        fields[text] -= 1
    print(f"{sys.argv[1].rsplit('/', 1)[-1]}: {cells} cells compared")
    sys.exit(1 if faults or cells == 0 else 0)


if __name__ == "__main__":
    main()
