#!/usr/bin/env python3
"""Holds the controls of the sixteen options in TSPrefs.ui against options.txt."""
import pathlib
import sys
import xml.etree.ElementTree as ET

HERE = pathlib.Path(__file__).resolve().parent


def described(widget):
    values = {p.get("name"): "".join(p.itertext()).strip() for p in widget.findall("property")}
    return [widget.get("class"), widget.get("name"), values.get("tag", ""), values.get("action", ""),
            values.get("text", "").replace("&", "")]


rows = [line for line in (HERE / "options.txt").read_text(encoding="utf-8").splitlines() if not line.startswith("#")]
expected = sorted([cell.strip() for cell in row.split("|")][1:] for row in rows)
interface = [described(w) for w in ET.parse(HERE.parents[1] / "resources/TSPrefs.ui").iter("widget")]
found = sorted(row for row in interface if row[3] == "togglePerAppPrefs:")
for row in expected + found:
    if (row in expected) != (row in found):
        print("only in", "options.txt:" if row in expected else "TSPrefs.ui:", row)
sys.exit(len(rows) != 16 or found != expected)
