#!/usr/bin/env python3
"""What the kernel can do to a synchronize: store_system_test.py kill|errors|full-disk DRIVER.

kill       the driver is killed at every system call of its synchronize
errors     every such call on files fails once, with each of several errors
full-disk  the disk has 0, 1 and 2 free pages

Exit status 77 when this machine does not permit the test.
"""
import collections
import concurrent.futures
import ctypes
import fcntl
import os
import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile

DOMAIN = "com.example.store"
OLD, NEW, DAMAGED = {"kept": "k" * 5000}, "n" * 9000, b"bplist00 cut"
FILE_CALLS = set("""openat read write fsync newfstatat fstat stat lstat readlink readlinkat flock rename renameat renameat2
                 unlinkat fchmod fchown mkdir linkat""".split())
mode, driver = sys.argv[1], sys.argv[2]


def skip(reason):
    print("SKIPPED:", reason)
    sys.exit(77)


class Stage:
    """A preferences folder in one of the states in which a synchronize may find it."""

    KINDS = "first", "existing", "damaged"

    def __init__(self, kind, folder):
        self.kind, self.folder = kind, pathlib.Path(folder) / "preferences"
        self.path = self.folder / f"{DOMAIN}.plist"
        if kind != "first":
            self.folder.mkdir()
            self.path.write_bytes(plistlib.dumps(OLD, fmt=plistlib.FMT_BINARY) if kind == "existing" else DAMAGED)

    def command(self, key):
        return [driver, str(self.folder), DOMAIN, key, NEW]

    def run(self, key, *wrapper):
        return subprocess.run([*wrapper, *self.command(key)], stdin=subprocess.DEVNULL, capture_output=True, text=True)

    def state(self):
        """"old" or "new"; anything else fails the test."""
        if self.kind == "damaged":
            kept = [p for p in (self.path, *self.folder.glob("*.damaged-*")) if p.exists() and p.read_bytes() == DAMAGED]
            assert len(kept) == 1, "the damaged file is lost"
            if kept == [self.path] or not self.path.exists():
                return "old"
        elif self.kind == "first" and not self.path.exists():
            return "old"
        contents = plistlib.loads(self.path.read_bytes())
        old = OLD if self.kind == "existing" else {}
        assert contents in (old, {**old, "victim": NEW}), f"neither old nor new: {contents}"
        return "old" if contents == old else "new"

    def check_next_writer(self):
        for lock in self.folder.glob(".*.lock"):
            with lock.open("r+") as file:
                fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)  # throws when someone would have to wait
        victim = self.state() == "new"
        result = self.run("next")
        assert result.returncode == 0, result.stderr
        contents = plistlib.loads(self.path.read_bytes())
        assert contents.get("next") == NEW and ("victim" in contents) == victim, contents.keys()
        assert ("kept" in contents) == (self.kind == "existing")
        assert not list(self.folder.glob(".*.tmp")), "a temporary file stayed behind"


def calls_of_synchronize(kind):
    """Each system call between the driver's two marks, as (name, how many of that name came before it, plus one)."""
    with tempfile.TemporaryDirectory() as folder:
        log = pathlib.Path(folder) / "log"
        if Stage(kind, folder).run("victim", "strace", "-o", log).returncode != 0:
            skip("strace is not permitted to trace here")
        names = [match[1] for match in map(re.compile(r"(\w+)\(").match, log.read_text().splitlines()) if match]
    first, last = [i for i, name in enumerate(names) if name == "getppid"]
    seen, calls = collections.Counter(names[:first]), []
    for name in names[first + 1:last]:
        seen[name] += 1
        calls.append((name, seen[name]))
    order = " ".join(name for name, _ in calls)
    assert re.search(r"flock .*\bwrite .*\bfsync .*\brename\w* .*\bfsync", order), f"flushes are missing: {order}"
    return calls


def injected(faults, check):
    """Runs the driver once for every call of a synchronize, in every state, and every fault that fits the call."""
    def run(kind, inject, renamed):
        with tempfile.TemporaryDirectory() as folder:
            stage = Stage(kind, folder)
            try:
                check(stage, stage.run("victim", "strace", "-o", "/dev/null", "-e", inject), renamed)
                stage.check_next_writer()
            except Exception as error:
                raise AssertionError(f"{kind}, {inject}: {type(error).__name__} {error}") from error

    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        runs = []
        for kind in Stage.KINDS:
            calls = calls_of_synchronize(kind)
            for position, (name, number) in enumerate(calls):
                renamed = any(call.startswith("rename") for call, _ in calls[:position])
                runs += [pool.submit(run, kind, f"inject={name}:{fault}:when={number}", renamed)
                         for fault in faults(name)]
        for done in runs:
            done.result()
    print(f"{len(runs)} runs")


def check_killed(stage, result, _):
    assert result.returncode == -9 or result.returncode == 137, f"survived with {result.returncode}"
    stage.state()


def check_refused_or_stored(stage, result, renamed):
    assert result.returncode in (0, 1), result
    state = stage.state()
    assert state == "new" if result.returncode == 0 else state == "old" or renamed, state
    assert result.returncode == 0 or re.search(f"{DOMAIN}: cannot .*: .*: ", result.stderr), result.stderr


def full_disk():
    libc, folder = ctypes.CDLL(None, use_errno=True), tempfile.mkdtemp()
    try:
        private = libc.unshare(0x20000) == 0 and libc.mount(None, b"/", None, 0x44000, None) == 0
        if not private or libc.mount(b"tmpfs", folder.encode(), b"tmpfs", 0, b"size=512k") != 0:
            skip("mounting a file system is not permitted here")
        for kind in Stage.KINDS:
            for pages in 0, 1, 2:
                with tempfile.TemporaryDirectory(dir=folder) as place:
                    write_on_full_disk(Stage(kind, place), pages, pathlib.Path(place) / "filler")
        print("refused and kept with 0, 1 and 2 free pages")
        libc.umount2(folder.encode(), 2)
    finally:
        os.rmdir(folder)


def write_on_full_disk(stage, pages, filler):
    with filler.open("wb", buffering=0) as file:
        try:
            while True:
                file.write(bytes(4096))
        except OSError:
            file.truncate(file.tell() - pages * 4096)
    process = subprocess.Popen(stage.command("victim"), stdin=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    while "cannot synchronize" not in (line := process.stderr.readline()):
        assert line, "it was not refused"
    assert "No space left on device" in line and stage.state() == "old", line
    assert not list(stage.folder.glob(".*.tmp"))
    filler.unlink()
    process.communicate("again\n")
    assert process.returncode == 0 and stage.state() == "new"
    stage.check_next_writer()


if mode == "kill":
    injected(lambda name: ["signal=KILL"], check_killed)
elif mode == "errors":
    errors = [f"error={error}" for error in ("ENOSPC", "EIO", "EACCES", "EMFILE")]
    injected(lambda name: errors if name in FILE_CALLS else [], check_refused_or_stored)
else:
    full_disk()
