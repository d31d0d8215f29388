#!/usr/bin/python3
"""Times the preview in the settings window beside the toolkit's own list of fonts and GTK's font chooser, with the same
generated fonts: dbus-run-session xvfb-run -a preview_peers.py BUILD [FONTS [RUNS]]
"""
import os
import shutil
import statistics
import subprocess
import sys
import tempfile

import first_frame
import make_fonts

build = os.path.abspath(sys.argv[1])
count = int(sys.argv[2]) if len(sys.argv) > 2 else 3000
runs = int(sys.argv[3]) if len(sys.argv) > 3 else 7
COMMANDS = {"the preview": [build + "/bin/bench_preview", build + "/Typeslate.prefPane"],
            "QFontComboBox": [build + "/bin/bench_fontcombobox"],
            "GTK's font chooser": [os.path.join(os.path.dirname(__file__), "font_chooser.py")]}
FIGURES = ["first rows", "an option", "page", "worst page"]


def figures(command, environment):
    printed = subprocess.run(command, env=environment, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                             text=True, timeout=120).stdout
    return {name: float(value) for name, value in (line.split("\t") for line in printed.splitlines())}


with tempfile.TemporaryDirectory() as folder:
    environment = first_frame.environment_with(1000, build, folder + "/home")
    environment["FONTCONFIG_FILE"] = str(make_fonts.make(folder, count))
    shutil.copytree(build + "/Sample.plinth", folder + "/home/Library/Plinthworks/Typeslate.plinth")
    # The first of all fills fontconfig's cache, and does not count.
    taken = {name: [] for name in COMMANDS}
    for run in range(runs + 1):
        for name, command in COMMANDS.items():
            taken[name].append(figures(command, environment))

print(f"{count} fonts, medians of {runs} runs, milliseconds; the worst page of all runs")
print(f"{'':20}" + "".join(f"{figure:>14}" for figure in FIGURES))
for name, rows in taken.items():
    line = f"{name:20}"
    for figure in FIGURES:
        values = [row[figure] for row in rows[1:] if figure in row]
        line += f"{(max if figure == 'worst page' else statistics.median)(values):14.1f}" if values else f"{'':14}"
    print(line)
