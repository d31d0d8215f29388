#!/usr/bin/env python3
"""What a start costs where somebody has put things among the font lists that nobody would.

    hostile_font_lists.py BENCH_PROGRAM [--only PART_OF_A_NAME]

Makes one tree after the other, lets the program check and rebuild the catalogue there, and prints time and memory beside
the bounds: a second, and four times the text that is kept or read at one time. Ends with status 1 when one is missed.
Kept are the stored catalogue's names and values and the paths of the lists; read at one time is the largest list that is
read at all. The time is the best of three runs, so that the kernel knows the tree; memory is what a run needs more than
one on a machine without fonts.
"""
import argparse
import json
import os
import pathlib
import plistlib
import subprocess
import sys
import tempfile

LARGEST = 64 << 20  # bytes of a list; larger ones are passed over
SECONDS, MULTIPLE = 1.0, 4
HEAD, END = "%!Adobe-FontList 1.07\n", "%EndFont\n"


def record(name, rest=""):
    return f"%BeginFont\nFontName:{name}\nFullName:{name} Regular\nFamilyName:{name}\n{rest}{END}"


def write(path, text="", size=None):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    if size:
        os.truncate(path, size)


def sparse(count, size):
    return lambda top: [write(top / f"AdobeFnt{i}.lst", HEAD + record(f"Font{i}"), size) for i in range(count)]


def spread(folders, files, depth=0, lists=1000):
    """So many files evenly over so many folders, every so many a list; the folders lie so deep."""
    def make(top):
        top = pathlib.Path(top, *["d"] * depth)
        subprocess.run(["mkdir", "-p", top], check=True)
        for i in range(files):
            is_list = i % (files // lists) == 0
            path = top / f"f{i % folders}" / (f"AdobeFnt{i}.lst" if is_list else f"{i}.txt")
            if i < folders:
                path.parent.mkdir()
            path.write_text(HEAD + record(f"Font{i}") if is_list else "")
    return make


def link_to_root(top):
    write(top / "AdobeFnt.lst", HEAD + record("Font"))
    (top / "a").symlink_to("/")


def link_loops(top):
    for i in range(100):
        write(top / f"f{i}/AdobeFnt.lst", HEAD + record(f"Font{i}"))
        for j in range(100):
            (top / f"f{i}/to{j}").symlink_to(f"../f{j}")


def devices(top):
    for i in range(1000):
        os.mkfifo(top / f"AdobeFnt{i}.lst")
        (top / f"AdobeFntZero{i}.lst").symlink_to("/dev/zero")
        (top / f"AdobeFntSelf{i}.lst").symlink_to(f"AdobeFntSelf{i}.lst")
        write(top / os.fsdecode(b"AdobeFnt\xff%d.lst" % i), record("Font"))


def same_again(top):
    for i in range(4):
        with open(top / f"AdobeFnt{i}.lst", "w") as file:
            file.write(HEAD + record("Font") * (50_000_000 // len(record("Font"))))


def missing_folders(top):
    write(top / "AdobeFnt.lst", HEAD + "".join(record(f"Font{i}", f"OutlineFileName:{i}\\x\n") for i in range(200_000)))
    (top.parent / "Fonts").mkdir()


def vast_font_folder(top):
    write(top / "AdobeFnt.lst", HEAD + "".join(record(f"Font{i}", f"OutlineFileName:{i}\n") for i in range(1000)))
    for i in range(1_000_000):
        path = top.parent / "Fonts" / str(i)
        if i == 0:
            path.parent.mkdir()
        os.close(os.open(path, os.O_CREAT))


TREES = {
    "no font lists": lambda top: None,
    "a link to / beside a list": link_to_root,
    "100 folders, each with links to all": link_loops,
    "a list of 1 GB": sparse(1, 1 << 30),
    "four lists of 256 MB, a record each": sparse(4, 256 << 20),
    "ten lists of just under 64 MB, a record each": sparse(10, LARGEST - 1),
    "four lists of 50 MB, one record over and over": same_again,
    "20,000 lists of a record": spread(1, 20_000, lists=20_000),
    "100,000 files in one folder, 1,000 lists": spread(1, 100_000),
    "100,000 files in 1,000 folders, 1,000 lists": spread(1000, 100_000),
    "100,000 files in 100,000 folders, 1,000 lists": spread(100_000, 100_000),
    "100,000 files, 1,000 folders deep, 1,000 lists": spread(100, 100_000, depth=1000),
    "a million files in one folder": spread(1, 1_000_000),
    "1,000 FIFOs, devices, loops, names without a text": devices,
    "200,000 outline files in as many missing folders": missing_folders,
    "a million outline files in one folder": vast_font_folder,
}


def kept_text(root, top):
    stored = root / "home/config/preferences/com.tarnwick.typeslate.AdobeNames.plist"
    values = plistlib.loads(stored.read_bytes())
    names = sum(len(name) + sum(map(len, values["AllNames"][name].values())) for name in values["AllNames"])
    paths = [each["Path"] for each in values["AdobeFontNamesFiles"]]
    sizes = [size for size in map(os.path.getsize, paths) if size <= LARGEST]
    return names + sum(map(len, paths)), max(sizes, default=0), len(paths), len(values["AllNames"])


def run(program, root):
    environment = {**os.environ, "TYPESLATE_ROOT": str(root), "HOME": f"{root}/home",
                   "XDG_DATA_HOME": f"{root}/home/data", "XDG_CONFIG_HOME": f"{root}/home/config"}
    done = subprocess.run([program, "rebuild"], env=environment, capture_output=True, text=True)
    if done.returncode:
        sys.exit(f"{program} failed: {done.stderr}")
    return json.loads(done.stdout)


def measure(program, root, make):
    top = root / "usr/local/share/Adobe/TypeSpt"
    top.mkdir(parents=True)
    write(top / "FntNames.db", "version=1\n")
    make(top)
    runs = [run(program, root) for _ in range(3)]
    return min(one["whole"] for one in runs), max(one["peak"] for one in runs), kept_text(root, top)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("--only", default="")
    arguments = parser.parse_args()
    missed, idle = False, None
    print(f"{'':50} {'lists':>7} {'names':>7} {'s':>7} {'MB':>7} {'kept+read':>9} {'ratio':>6}")
    for name, make in TREES.items():
        if idle and arguments.only not in name:
            continue
        root = pathlib.Path(tempfile.mkdtemp(prefix="fontcatalog-"))
        try:
            seconds, peak, (kept, read, lists, names) = measure(arguments.program, root, make)
        finally:
            subprocess.run(["rm", "-rf", root])
        idle = idle or peak
        text, memory = max(kept + read, 1), peak - idle
        # Half a megabyte is what two runs on the same machine may differ by.
        bad = seconds > SECONDS or memory > MULTIPLE * text + 500_000
        missed |= bad
        print(f"{name:50} {lists:7} {names:7} {seconds:7.3f} {memory / 1e6:7.1f} {text / 1e6:9.2f} "
              f"{memory / text:6.1f}{'  MISSED' if bad else ''}", flush=True)
    sys.exit(missed)
