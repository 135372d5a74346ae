#!/usr/bin/env python3
"""Prints the rows of the upper-case table in src/platform/CaseMap.cpp.

Each row is {first, last, delta, step}: every code unit from first to last
whose distance from first is a multiple of step maps to itself plus delta.
The mappings are the simple (one to one) upper-case mappings of the Basic
Multilingual Plane above ASCII, from the Unicode database of this Python.
"""
import unicodedata


def mappings():
    for code in range(0x80, 0x10000):
        if 0xD800 <= code <= 0xDFFF:
            continue
        upper = chr(code).upper()
        if len(upper) == 1 and upper != chr(code):
            yield code, ord(upper) - code


def runs(pairs):
    i = 0
    while i < len(pairs):
        first, delta = pairs[i]
        j, step = i, None
        while j + 1 < len(pairs) and pairs[j + 1][1] == delta:
            gap = pairs[j + 1][0] - pairs[j][0]
            if step is None and gap in (1, 2):
                step = gap
            if gap != step:
                break
            j += 1
        yield first, pairs[j][0], delta, step or 1
        i = j + 1


def main():
    print(f"    // Unicode {unicodedata.unidata_version}")
    line = ""
    for row in runs(list(mappings())):
        cell = "{0x%04X, 0x%04X, %d, %d}, " % row
        if len(line) + len(cell) > 110:
            print("    " + line.rstrip())
            line = ""
        line += cell
    print("    " + line.rstrip())


if __name__ == "__main__":
    main()
