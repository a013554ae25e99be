#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
"""How good the text of a PDF's pages is, beside that of pdftotext.

Prints one line per Spanish and English CV of $DORVANTEL_TEST_DATA/cv, tab separated: how many words of three letters or
more each program reads, what share of them stands in the Spanish or the English dictionary, and "ok" where ours is not
below. With --explain, the words that only one of the two reads follow a line that is "below".

One file is known to stay below: en-fullstacker-wkhtml-5p. Its producer (wkhtmltopdf on Qt 4.8) places every glyph by
itself and writes no blanks, so a reader has to guess them from gaps. In its bold type and its rows of labels the gap
between two words ("industry experience") is no wider than what letters leave free inside a word; pdftotext tells the
two apart by the glyphs' advance widths, which Qt's interface does not give.

  bench/cv_words.py [--reader build/release/bin/dorvantel-pdf-reader] [--explain]
"""
import argparse
import collections
import csv
import os
import pathlib
import re
import subprocess
import sys
import unicodedata

DICTIONARIES = ("/usr/share/dict/spanish", "/usr/share/dict/american-english")
WORD = re.compile(r"[^\W\d_]{3,}")


def composed(text):
    return unicodedata.normalize("NFC", text).lower()


def dictionary():
    words = set()
    for path in DICTIONARIES:
        words.update(composed(pathlib.Path(path).read_text(encoding="utf-8")).split("\n"))
    return words


def words_printed_by(command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60, check=True)
    return WORD.findall(composed(done.stdout.decode("utf-8", errors="replace")))


def share(words, known):
    return sum(word in known for word in words) / len(words) if words else 0.0


def explanation(words, others, known):
    only = collections.Counter(words) - collections.Counter(others)
    return " ".join(word + ("" if word in known else "?") for word in sorted(only.elements())) or "-"


def main():
    arguments = argparse.ArgumentParser(description="The share of dictionary words in our text and in pdftotext's.")
    arguments.add_argument("--reader", default="build/release/bin/dorvantel-pdf-reader")
    arguments.add_argument("--explain", action="store_true", help="print the words behind each line that is below")
    options = arguments.parse_args()
    data = os.environ.get("DORVANTEL_TEST_DATA")
    if not data:
        sys.exit("DORVANTEL_TEST_DATA names no folder with test data")

    known = dictionary()
    with open(os.path.join(data, "INDEX.tsv"), encoding="utf-8", newline="") as index:
        rows = [row for row in csv.DictReader(index, delimiter="\t", quoting=csv.QUOTE_NONE)
                if row["file"].startswith("cv/") and row["language"] in ("es", "en")]
    print("file", "words", "pdftotext words", "share", "pdftotext share", "verdict", sep="\t")
    for row in rows:
        path = os.path.join(data, row["file"])
        ours = words_printed_by([options.reader, "--text", path])
        theirs = words_printed_by(["pdftotext", "-enc", "UTF-8", path, "-"])
        below = share(ours, known) < share(theirs, known)
        print(row["file"].removeprefix("cv/"), len(ours), len(theirs), f"{share(ours, known):.2%}",
              f"{share(theirs, known):.2%}", "below" if below else "ok", sep="\t")
        if below and options.explain:
            print("  only ours (? not in a dictionary):", explanation(ours, theirs, known))
            print("  only pdftotext's:", explanation(theirs, ours, known))


if __name__ == "__main__":
    main()
