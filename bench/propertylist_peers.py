#!/usr/bin/env python3
"""Times our binary property-list codec, the packaged libplist and Python's plistlib on the same files in one go.

usage: propertylist_peers.py [BUILD FOLDER]

The files are domains of font records, 21 strings each. Every figure is the shortest of several runs; the three programs
take turns, and processor time is what counts, so that a busy machine is no worse for one than for another.
"""
import json
import os
import plistlib
import subprocess
import sys
import tempfile
import time

ROUNDS = 3


def font_domain(count):
    def record(font):
        return {"RecordKey%d" % i: "Value %d of font %d" % (i, font) for i in range(21)}

    return {"AllNames": {"FontName-%d" % i: record(i) for i in range(count)}, "Version": 1}


def run_ours(build, path, *options):
    command = [os.path.join(build, "bin", "bench_propertylist"), "--benchmark_format=json", *options]
    output = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
                            env=dict(os.environ, TYPESLATE_BENCH_FILE=path)).stdout
    return [run for run in json.loads(output)["benchmarks"] if run["run_type"] == "iteration"]


def time_cold(build, path):
    """Milliseconds and page faults of a process's first decoding."""
    runs = [run_ours(build, path, "--benchmark_filter=^coldDecode")[0] for _ in range(2 * ROUNDS)]
    best = min(runs, key=lambda run: run["cpu_time"])
    return best["cpu_time"], best["faults"]


def time_ours(build, path):
    runs = run_ours(build, path, "--benchmark_filter=^file", "--benchmark_repetitions=3", "--benchmark_min_time=0.2")
    return tuple(min(run["cpu_time"] for run in runs if run["name"].startswith(name))
                 for name in ("fileDecode", "fileEncode"))


def time_libplist(build, path):
    program = os.path.join(build, "bin", "bench_propertylist_peer")
    if not os.path.exists(program):
        return None
    output = subprocess.run([program, path, "1"], stdout=subprocess.PIPE, check=True).stdout
    return tuple(map(float, output.split()))


def time_plistlib(_, path):
    with open(path, "rb") as file:
        data = file.read()
    start = time.process_time()
    value = plistlib.loads(data)
    decoded = time.process_time()
    plistlib.dumps(value, fmt=plistlib.FMT_BINARY, sort_keys=False)
    return (decoded - start) * 1e3, (time.process_time() - decoded) * 1e3


PROGRAMS = {"ours": time_ours, "libplist": time_libplist, "plistlib": time_plistlib}


def compare(build, count, skipped=()):
    best = {}
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "fonts.plist")
        with open(path, "wb") as file:
            plistlib.dump(font_domain(count), file, fmt=plistlib.FMT_BINARY, sort_keys=False)
        for _ in range(ROUNDS):
            for name, measure in PROGRAMS.items():
                figures = None if name in skipped else measure(build, path)
                if figures:
                    best[name] = tuple(map(min, figures, best.get(name, figures)))
        cold = time_cold(build, path)
    print("%d records" % count)
    for name, figures in best.items():
        ratios = [figure / ours for figure, ours in zip(figures, best["ours"])]
        print("  %-9s decode %9.2f ms (%5.1f x ours)   encode %9.2f ms (%5.1f x ours)"
              % (name, figures[0], ratios[0], figures[1], ratios[1]), flush=True)
    print("  ours, the first time in a process: decode %.2f ms, %d page faults" % cold)
    return cold[0], *best["ours"]


def main():
    build = sys.argv[1] if len(sys.argv) > 1 else "build/release"
    small = compare(build, 10_000)
    # libplist takes time with the square of the size to encode: minutes for this one.
    large = compare(build, 100_000, skipped=("libplist",))
    growth = tuple(b / a for a, b in zip(small, large))
    print("ours from 10,000 to 100,000 records: first decode %.1f times, decode %.1f times, encode %.1f times" % growth)


if __name__ == "__main__":
    main()
