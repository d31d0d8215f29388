"""A user of whom there is nothing but a home, without a session bus, and typeslatectl as a shell would call it."""
import json, os, pathlib, plistlib, subprocess, sys, tempfile, unittest

PROGRAM = os.path.abspath(sys.argv[1])
DOMAIN = "com.tarnwick.typeslate"


class Case(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.env = {k: v for k, v in os.environ.items() if not k.startswith(("DBUS_", "XDG_", "TYPESLATE_", "WINE"))}
        self.env |= {"HOME": folder.name, "XDG_CONFIG_HOME": f"{folder.name}/config", "TYPESLATE_ROOT": folder.name,
                     "XDG_DATA_HOME": f"{folder.name}/data", "XDG_DATA_DIRS": f"{folder.name}/shared",
                     "XDG_RUNTIME_DIR": f"{folder.name}/runtime", "TYPESLATE_LOG": "stderr"}
        self.stored = self.home / "config/preferences" / f"{DOMAIN}.plist"

    def run_ctl(self, *arguments, data=b"", **environment):
        return subprocess.run([PROGRAM, *arguments], input=data, capture_output=True, env=self.env | environment)

    def ok(self, *arguments, **more):
        result = self.run_ctl(*arguments, **more)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def value(self, *arguments):
        return json.loads(self.ok(*arguments))

    def refused(self, *arguments, status=1, lines=1, **more):
        result = self.run_ctl(*arguments, **more)
        complaints = [line for line in result.stderr.decode().splitlines() if line.startswith("typeslatectl: ")]
        self.assertEqual((result.returncode, len(complaints)), (status, lines), (arguments, result.stderr))
        return result

    def put(self, entries):
        self.ok("defaults", "write", DOMAIN, "TheExcList", json.dumps(entries))

    def entries(self):
        return plistlib.loads(self.stored.read_bytes())["TheExcList"]

    def bundle(self, path, **info):
        (path / "Contents/Linux").mkdir(parents=True)
        (path / "Contents/Info.plist").write_bytes(plistlib.dumps(info))
        return str(path)
