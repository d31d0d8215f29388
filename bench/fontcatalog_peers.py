#!/usr/bin/env python3
"""Sets the font catalogue beside a plain Python reading of the same rules, on the same files, in one run.

    fontcatalog_peers.py BENCH_PROGRAM [--records N] [--rounds R] [--only parse|rebuild]

Prints the times and their ratios; ends with status 1 when a target is missed. The Python reading is what a script's
author would write: regular string methods, dictionaries, plistlib.
"""
import argparse
import json
import os
import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile
import time

from make_font_lists import make

LINE_ENDS = re.compile(r"[\r\n]+")


def text_of(path):
    data = pathlib.Path(path).read_bytes()
    try:
        return data.decode("utf-8-sig")
    except UnicodeDecodeError:
        return data.decode("mac_roman")


def log(line):
    print(line, file=sys.stderr)


def read_record(text, path, find):
    record = {}
    for line in LINE_ENDS.split(text):
        key, colon, value = line.strip().partition(":")
        if value == "ITC New Baskerville":
            log("What")
        if value:
            record[key] = value
    if "FullName" in record and "FamilyName" in record:
        record["RealFullName"] = record["FullName"]
        record["FullName"] = record["FamilyName"]
    if "OutlineFileName" in record:
        record["FontListFilePath"] = path
        found = find(record["OutlineFileName"].replace("\\", "/"))
        if found:
            record["FontFilePath"] = found
    return record


def read_list(path, names, find):
    text, start = text_of(path), 0
    while (start := text.find("%BeginFont", start)) >= 0:
        end = text.find("%EndFont", start)
        end = len(text) if end < 0 else end
        record = read_record(text[start:end], path, find)
        if "FontName" in record and "FullName" in record:
            name = record["FontName"]
            if name in names and names[name].get("FullName") != record["FullName"]:
                old = names[name]
                log(f"Multiple entries for font {name}. Old one is {old.get('FullName')}. "
                    f"New one is {record['FullName']}")
                log(f"{old} vs {record}")
            names[name] = record
        start = end


def decoded(text, unicode_form):
    span = 4 if unicode_form else 2
    return re.sub(r"\\([0-9A-Fa-f]{%d})" % span, lambda code: chr(int(code[1], 16)) if unicode_form
                  else bytes.fromhex(code[1]).decode("mac_roman"), text)


def read_database(path, names):
    name, section = "", {}
    for line in LINE_ENDS.split(text_of(path)):
        line = line.strip()
        if line.startswith("["):
            if name and section:
                names[name] = section
            name, section = line.replace("]", "", 1)[1:], {}
        elif not name:
            continue
        elif line.startswith("f=1,"):
            section["FullName"] = decoded(line[4:], False)
        elif line.startswith("f=") and "FullName" not in section:
            section["FullName"] = decoded(line[2:], True)
        elif line.startswith("s=,"):
            section["StyleName"] = decoded(line[3:], True)
        elif line.startswith("s=") and "StyleName" not in section:
            section["StyleName"] = decoded(line[2:], True)


def find_in(fonts):
    def find(relative):
        path = fonts + "/" + relative
        return path if os.path.exists(path) else None
    return find


def list_files(folder):
    found = []
    for place, folders, files in os.walk(folder):
        folders.sort()
        found += [os.path.join(place, name) for name in sorted(files)
                  if "adobefnt" in name.lower() and ".lst" in name.lower() and not name.startswith(".")]
    return found


def rebuild(root, target):
    adobe = root + "/usr/local/share/Adobe"
    names = {}
    read_database(adobe + "/TypeSpt/FntNames.db", names)
    lists = list_files(adobe + "/TypeSpt")
    for path in lists:
        read_list(path, names, find_in(adobe + "/Fonts"))
    with open(target + ".new", "wb") as file:
        plistlib.dump({"AllNames": names, "Version": 2.5, "AdobeFontNamesFiles": [{"Path": p} for p in lists]}, file,
                      fmt=plistlib.FMT_BINARY)
        file.flush()
        os.fsync(file.fileno())
    os.rename(target + ".new", target)
    return names


def seconds(work, rounds):
    best = float("inf")
    for _ in range(rounds):
        start = time.perf_counter()
        work()
        best = min(best, time.perf_counter() - start)
    return best


def run(program, *arguments, **environment):
    done = subprocess.run([program, *arguments], env={**os.environ, **environment}, capture_output=True, text=True)
    if done.returncode:
        sys.exit(f"{program} {' '.join(arguments)} failed: {done.stderr}")
    return json.loads(done.stdout)


def flush_time(folder, size, rounds):
    def flush():
        with open(folder + "/flushed", "wb") as file:
            file.write(bytes(size))
            file.flush()
            os.fsync(file.fileno())
    return seconds(flush, rounds)


class Report:
    missed = False

    def line(self, text, ratio=None, target=None, at_most=True):
        kept = ratio is None or (ratio <= target if at_most else ratio >= target)
        self.missed |= not kept
        bound = "" if ratio is None else f"  {ratio:6.2f} (target: {'at most' if at_most else 'at least'} {target})"
        print(f"{text:64}{bound}{'' if kept else '  MISSED'}")


def compare_parsing(report, program, folder, records, rounds, encoding):
    root = f"{folder}/parse-{encoding}"
    make(root, records, lists=1, encoding=encoding, outlines=False)
    path = root + "/usr/local/share/Adobe/TypeSpt/Lists 0/AdobeFnt00.lst"
    ours, names = run(program, "parse", path), {}
    python = seconds(lambda: (names.clear(), read_list(path, names, lambda relative: None)), min(rounds, 3))
    if len(names) != ours["names"]:
        sys.exit(f"{len(names)} names in Python, {ours['names']} here")
    print(f"\nparsing {records} records, {ours['bytes'] / 1e6:.1f} MB of {encoding}, {ours['names']} names")
    report.line(f"  parse {ours['parse'] * 1e3:.1f} ms / read and scan {ours['scan'] * 1e3:.1f} ms",
                ours["parse"] / ours["scan"], 6)
    report.line(f"  Python {python * 1e3:.0f} ms / parse", python / ours["parse"], 20, at_most=False)


def compare_rebuild(report, program, folder, records, rounds, with_python=True):
    root = f"{folder}/rebuild-{records}"
    make(root, records)
    adobe = root + "/usr/local/share/Adobe/TypeSpt"
    text = sum(os.path.getsize(path) for path in [adobe + "/FntNames.db", *list_files(adobe)])
    environment = {"TYPESLATE_ROOT": root, "HOME": root + "/home", "XDG_DATA_HOME": root + "/home/data",
                   "XDG_CONFIG_HOME": root + "/home/config"}
    first = run(program, "rebuild", **environment)
    runs = []
    for turn in range(rounds):
        # An equal catalogue would not be written again.
        os.utime(list_files(adobe)[0], (turn, turn))
        runs.append(run(program, "rebuild", **environment))
    ours = {key: min(one[key] for one in runs) for key in first}
    stored = pathlib.Path(root, "home/config/preferences/com.tarnwick.typeslate.AdobeNames.plist")
    flush = flush_time(root, stored.stat().st_size, rounds)
    print(f"\nrebuild of {records} records, {text / 1e6:.1f} MB, {ours['names']} names, stored {stored.stat().st_size / 1e6:.1f} MB")
    report.line(f"  first {first['whole'] * 1e3:.1f} ms, later {ours['whole'] * 1e3:.1f} ms, of which building "
                f"{ours['build'] * 1e3:.1f} ms; a bare write and flush {flush * 1e3:.1f} ms")
    report.line(f"  peak {ours['peak'] / 1e6:.1f} MB / text (first run {first['peak'] / 1e6:.1f} MB)",
                max(ours["peak"], first["peak"]) / text, 4)
    if with_python:
        names = {}
        python = seconds(lambda: names.update(rebuild(root, root + "/python.plist")), min(rounds, 3))
        if plistlib.loads(stored.read_bytes())["AllNames"] != {k: v for k, v in names.items()}:
            sys.exit("the stored catalogue is not the one that the Python reading gives")
        report.line(f"  Python {python * 1e3:.0f} ms / rebuild", python / ours["whole"], 15, at_most=False)
    return ours["whole"] / records


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("--records", type=int, default=100000)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--only", choices=["parse", "rebuild"])
    arguments = parser.parse_args()
    report = Report()
    with tempfile.TemporaryDirectory(prefix="fontcatalog-") as temporary:
        for encoding in ["utf-8", "mac_roman"]:
            if arguments.only != "rebuild":
                compare_parsing(report, arguments.program, temporary, arguments.records, arguments.rounds, encoding)
        if arguments.only == "parse":
            sys.exit(report.missed)
        small = compare_rebuild(report, arguments.program, temporary, arguments.records // 10, arguments.rounds)
        large = compare_rebuild(report, arguments.program, temporary, arguments.records * 2, 1, with_python=False)
        print()
        report.line("  time for a record, twenty times as many / as many", large / small, 1.5)
    sys.exit(report.missed)
