#!/usr/bin/env python3
"""Times panehost with 1,000 and 10,000 entries beside windows of the same toolkit that show nothing, and one line of
text: dbus-run-session xvfb-run -a window_peers.py BUILD [RUNS [PANEHOST...]]

Further panehost programs, such as one of yesterday with its bundle beside it, take part with 1,000 entries.
"""
import os
import sys
import tempfile

import first_frame

build = os.path.abspath(sys.argv[1])
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 25
EMPTY, LINE = "empty window", "one line of text"


with tempfile.TemporaryDirectory() as folder:
    few, many = (first_frame.environment_with(count, build, f"{folder}/{count}") for count in (1000, 10000))
    window = build + "/bin/bench_emptywindow"
    commands = {EMPTY: ([window], few), LINE: ([window, "Typeslate"], few),
                "panehost, 1,000": ([build + "/bin/panehost"], few),
                "panehost, 10,000": ([build + "/bin/panehost"], many)}
    commands.update({program: ([program], few) for program in sys.argv[3:]})
    medians = first_frame.medians(commands, runs)

first_frame.print_table(medians, [EMPTY, LINE], runs)
