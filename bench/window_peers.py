#!/usr/bin/env python3
"""Times panehost with 1,000 entries beside an empty window of the same toolkit, from the start of the process until the
window is mapped: dbus-run-session xvfb-run -a window_peers.py BUILD [RUNS]
"""
import ctypes
import ctypes.util
import os
import plistlib
import statistics
import subprocess
import sys
import tempfile
import time

build = os.path.abspath(sys.argv[1])
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 25
SUBSTRUCTURE_NOTIFY, MAP_NOTIFY = 1 << 19, 19

x = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
x.XOpenDisplay.restype = ctypes.c_void_p
x.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x.XDefaultRootWindow.restype = ctypes.c_ulong
x.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
x.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
x.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
display = x.XOpenDisplay(None)
x.XSelectInput(display, x.XDefaultRootWindow(display), SUBSTRUCTURE_NOTIFY)
event = (ctypes.c_long * 24)()


def milliseconds_until_mapped(command, environment):
    x.XSync(display, 1)  # forget the events of the last window
    start = time.perf_counter()
    process = subprocess.Popen(command, env=environment, stderr=subprocess.DEVNULL)
    while True:
        x.XNextEvent(display, event)
        if ctypes.cast(event, ctypes.POINTER(ctypes.c_int))[0] == MAP_NOTIFY:
            break
    elapsed = (time.perf_counter() - start) * 1e3
    process.kill()
    process.wait()
    return elapsed


def entry(number):
    name = f"org.example.Application{number}"
    return {"Name": f"Application {number}", "Type": "Identifier", "Data": name, "Identifier": name,
            "Path": f"/usr/share/applications/{name}.desktop", "Settings": {"Enabled": True, "ShowSets": True}}


with tempfile.TemporaryDirectory() as home:
    environment = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
    environment.update(HOME=home, TYPESLATE_ROOT=home + "/root", TYPESLATE_UID="1000", XDG_RUNTIME_DIR=home)
    entries = [{"Name": "Global", "Type": "Global", "Settings": {"Enabled": True}}] + [entry(i) for i in range(1, 1000)]
    domain = "com.tarnwick.typeslate"
    subprocess.run([build + "/bin/typeslatectl", "defaults", "import", domain, "-"], env=environment, check=True,
                   input=plistlib.dumps({"TheExcList": entries, "Added Default Exclusions": True,
                                         "Default Exclusions Version": 1000}))
    times = {"empty window": [], "panehost": []}
    commands = {"empty window": [build + "/bin/bench_emptywindow"], "panehost": [build + "/bin/panehost"]}
    for run in range(runs + 2):
        for name, command in commands.items():
            elapsed = milliseconds_until_mapped(command, environment)
            if run >= 2:
                times[name].append(elapsed)
    medians = {name: statistics.median(values) for name, values in times.items()}
    for name, value in medians.items():
        print(f"{name:13} {value:7.1f} ms")
    print(f"ratio         {medians['panehost'] / medians['empty window']:7.2f}   (median of {runs} alternating runs each)")
