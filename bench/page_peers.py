#!/usr/bin/env python3
"""Times the page in kcmshell with 1,000 entries beside pages that the desktop brings, and beside what people would open
instead as far as it is installed: font managers and settings windows.
dbus-run-session xvfb-run -a page_peers.py BUILD [RUNS]
"""
import os
import shutil
import statistics
import sys
import tempfile

import first_frame

build = os.path.abspath(sys.argv[1])
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 15
SHELL = "kcmshell5" if shutil.which("kcmshell5") else "kcmshell6"
OURS = "kcm_typeslate"
PAGES = ["cookies", "kcm_filetypes", "netpref", "kcm_proxy", "kcm_webshortcuts"]
INSTEAD = [["font-manager"], ["gnome-font-viewer"], ["gnome-tweaks"], ["mate-appearance-properties"]]

with tempfile.TemporaryDirectory() as folder:
    environment = first_frame.environment_with(1000, build, folder + "/home")
    environment.update(QT_PLUGIN_PATH=build + "/plugins", TYPESLATE_PREFPANE=build + "/Typeslate.prefPane")
    programs = [[SHELL, page] for page in [OURS] + PAGES] + INSTEAD
    present = [program for program in programs if shutil.which(program[0])]
    medians = first_frame.medians({program[-1]: (program, environment) for program in present}, runs)

first_frame.print_table(medians, [OURS] if OURS in medians else [], runs)
if set(PAGES) <= set(medians):
    for step, times in zip(("mapped", "painted"), zip(*(medians[page] for page in PAGES))):
        print(f"{step}: median of the desktop's pages {statistics.median(times):.1f} ms")
for program in programs:
    if program not in present:
        print(f"{' '.join(program)} is not installed")
