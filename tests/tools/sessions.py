#!/usr/bin/env python3
"""Sessions in a shell, each in a home of its own: what stands behind "$ " is typed, and what is below it is shown.

usage: sessions.py PROGRAM FILE... [NAME=VALUE...]

A session of a text file begins with "== " and what it shows; those of a document are its console blocks, one session.
"~" is the home. NAMEs are variables of the sessions.
"""
import json, os, pathlib, subprocess, sys, tempfile, unittest

PROGRAM = os.path.abspath(sys.argv[1])


class Case(unittest.TestCase):
    """A user of whom there is nothing but a home, without a display or a session bus."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        machine = ("DBUS_", "DISPLAY", "QT_", "TYPESLATE_", "WAYLAND_", "WINE", "XDG_")
        self.env = {name: value for name, value in os.environ.items() if not name.startswith(machine)}
        self.env |= {"HOME": folder.name, "XDG_CONFIG_HOME": f"{folder.name}/config", "TYPESLATE_ROOT": folder.name,
                     "XDG_DATA_DIRS": f"{folder.name}/shared", "XDG_RUNTIME_DIR": f"{folder.name}/runtime",
                     "PATH": os.path.dirname(PROGRAM) + ":" + os.environ["PATH"]}

    def ok(self, *arguments):
        result = subprocess.run([PROGRAM, *arguments], capture_output=True, env=self.env)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def value(self, *arguments):
        return json.loads(self.ok(*arguments))

    def refused(self, *arguments, status=1, **environment):
        result = subprocess.run([PROGRAM, *arguments], capture_output=True, env=self.env | environment)
        complaints = [line for line in result.stderr.decode().splitlines() if line.startswith("typeslatectl: ")]
        self.assertEqual((result.returncode, len(complaints)), (status, 1), (arguments, result.stderr))
        return complaints[0]


def sessions(file):
    text = pathlib.Path(file).read_text(encoding="utf-8")
    if file.endswith(".md"):
        return [(file, "".join(part.split("```")[0] for part in text.split("```console\n")[1:]))]
    return [session.split("\n", 1) for session in text.split("\n== ")[1:]]


class SessionTest(Case):
    maxDiff = None

    def test_sessions(self):
        variables = dict(argument.split("=", 1) for argument in sys.argv[2:] if "=" in argument)
        for file in (argument for argument in sys.argv[2:] if "=" not in argument):
            self.assertGreater(sum(shown.count("$ ") for _, shown in sessions(file)), 5)
            for title, shown in sessions(file):
                with self.subTest(title):
                    self.setUp()
                    self.env |= variables
                    self.assertEqual(self.printed(shown), shown.rstrip("\n"))

    def printed(self, shown):
        for name in ("Editor", "Alpha", "Beta", "\u202eGam\\nma"):
            entry = self.home / f".local/share/applications/org.example.{name.strip(chr(0x202e))[:6]}.desktop"
            entry.parent.mkdir(parents=True, exist_ok=True)
            entry.write_text(f"[Desktop Entry]\nType=Application\nName={name}\nExec=/bin/sh\n")
        text = ""
        for command in (line for line in shown.splitlines() if line.startswith("$ ")):
            text += command + "\n" + subprocess.run(command[2:], shell=True, env=self.env, cwd=self.home, text=True,
                                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout
        return text.replace(str(self.home), "~").rstrip("\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
