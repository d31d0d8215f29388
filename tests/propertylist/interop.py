#!/usr/bin/env python3
"""Exchanges property lists with Python's plistlib and, where it is installed, with plistutil.

usage: interop.py PLCONVERT
"""
import datetime
import itertools
import math
import plistlib
import shutil
import subprocess
import sys

FORMATS = {"binary": plistlib.FMT_BINARY, "xml": plistlib.FMT_XML}
THEIRS = {"binary": "bin", "xml": "xml"}
EDGES = [0, 1, 127, 128, 255, 256, 65535, 65536, 2**31 - 1, 2**31, 2**32 - 1, 2**32, 2**63 - 1]

VALUES = {
    "strings": ["", "plain", "<&>\"']]>", "h\u00e9llo", "\U0001f600", "a\tb\nc", "x" * 14, "x" * 15, "y" * 70000],
    "integers": EDGES + [-n for n in EDGES] + [-(2**63), 2**63, 2**64 - 1],
    "reals": [0.0, 0.1, 1e-310, 1.7976931348623157e308, -2.5, math.inf, -math.inf, math.nan],
    "negative zero": [-0.0],
    "booleans": [True, False, 1, 0, 1.0],
    "dates": [datetime.datetime(y, 2, 28, 23, 59, 59) for y in (1, 1600, 1969, 1970, 2001, 2026, 9999)],
    "data": [b"", b"\0", b"ab", b"abc", bytes(range(256)), b"z" * 70000],
    "empty": {"array": [], "dictionary": {}},
    "order": {key: key for key in "zyxabc"},
    "many": {"entries": [{"number": i, "name": "entry %d" % i, "on": i % 2 == 0} for i in range(3000)]},
    "top level": "only a string",
    "nested": {"a": [[[{"b": [{}]}]]]},
}
# What plistutil 2.2 cannot tell from another value or cannot hold.
NOT_FOR_PLISTUTIL = {"integers", "reals", "negative zero", "dates", "order", "top level"}

failures = []


def run(command, data):
    return subprocess.run(command, input=data, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)


def same(a, b):
    """Equal in type, sign of zero and order of keys too."""
    return plistlib.dumps(a, sort_keys=False) == plistlib.dumps(b, sort_keys=False)


def exchange(plconvert, plistutil, name, value):
    for source, target in itertools.product(FORMATS, FORMATS):
        data = plistlib.dumps(value, fmt=FORMATS[source], sort_keys=False)
        result = run([plconvert, target], data)
        if result.returncode != 0 or not same(plistlib.loads(result.stdout), value):
            failures.append("%s: plistlib's %s through our %s" % (name, source, target))
        if plistutil and name not in NOT_FOR_PLISTUTIL:
            ours = run([plconvert, source], data).stdout
            between = run([plistutil, "-i", "-", "-f", THEIRS[target], "-o", "-"], ours)
            result = run([plconvert, "binary"], between.stdout)
            if result.returncode != 0 or plistlib.loads(result.stdout) != value:
                failures.append("%s: our %s through plistutil's %s" % (name, source, target))


def main():
    plconvert = sys.argv[1]
    plistutil = shutil.which("plistutil")
    for name, value in VALUES.items():
        exchange(plconvert, plistutil, name, value)
    if run([plconvert, "xml"], b"bplist00").returncode != 1:
        failures.append("a malformed list is refused")
    print("%d values, plistlib%s" % (len(VALUES), " and plistutil" if plistutil else " only"))
    return "\n".join(failures) or 0


sys.exit(main())
