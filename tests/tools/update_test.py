#!/usr/bin/env python3
"""typeslatectl update, and a foreign caller of the same checker: update_test.py TYPESLATECTL CALLER PANE"""
import subprocess, sys, unittest

from ctl import DOMAIN, Case

CALLER, PANE = sys.argv[2:4]


class UpdateTest(Case):
    def setUp(self):
        super().setUp()
        self.module = self.home / "Library/Plinthworks/T.plinth"
        self.updater = self.module / "Contents/Resources/Tarnwick Updater.app"
        self.program = self.updater / "Contents/Linux/true"
        self.lock = self.home / "tmp/com.tarnwick.typeslate.updater.lock"

    def install(self):
        self.bundle(self.module, CFBundleIdentifier=DOMAIN, CFBundleName="T", CFBundleShortVersionString="1.0b2")
        self.bundle(self.updater, CFBundleIdentifier="u", CFBundleExecutable="true")
        self.program.symlink_to("/bin/true")

    def status(self):
        return self.value("update", "status", "--json")

    def test_checks_from_the_first_on(self):
        self.refused("update", "check")
        self.assertEqual(self.status()["rule"], "date")
        self.install()
        first = self.status()
        self.assertEqual((first["due"], first["rule"], first["interval"]), (True, "date", 86400.0))
        self.assertNotIn("SULastCheckDate", first)
        launch = self.run_ctl("update", "check")
        self.assertEqual((launch.returncode, launch.stdout.decode()), (0, f"launched {self.updater}\n"))
        self.assertIn(b"Launched the updater", launch.stderr)
        after = self.status()
        self.assertEqual((after["rule"], list(after["SULastCheckDate"])), ("none", ["$date"]))
        self.assertEqual(self.run_ctl("update", "check").returncode, 3)
        self.ok("update", "check", "--now")
        self.assertGreater(self.status()["SULastCheckDate"]["$date"], after["SULastCheckDate"]["$date"])
        self.assertEqual(list(self.lock.parent.iterdir()), [])

    def test_what_is_in_the_way(self):
        self.install()
        self.lock.parent.mkdir()
        self.lock.touch()
        self.assertIn(b"error -48", self.refused("update", "check", "--now").stderr)
        self.assertTrue(self.lock.exists())
        self.lock.unlink()
        self.program.unlink()
        self.assertIn(b"could not be launched", self.refused("update", "check", "--now").stderr)

    def test_a_foreign_caller(self):
        self.install()
        done = subprocess.run([CALLER, PANE, self.module], env=self.env, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout), (0, f"-50 0 {self.updater}\n"), done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
