#!/usr/bin/env python3
"""Times "typeslatectl defaults write" beside kwriteconfig5, whole processes, alternating: ctl_peers.py TYPESLATECTL [RUNS]

Both change one key of a file of ten keys, to a new value each time. Prints the medians and their ratio; exit status 77
without kwriteconfig5.
"""
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

program = os.path.abspath(sys.argv[1])
runs = int(sys.argv[2]) if len(sys.argv) > 2 else 200
peer = shutil.which("kwriteconfig5")
if not peer:
    print("kwriteconfig5 is not installed")
    sys.exit(77)


def ours(key, value):
    return [program, "defaults", "write", "com.example.bench", key, value]


def theirs(key, value):
    return [peer, "--file", "benchrc", "--group", "General", "--key", key, value]


def seconds(command, env):
    start = time.perf_counter()
    subprocess.run(command, env=env, check=True, stdin=subprocess.DEVNULL)
    return time.perf_counter() - start


with tempfile.TemporaryDirectory() as home:
    env = os.environ | {"HOME": home, "XDG_CONFIG_HOME": f"{home}/config", "TYPESLATE_LOG": ""}
    os.mkdir(f"{home}/config")
    for number in range(10):
        for command in (ours, theirs):
            seconds(command(f"key{number}", "0"), env)
    times = {ours: [], theirs: []}
    for run in range(1, runs + 1):
        for command in (ours, theirs) if run % 2 else (theirs, ours):
            times[command].append(seconds(command("key5", str(run)), env))
    mine, others = (statistics.median(times[command]) * 1e3 for command in (ours, theirs))
    print(f"typeslatectl defaults write  {mine:6.2f} ms")
    print(f"kwriteconfig5                {others:6.2f} ms")
    print(f"ratio                        {mine / others:6.2f}   (median of {runs} alternating runs each)")
