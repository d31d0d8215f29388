#!/usr/bin/env python3
"""Holds TSPrefs.ui's controls of the sixteen options against options.txt, the shipped list against identifiers.txt."""
import pathlib
import plistlib
import re
import sys
import xml.etree.ElementTree as ET

HERE = pathlib.Path(__file__).resolve().parent


def described(widget):
    values = {p.get("name"): "".join(p.itertext()).strip() for p in widget.findall("property")}
    return [widget.get("class"), widget.get("name"), values.get("tag", ""), values.get("action", ""),
            values.get("text", "").replace("&", "")]


def table(name):
    lines = (HERE / name).read_text(encoding="utf-8").splitlines()
    return [[cell.strip() for cell in line.split("|")] for line in lines if not line.startswith("#")]


def covers(entry, identifier):
    return re.search(entry["Data"], identifier) if entry.get("RegEx Type") == 1 else entry["Data"] == identifier


rows = table("options.txt")
expected = sorted(row[1:] for row in rows)
interface = [described(w) for w in ET.parse(HERE.parents[1] / "resources/TSPrefs.ui").iter("widget")]
found = sorted(row for row in interface if row[3] == "togglePerAppPrefs:")
for row in expected + found:
    if (row in expected) != (row in found):
        print("only in", "options.txt:" if row in expected else "TSPrefs.ui:", row)
shipped = plistlib.loads((HERE.parents[1] / "resources/Exclusions.plist").read_bytes())
names = {entry["Name"] for entry in shipped if entry.get("RegEx Type") != 2}
for identifier, name, _ in table("identifiers.txt"):
    names.discard(name)
    if [entry["Name"] for entry in shipped if covers(entry, identifier)] != [name] * (name != "-"):
        sys.exit(f"{identifier} is not covered by {name} alone")
for built in pathlib.Path(sys.argv[1], "Contents/Resources").glob("*.lproj/Exclusions.plist"):
    translated = plistlib.loads(built.read_bytes())
    if [{**entry, "Name": ""} for entry in translated] != [{**entry, "Name": ""} for entry in shipped]:
        sys.exit(f"{built} is another list")
    names ^= {"translated"} if translated[2]["Name"] == "Andere Terminals" else set()
sys.exit(len(rows) != 16 or found != expected or names != {"translated"})
