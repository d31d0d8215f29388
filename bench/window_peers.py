#!/usr/bin/env python3
"""Times panehost with 1,000 and 10,000 entries beside windows of the same toolkit that show nothing, and one line of
text: dbus-run-session xvfb-run -a window_peers.py BUILD [RUNS [PANEHOST...]]

Further panehost programs, such as one of yesterday with its bundle beside it, take part with 1,000 entries.
"""
import os
import plistlib
import subprocess
import sys
import tempfile

import first_frame

build = os.path.abspath(sys.argv[1])
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 25
EMPTY, LINE = "empty window", "one line of text"


def entry(number):
    name = f"org.example.Application{number}"
    return {"Name": f"Application {number}", "Type": "Identifier", "Data": name, "Identifier": name,
            "Path": f"/usr/share/applications/{name}.desktop", "Settings": {"Enabled": True, "ShowSets": True}}


def environment_with(count, home):
    """Of a user who has so many entries."""
    os.mkdir(home)
    environment = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
    environment.update(HOME=home, TYPESLATE_ROOT=home + "/root", TYPESLATE_UID="1000", XDG_RUNTIME_DIR=home)
    entries = [{"Name": "Global", "Type": "Global", "Settings": {"Enabled": True}}]
    entries += [entry(i) for i in range(1, count)]
    subprocess.run([build + "/bin/typeslatectl", "defaults", "import", "com.tarnwick.typeslate", "-"], check=True,
                   input=plistlib.dumps({"TheExcList": entries, "Added Default Exclusions": True,
                                         "Default Exclusions Version": 1000}), env=environment)
    return environment


with tempfile.TemporaryDirectory() as folder:
    few, many = (environment_with(count, f"{folder}/{count}") for count in (1000, 10000))
    window = build + "/bin/bench_emptywindow"
    commands = {EMPTY: ([window], few), LINE: ([window, "Typeslate"], few),
                "panehost, 1,000": ([build + "/bin/panehost"], few),
                "panehost, 10,000": ([build + "/bin/panehost"], many)}
    commands.update({program: ([program], few) for program in sys.argv[3:]})
    medians = first_frame.medians(commands, runs)

print(f"{'':24} {'ms until mapped, painted':>26} {'times empty':>16} {'times one line':>16}")
for name, (mapped, painted) in medians.items():
    print(f"{name[-24:]:24} {mapped:17.1f} {painted:8.1f}" +
          "".join(f"{mapped / medians[peer][0]:10.2f} {painted / medians[peer][1]:5.2f}" for peer in (EMPTY, LINE)))
print(f"(medians of {runs} runs each, which take turns)")
