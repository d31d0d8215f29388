#!/usr/bin/env python3
"""Every subcommand of typeslatectl, as a shell would call it: typeslatectl_test.py PROGRAM, and what sessions.py takes."""
import json, os, pathlib, re, shutil, signal, subprocess, sys, threading, unittest
from datetime import datetime

from sessions import PROGRAM, Case, SessionTest

DOMAIN = "com.tarnwick.typeslate"


def cases(name):
    return (pathlib.Path(__file__).parent / name).read_text(encoding="utf-8").splitlines()


class CallTest(Case):
    def test_what_is_no_call(self):
        for line in cases("wrong-calls.txt"):
            call, _, problem = line.partition(" -> ")
            with self.subTest(call):
                said = self.refused(*call.split(), status=2)
                self.assertEqual(said, f"typeslatectl: {problem} (--help tells more)")

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
                self.assertIn("not JSON", self.refused("defaults", "write", "d", "k", text))


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
        self.assertEqual(self.value("entries", "get", "1")["Data"], "expression")  # stored before it is announced
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

    @unittest.skipUnless(shutil.which("gdbus"), "needs gdbus")
    def test_what_any_sender_says(self):
        watcher, place = self.watch(), "com.tarnwick.DistributedNotificationCenter"
        large = "'n' | 'o' | {'text': <'" + "x" * 100_000 + "'>} | true -> {\"text\": \"" + "x" * 100_000 + "\"}"
        for case in [*cases("notifications.txt"), large]:
            arguments, _, userInfo = case.partition(" -> ")
            subprocess.run(["gdbus", "emit", "--session", "--object-path", "/" + place.replace(".", "/"), "--signal",
                            place + ".Notification", *arguments.split(" | ")], check=True, env=self.env)
            with self.subTest(arguments[:200]):
                if userInfo:  # the others are followed by one that is heard
                    self.assertEqual(json.loads(watcher.stdout.readline())["userInfo"], json.loads(userInfo))
        self.end_expecting_no_more(watcher)

    def test_there_must_be_a_bus(self):
        watcher = self.watch()
        self.bus.terminate()
        self.assertEqual((watcher.wait(), watcher.stderr.read()), (1, "typeslatectl: the session bus has gone\n"))
        for address in ("", f"unix:path={self.home}/none"):
            self.refused("watch", DBUS_SESSION_BUS_ADDRESS=address)


class LoginItemsTest(Case):
    def test_an_added_item_starts_with_the_session(self):
        program, fifo = self.home / "a \"b\" $HOME %f `id` \\c'd = 100%", self.home / "started"
        program.write_text(f"#!/bin/sh\nprintf %s \"$0\" >'{fifo}'\n")
        program.chmod(0o755)
        os.mkfifo(fifo)
        self.ok("login-items", "add", str(program), "--hide")
        items = self.value("login-items", "list", "--json")
        self.assertEqual([(item["Path"], item["Hide"]) for item in items], [(str(program), True)])
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
            if not subprocess.run([PROGRAM, "helper", "status"], capture_output=True, env=self.env).returncode:
                self.skipTest("a helper is running that is not this test's")
        script = 'export XDG_RUNTIME_DIR="$PWD"; L="$PWD/.com.tarnwick.typeslate.helper.lock"; exec 3>&2 2>refused; ' \
                 'gone() { while ls -l /proc/*/exe 2>&1 | grep -q "/TS$"; do :; done; }; ' \
                 'mkdir "$L"; "$0" helper start; gone; rmdir "$L"; flock -F "$L" sleep 99 & while flock -n "$L" true; do :; done; ' \
                 '"$0" helper start; gone; kill $!; wait; exec 2>&3; "$0" helper status; echo $?; "$0" helper start && "$0" helper start && "$0" helper status --json; ' \
                 'ls -l /proc/*/exe 2>&1 | grep -c "/TS$"; "$0" helper stop && "$0" helper stop; "$0" helper status'
        done = subprocess.run([*apart, "sh", "-c", script, PROGRAM], capture_output=True, text=True,
                              env=self.env, cwd=self.home)
        started, count, stopped = done.stdout.partition("}")[0], *done.stdout.partition("}")[2].split("\n")[1:3]
        self.assertRegex(started, r'^not running\n1\n(running, process \d+\n)\1\{\s+"running": true,')
        self.assertEqual((count, stopped, done.stderr), ("1", "not running", ""))
        self.assertRegex((self.home / "refused").read_text(),
                         r"started: .*\.lock: Is a directory\n.*started: sleep, process \d+, holds its lock /.*\.lock\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
