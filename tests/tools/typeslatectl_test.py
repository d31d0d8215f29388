#!/usr/bin/env python3
"""Every subcommand of typeslatectl, as a shell would call it: typeslatectl_test.py PROGRAM."""
import json, os, pathlib, plistlib, re, shutil, signal, subprocess, sys, threading, unittest
from datetime import datetime

from ctl import DOMAIN, PROGRAM, Case

GLOBAL_SETTINGS = {"Enabled": True, "ShowFontInFace": True, "DupeHandling": 1, "ShowSets": True, "ShowIcons": True,
                   "HierarchicalMenu": True, "AllFontsGroup": True, "ScriptSort": False}
GLOBAL = {"Name": "Global", "Type": "Global", "Settings": GLOBAL_SETTINGS}


def cases(name):
    return (pathlib.Path(__file__).parent / name).read_text(encoding="utf-8").splitlines()


class CallTest(Case):
    def test_what_is_no_call(self):
        for line in cases("wrong-calls.txt"):
            call, _, problem = line.partition(" -> ")
            with self.subTest(call):
                said = self.refused(*call.split(), status=2).stderr.decode()
                self.assertEqual(said, f"typeslatectl: {problem} (--help tells more)\n")
        german = self.refused("entries", "set", "x", status=2, LC_ALL="C.UTF-8", LANGUAGE="de", LANG="de_DE.UTF-8")
        self.assertIn("INDEX: keine ganze Zahl", german.stderr.decode())

    def test_help_and_output_that_cannot_be_written(self):
        for call in ("--help", "--version", "entries set --help"):
            self.assertTrue(self.ok(*call.split()))
        for line in self.ok("--help", LANGUAGE="ja", LC_ALL="ja_JP.UTF-8", LANG="ja_JP.UTF-8").decode().splitlines():
            self.assertLessEqual(sum(2 if ord(c) > 0x2E80 else 1 for c in line), 79, line)
        self.ok("defaults", "write", "d", "k", "1")
        for call in ("--help", "--version", "defaults read d", "defaults export d -", "entries list"):
            with self.subTest(call), open("/dev/full", "wb") as full:
                self.assertEqual(subprocess.run([PROGRAM, *call.split()], stdout=full, stderr=subprocess.DEVNULL,
                                                env=self.env).returncode, 1)


class DefaultsTest(Case):
    def test_every_value_and_the_order_of_keys(self):
        deepest = 511  # with the domain and a value around and inside
        values = cases("json.txt") + ["[" * (deepest - 1) + "]" * (deepest - 1)]
        for number, text in enumerate(values):
            self.ok("defaults", "write", "d", f"key {99 - number}", text)
            read = self.ok("defaults", "read", "d", f"key {99 - number}").decode()
            self.assertEqual(re.sub(r"\n *", "", read).replace('": ', '":'), text)
        self.assertEqual(list(self.value("defaults", "read", "d")), [f"key {99 - i}" for i in range(len(values))])
        for text in [*cases("malformed-json.txt"), "", b'"\xff"', "[" * 100000, "[" * (deepest + 1) + "]" * (deepest + 1)]:
            with self.subTest(text[:40]):
                said = self.refused("defaults", "write", "d", "k", text).stderr.decode()
                self.assertIn("not JSON", said)

    def test_refusals_change_nothing(self):
        self.ok("defaults", "write", DOMAIN, "k", "1")
        before = self.stored.read_bytes()
        (self.home / "array").write_bytes(plistlib.dumps([1]))
        (self.stored.parent / "folder.plist").mkdir()
        for call in (["read", "none"], ["read", DOMAIN, "none"], ["read", DOMAIN, ""], ["delete", "none"],
                     ["delete", DOMAIN, ""], ["write", DOMAIN, "k", "null"], ["write", DOMAIN, "k", "{"],
                     ["write", DOMAIN, b"\xff", "1"], ["write", "a/b", "k", "1"], ["write", "folder", "k", "1"],
                     ["read", "folder"], ["export", "none", "-"], ["export", DOMAIN, f"{self.home}/no/file"],
                     ["import", DOMAIN, f"{self.home}/none"], ["import", DOMAIN, str(self.home)],
                     ["import", DOMAIN, f"{self.home}/array"], ["import", DOMAIN, "-"]):
            with self.subTest(call):
                said = self.refused("defaults", *call, data=b"no property list").stderr
                self.assertEqual(b"cannot be read" in said, "folder" in call)
                self.assertEqual(self.stored.read_bytes(), before)

    def test_files_and_streams(self):
        content = {"z": [1, 2.5], "a": {"b": b"\0", "d": datetime(2026, 1, 31)}}
        for form, mark in (("binary", b"bplist00"), ("xml", b"<?xml")):
            with self.subTest(form):
                self.ok("defaults", "write", "d", "old", "1")
                self.ok("defaults", "import", "d", "-", data=plistlib.dumps(content, sort_keys=False))
                written = self.ok("defaults", "export", "d", "-", "--format", form)
                self.assertTrue(written.startswith(mark))
                self.assertEqual(plistlib.loads(written), content)
                self.ok("defaults", "export", "d", f"{self.home}/file", "--format", form)
                self.ok("defaults", "import", f"copy.{form}", f"{self.home}/file")
                self.assertEqual(list(self.value("defaults", "read", f"copy.{form}")), ["z", "a"])


class EntriesTest(Case):
    def test_looking_writes_nothing(self):
        self.assertEqual(self.value("entries", "list", "--json"), [GLOBAL])
        self.assertEqual(self.value("entries", "get", "0", "DupeHandling"), 1)
        self.assertFalse((self.home / "config").exists())
        self.put([{"Type": "Path"}, {"Type": "Path", "Data": "/b"}])
        before = self.stored.read_bytes()
        self.assertEqual([entry.get("Data") for entry in self.value("entries", "list", "--json")], [None, None, "/b"])
        self.assertEqual(self.value("entries", "get", "1"), {"Type": "Path"})
        self.assertEqual(self.stored.read_bytes(), before)
        self.ok("entries", "set", "2", "FontSize", "7")
        self.assertEqual(self.entries(), [GLOBAL, {"Type": "Path"}, {"Type": "Path", "Data": "/b", "Settings": {"FontSize": 7}}])

    def test_refusals_leave_the_list_untouched(self):
        self.put([GLOBAL, "no entry", {"Type": 1, "Name": [], "Data": {}, "Settings": "none"}, GLOBAL])
        before = self.stored.read_bytes()
        for call in ("remove 0", "remove 3", "remove 4", "remove -1", "set 4 Enabled 1", "set -1 Enabled 1", "get 4", "get -1",
                     "set 1 Enabled 1", "set 0 Font 1", "set 0 enabled 1", "set 0 Enabled 2", "set 0 Enabled maybe",
                     "set 0 FontSize 256", "set 0 FontSize -1", "set 0 FontSize 1.5", "set 0 FontSize true",
                     "set 0 DupeHandling 3", "get 0 Font", "add-regex n e --kind 3", "add-regex n e --kind -1",
                     "add /nowhere"):
            with self.subTest(call):
                self.refused("entries", *call.split())
                self.assertEqual(self.stored.read_bytes(), before)
        for call in (["", "e"], ["n", ""], [b"\xff", "e"], ["n", b"\xff"]):
            self.refused("entries", "add-regex", *call)
        self.refused("entries", "remove", "1", TYPESLATE_PREFPANE=f"{self.home}/none")
        self.assertEqual(self.stored.read_bytes(), before)
        self.ok("entries", "list")
        self.ok("entries", "set", "2", "FontSize", "3")
        self.assertEqual(self.entries()[2]["Settings"], {"FontSize": 3})

    def test_a_store_that_cannot_be_used(self):
        self.refused("entries", "set", "0", "Enabled", "1", XDG_CONFIG_HOME="/proc/none")
        self.stored.mkdir(parents=True)
        for call in ("list", "get 0", "set 0 Enabled 1", "remove 1", "add /nowhere", "add-regex n e"):
            self.refused("entries", *call.split())



class SessionTest(Case):
    """What a shell shows: the documented examples and tests/tools/sessions.txt, each session in a home of its own."""

    def test_sessions(self):
        document = (pathlib.Path(__file__).parents[2] / "docs/command-line.md").read_text()
        examples = "".join(part.split("```")[0] for part in document.split("```console\n")[1:])
        own = "\n".join(cases("sessions.txt")).split("\n== ")[1:]
        self.assertGreater(min(len(own), examples.count("$ ")), 5)
        for title, _, shown in [("examples", "", examples), *(session.partition("\n") for session in own)]:
            with self.subTest(title):
                self.doCleanups()
                self.setUp()
                self.assertEqual(self.printed(shown), shown.rstrip("\n"))

    def printed(self, shown):
        del self.env["XDG_DATA_HOME"], self.env["TYPESLATE_LOG"]
        self.env["PATH"] = os.path.dirname(PROGRAM) + ":" + os.environ["PATH"]
        for name in ("Editor", "Alpha", "Beta", "\u202eGam\\nma"):
            entry = self.home / f".local/share/applications/org.example.{name.strip(chr(0x202e))[:6]}.desktop"
            entry.parent.mkdir(parents=True, exist_ok=True)
            entry.write_text(f"[Desktop Entry]\nType=Application\nName={name}\nExec=/bin/sh\n")
        text = ""
        for command in (line for line in shown.splitlines() if line.startswith("$ ")):
            text += command + "\n" + subprocess.run(command[2:], shell=True, env=self.env, cwd=self.home, text=True,
                                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout
        return text.replace(str(self.home), "~").rstrip("\n")


class WatchTest(Case):
    def setUp(self):
        super().setUp()
        module, runtime = (pathlib.Path(PROGRAM).parents[1] / n for n in ("typeslatectl-bus.so", "lib/libplinth.so"))
        if not shutil.which("dbus-daemon") or not module.exists() or not runtime.exists():
            self.skipTest("needs dbus-daemon, the bus module and the sample runtime")
        self.env["LD_LIBRARY_PATH"] = str(runtime.parent)  # a sanitizer hides where the program would look
        self.bus = self.start("dbus-daemon", "--session", "--nofork", "--nosyslog", "--print-address=1")
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.bus.stdout.readline().strip()

    def start(self, *command):
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=self.env)
        limit = threading.Timer(30, process.kill)  # who waits for its lines then reads their end
        limit.start()
        self.addCleanup(limit.cancel)
        self.addCleanup(process.communicate)
        self.addCleanup(process.terminate)
        return process

    def watch(self):
        watcher = self.start(PROGRAM, "watch")
        self.assertIn("watching", watcher.stderr.readline())
        return watcher

    def end_expecting_no_more(self, watcher):
        watcher.send_signal(signal.SIGTERM)
        self.assertEqual((watcher.communicate()[0], watcher.returncode), ("", 0))

    def test_both_announcements_of_two_writers(self):
        watcher, unread = self.watch(), self.watch()
        unread.stdout.close()
        writers = [self.start(PROGRAM, "entries", "add-regex", "name", "expression")]
        lines = [json.loads(watcher.stdout.readline())]
        self.assertEqual(self.entries()[1]["Data"], "expression")  # stored before it is announced
        writers.append(self.start(PROGRAM, "entries", "set", "0", "FontSize", "9"))
        lines += [json.loads(watcher.stdout.readline()) for _ in range(3)]
        times = {"notification": [], "broadcast": []}
        for line in lines:
            times[line["kind"]].append(datetime.strptime(line.pop("time"), "%Y-%m-%dT%H:%M:%S.%fZ"))
        notification = {"kind": "notification", "name": DOMAIN, "object": "PrefsChanged", "userInfo": {},
                        "deliverImmediately": True}
        senders = [(line.pop("sender")[0], line.pop("senderProcess")) for line in lines if "sender" in line]
        self.assertEqual(senders, [(":", writer.pid) for writer in writers])
        broadcast = {"kind": "broadcast", "module": DOMAIN, "message": "PrefChanged"}
        self.assertEqual((lines[0], lines[-1]), (notification, broadcast))
        self.assertEqual((lines.count(notification), lines.count(broadcast)), (2, 2))
        for told, sent in zip(times["notification"], times["broadcast"]):
            self.assertGreater((sent - told).total_seconds(), 1.9)
        self.assertEqual([writer.wait() for writer in writers], [0, 0])
        self.end_expecting_no_more(watcher)
        self.assertEqual((unread.wait(), "standard output" in unread.stderr.read()), (1, True))
        unread.stdout = None

    def test_a_writer_that_is_asked_to_end_still_announces(self):
        watcher = self.watch()
        writer = self.start(PROGRAM, "entries", "set", "0", "FontSize", "9")
        first = watcher.stdout.readline()
        writer.send_signal(signal.SIGINT)
        second = watcher.stdout.readline()
        self.assertEqual((writer.wait(), "PrefsChanged" in first, "PrefChanged" in second), (0, True, True))
        self.refused("entries", "set", "9", "FontSize", "9")
        self.end_expecting_no_more(watcher)

    def test_there_must_be_a_bus(self):
        watcher = self.watch()
        self.bus.terminate()
        self.assertEqual((watcher.wait(), watcher.stderr.read()), (1, "typeslatectl: the session bus has gone\n"))
        for address in ("", f"unix:path={self.home}/none"):
            self.refused("watch", DBUS_SESSION_BUS_ADDRESS=address)


class LoginItemsTest(Case):
    def items(self):
        return [(item["Path"], item["Hide"]) for item in self.value("login-items", "list", "--json")]

    def test_an_added_item_starts_with_the_session(self):
        program, fifo = self.home / "a \"b\" $HOME %f `id` \\c'd = 100%", self.home / "started"
        program.write_text(f"#!/bin/sh\nprintf %s \"$0\" >'{fifo}'\n")
        program.chmod(0o755)
        os.mkfifo(fifo)
        self.ok("login-items", "add", str(program), "--hide")
        self.assertEqual(self.items(), [(str(program), True)])
        entries = list((self.home / "config/autostart").iterdir())
        self.assertEqual(len(entries), 1)
        if shutil.which("gio"):
            subprocess.run(["gio", "launch", entries[0]], check=True, env=self.env)
            self.assertEqual(fifo.read_text(), str(program))
        self.ok("login-items", "remove", "--path", str(program))
        self.assertFalse(entries[0].exists())
        self.refused("login-items", "remove", "--path", str(program))

    def test_the_helper_starts_once_and_stops(self):
        apart = ["unshare", "--user", "--map-root-user", "--pid", "--fork", "--kill-child", "--mount-proc"]
        if subprocess.run([*apart, "true"], capture_output=True).returncode:
            apart = []
            if self.run_ctl("helper", "status").returncode == 0:
                self.skipTest("a helper is running that is not this test's")
        script = '"$0" helper status; echo $?; "$0" helper start && "$0" helper start && "$0" helper status --json; ' \
                 'ls -l /proc/*/exe 2>&1 | grep -c "/TS$"; "$0" helper stop && "$0" helper stop; "$0" helper status'
        done = subprocess.run([*apart, "sh", "-c", script, PROGRAM], capture_output=True, text=True,
                              env=self.env | {"TYPESLATE_LOG": ""}, cwd=self.home)
        started, count, stopped = done.stdout.partition("}")[0], *done.stdout.partition("}")[2].split("\n")[1:3]
        self.assertRegex(started, r'^not running\n1\n(running, process \d+\n)\1\{\s+"running": true,')
        self.assertEqual((count, stopped, done.stderr), ("1", "not running", ""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
