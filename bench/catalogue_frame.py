#!/usr/bin/env python3
"""How much later panehost's first frame comes with Adobe's font lists on the machine, which its start makes a catalogue
of: dbus-run-session xvfb-run -a catalogue_frame.py BUILD [RUNS]
"""
import os
import sys
import tempfile

import first_frame
from make_font_lists import make

build = os.path.abspath(sys.argv[1])
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 15
NONE, LIMIT = "no font lists", 40  # milliseconds, with 10,000 records

with tempfile.TemporaryDirectory() as folder:
    commands = {}
    for records in (0, 1_000, 10_000, 100_000):
        environment = first_frame.environment_with(100, build, f"{folder}/{records}")
        if records:
            make(environment["TYPESLATE_ROOT"], records)
        commands[f"{records:,} records" if records else NONE] = ([build + "/bin/panehost"], environment)
    medians = first_frame.medians(commands, runs)

first_frame.print_table(medians, [NONE], runs)
later = medians["10,000 records"][0] - medians[NONE][0]
print(f"mapped later with 10,000 records: {later:.1f} ms (target: at most {LIMIT})" + "  MISSED" * (later > LIMIT))
