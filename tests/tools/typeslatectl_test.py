#!/usr/bin/env python3
"""Every subcommand of typeslatectl, as a shell would call it: typeslatectl_test.py PROGRAM."""
import json
import os
import pathlib
import plistlib
import shutil
import signal
import subprocess
import sys
import threading
import unittest
from datetime import datetime

from ctl import DOMAIN, PROGRAM, Case

GLOBAL_SETTINGS = {"Enabled": True, "ShowFontInFace": True, "DupeHandling": 1, "ShowSets": True, "ShowIcons": True,
                   "HierarchicalMenu": True, "AllFontsGroup": True, "ScriptSort": False}
GLOBAL = {"Name": "Global", "Type": "Global", "Settings": GLOBAL_SETTINGS}


class CallTest(Case):
    def test_what_is_no_call(self):
        for call in ("", "nonsense", "defaults", "defaults read", "defaults write d k", "defaults write d k 1 2",
                     "defaults export d f --format json", "entries", "entries add", "entries add-regex n", "entries set 0",
                     "entries set x Enabled 1", "entries remove", "entries add-regex n e --kind x", "watch it", "--nonsense"):
            with self.subTest(call):
                self.refused(*call.split(), status=2)

    def test_help_and_output_that_cannot_be_written(self):
        for call in ("--help", "--version", "entries set --help"):
            self.assertTrue(self.ok(*call.split()))
        self.ok("defaults", "write", "d", "k", "1")
        for call in ("--help", "--version", "defaults read d", "defaults export d -", "entries list"):
            with self.subTest(call), open("/dev/full", "wb") as full:
                self.assertEqual(subprocess.run([PROGRAM, *call.split()], stdout=full, stderr=subprocess.DEVNULL,
                                                env=self.env).returncode, 1)


class DefaultsTest(Case):
    VALUES = [-5, 2**64 - 1, 1.5, -1.5e300, True, False, "", "-x", "%s\n\u20ac\u202e", [], {}, [[1], {"a": [{}]}],
              {"$date": "2026-01-31T12:00:00.000001Z"}, {"$data": "AP8="}, {"$real": "nan"}, {"$real": "-inf"},
              {"$dictionary": {"$date": "text"}}, {"z": 1, "": 2, "a": {"y": 1, "b": 2}}]

    def test_every_value_and_the_order_of_keys(self):
        for number, value in enumerate(self.VALUES):
            self.ok("defaults", "write", "d", f"key {9 - number}", json.dumps(value))
            self.assertEqual(json.dumps(self.value("defaults", "read", "d", f"key {9 - number}")), json.dumps(value))
        self.assertEqual(list(self.value("defaults", "read", "d").items()),
                         [(f"key {9 - i}", value) for i, value in enumerate(self.VALUES)])
        deep = "[" * 300 + "]" * 300
        self.ok("defaults", "write", "d", "deep", deep)
        self.assertEqual(b"".join(self.ok("defaults", "read", "d", "deep").split()).decode(), deep)

    def test_deleting(self):
        for domain, key in (("a", "k"), ("a", ""), ("b", "k")):
            self.ok("defaults", "write", domain, key, "1")
        self.assertEqual(self.ok("defaults", "domains"), b"a\nb\n")
        self.ok("defaults", "delete", "a", "")
        self.assertEqual(self.value("defaults", "read", "a"), {"k": 1})
        self.ok("defaults", "delete", "a")
        self.assertEqual(self.ok("defaults", "domains"), b"b\n")

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
                self.refused("defaults", *call, data=b"no property list")
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
    def setUp(self):
        super().setUp()
        self.apps = self.home / "data/applications"
        self.apps.mkdir(parents=True)
        for name in ("Alpha", "Beta", "\u202eGam\\nma"):
            text = f"[Desktop Entry]\nType=Application\nName={name}\nExec=/bin/sh\n"
            (self.apps / f"org.{name.strip(chr(0x202e))[:3].lower()}.desktop").write_text(text)
        self.alpha, self.beta, self.gamma = (str(self.apps / f"org.{n}.desktop") for n in ("alp", "bet", "gam"))

    def application(self, name, identifier, path):
        return {"Name": name, "Path": path, "Identifier": identifier, "Type": "Identifier", "Data": identifier,
                "Settings": GLOBAL_SETTINGS}

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

    def test_adding_applications(self):
        os.chdir(self.apps)
        said = self.ok("entries", "add", "org.alp.desktop", f"{self.apps}/../applications/org.bet.desktop", self.alpha)
        self.assertEqual(said.decode(), f"{self.alpha} is in the list already\n")
        added = [GLOBAL, self.application("Alpha", "org.alp", self.alpha), self.application("Beta", "org.bet", self.beta)]
        self.assertEqual(self.entries(), added)
        text = self.apps / "notes\n.txt"
        text.write_text("no application")
        refused = self.refused("entries", "add", str(text), self.gamma, "/nowhere", self.alpha, lines=2)
        self.assertIn(b"org.alp.desktop is in the list already", refused.stdout)
        self.assertEqual([entry["Name"] for entry in self.entries()], ["Global", "Alpha", "Beta", "Gam ma"])

    def test_the_list_for_people(self):
        expression = "(?i)^wine|\u202e.*"
        self.ok("entries", "add", self.gamma)
        self.ok("entries", "add-regex", "二\nlines e\u0301 \x1b[31m", expression, "--kind", "2")
        self.ok("entries", "set", "1", "Enabled", "off")
        self.assertEqual(self.ok("entries", "list").decode().splitlines(),
                         ["INDEX  STATE  KIND           NAME             DATA",
                          "0      on     Global         Global",
                          "1      off    Identifier     Gam ma           org.gam",
                          "2      on     RegEx on path  二 lines e\u0301 [31m  (?i)^wine|.*"])
        self.assertEqual(self.entries()[2], {"Name": "二\nlines e\u0301 \x1b[31m", "Type": "RegEx", "Settings": GLOBAL_SETTINGS,
                                             "Data": expression, "RegEx Type": 2})

    def test_changing_and_removing(self):
        self.ok("entries", "set", "0", "FontSize", "12")
        self.ok("entries", "add-regex", "Expression", "--", "-e")
        expected = dict(GLOBAL_SETTINGS, FontSize=12)
        for key, text, value in (("Enabled", "NO", False), ("Enabled", "1", True), ("CheckMenuItems", "yes", True),
                                 ("ModifyFontPanel", "false", False), ("IncludeFEXSets", "off", False),
                                 ("DupeHandling", "2", 2), ("FontSize", "255", 255), ("FontSize", "0", 0)):
            self.ok("entries", "set", "1", key, text)
            expected[key] = value
            self.assertEqual(self.value("entries", "get", "1", key), value)
        self.assertEqual(repr(self.entries()[1]["Settings"]), repr(expected))
        self.assertEqual(self.value("entries", "get", "1", "Data"), "-e")
        self.assertEqual(self.value("entries", "get", "1", "GenerateInactivePreview"), True)
        self.assertEqual(self.entries()[0], dict(GLOBAL, Settings=dict(GLOBAL_SETTINGS, FontSize=12)))
        self.ok("entries", "add", self.alpha)
        self.ok("entries", "remove", "1")
        self.assertEqual([entry["Name"] for entry in self.entries()], ["Global", "Alpha"])

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
        for call in ("list", "get 0", "set 0 Enabled 1", "remove 1", f"add {self.alpha}", "add-regex n e"):
            self.refused("entries", *call.split())

    def test_without_a_bus_the_log_says_so_once(self):
        result = self.run_ctl("entries", "add", self.alpha)
        self.assertEqual(result.stderr.count(b"changes are not announced"), 1)


class DocumentTest(Case):
    def test_the_examples_print_what_they_show(self):
        apps = self.home / ".local/share/applications"
        apps.mkdir(parents=True)
        (apps / "org.example.Editor.desktop").write_text("[Desktop Entry]\nType=Application\nName=Editor\nExec=/bin/sh\n")
        del self.env["XDG_DATA_HOME"], self.env["TYPESLATE_LOG"]
        self.env["PATH"] = os.path.dirname(PROGRAM) + ":" + os.environ["PATH"]
        text = (pathlib.Path(__file__).parents[2] / "docs/command-line.md").read_text()
        shown = "".join(part.split("```")[0] for part in text.split("```console\n")[1:])
        printed = ""
        for command in (line for line in shown.splitlines() if line.startswith("$ ")):
            printed += command + "\n" + subprocess.run(command[2:], shell=True, env=self.env, cwd=self.home, text=True,
                                                       stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout
        self.assertGreater(printed.count("$ "), 5)
        self.assertEqual(printed, shown)


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
        notification = {"kind": "notification", "name": DOMAIN, "object": "PrefsChanged", "userInfo": {}}
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

    def test_items_are_known_by_their_application(self):
        old, new = (self.bundle(self.home / name, CFBundleIdentifier="org.a") for name in ("Old.app", "New.app"))
        for _ in range(2):
            self.assertIn(b"nothing that can be started", self.ok("login-items", "add", old + "/", "--hide"))
        self.refused("login-items", "check", "org.b", new)
        self.ok("login-items", "check", "org.a", new)
        self.assertEqual(self.items(), [(new, True)])
        self.assertIn(b"org.a", self.ok("login-items", "list"))
        self.ok("login-items", "remove", "org.a")
        self.assertEqual(self.items(), [])
        for call in ("add", "remove", "remove org.a --path /a", "check org.a"):
            self.refused("login-items", *call.split(), status=2)

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
