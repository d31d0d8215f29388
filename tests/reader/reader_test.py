#!/usr/bin/env python3
"""Every reader of the settings on the same cases: reader_test.py BUILD CC

The library through the Python example, the command line, and a second reading of the rules (reference.py) on cases.json
and on random lists; and the C example, built as its first lines say.
"""
import base64, ctypes, json, os, pathlib, plistlib, random, re, subprocess, sys, tempfile, unittest

BUILD, CC = os.path.abspath(sys.argv[1]), sys.argv[2]
ROOT = pathlib.Path(__file__).resolve().parents[2]
LIBRARY = f"{BUILD}/lib/libtypeslate.so.1"
CASES = json.loads((pathlib.Path(__file__).parent / "cases.json").read_text(encoding="utf-8"))

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import reference

# As another program would find it by LD_LIBRARY_PATH, which is read at a program's start.
example = {"__name__": "reader"}
exec((ROOT / "examples/reader.py").read_text().replace('"libtypeslate.so.1"', repr(LIBRARY)), example)


class Home(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.file = self.home / "config/preferences/com.tarnwick.typeslate.plist"
        self.file.parent.mkdir(parents=True)
        machine = ("DBUS_", "DISPLAY", "TYPESLATE_", "WINE", "XDG_", "HOST_XDG_", "LANG", "LC_")
        self.env = {name: value for name, value in os.environ.items() if not name.startswith(machine)}
        self.env |= {"HOME": folder.name, "XDG_CONFIG_HOME": f"{folder.name}/config", "TYPESLATE_ROOT": folder.name,
                     "XDG_DATA_DIRS": f"{folder.name}/shared", "LD_LIBRARY_PATH": f"{BUILD}/lib"}
        os.environ.pop("HOST_XDG_CONFIG_HOME", None)  # what the library in this process reads
        os.environ["XDG_CONFIG_HOME"] = self.env["XDG_CONFIG_HOME"]

    def here(self, value):
        """A value of a case in this home: "@" is the home, {"$data": ...} are bytes."""
        if isinstance(value, dict):
            return base64.b64decode(value["$data"]) if "$data" in value else {k: self.here(v) for k, v in value.items()}
        if isinstance(value, list):
            return [self.here(each) for each in value]
        return value.replace("@", str(self.home)) if isinstance(value, str) else value

    def store(self, domain, form=plistlib.FMT_BINARY):
        new = self.file.with_suffix(".new")
        new.write_bytes(plistlib.dumps(domain, fmt=form))
        new.rename(self.file)

    def read(self, application):
        with example["Settings"]() as settings:
            return settings.resolve(**application)

    def install(self, application):
        """An .app of these facts; what is not said of a folder is what its place gives."""
        path = application.get("path") or f"{self.home}/Applications/{application.get('name') or 'B'}.app"
        contents = pathlib.Path(path) / "Contents"
        contents.mkdir(parents=True, exist_ok=True)
        keys = {"CFBundleIdentifier": "identifier", "CFBundleDisplayName": "name"}
        described = {key: application[fact] for key, fact in keys.items() if fact in application}
        if "creator" in application:
            described["CFBundleSignature"] = application["creator"][::-1 if sys.byteorder == "little" else 1]
        (contents / "Info.plist").write_bytes(plistlib.dumps(described))
        return path


class CasesTest(Home):
    def test_library_and_second_reading(self):
        for number, case in enumerate(CASES):
            with self.subTest(case["case"]):
                self.store(self.here(case["domain"]), [plistlib.FMT_BINARY, plistlib.FMT_XML][number % 2])
                application = self.here(case["application"])
                got, expected = self.read(application), {"on": True} | case["expect"]
                self.assertEqual(got, reference.resolve(self.file, application))
                self.assertEqual(got | {"options": {}}, expected | {"options": {}})
                self.assertEqual(got["options"] | expected["options"], got["options"])

    def test_command_line(self):
        tried = 0
        for case in CASES:
            application, expected = self.here(case["application"]), {"on": True} | case["expect"]
            if "identifier" not in application or (application.keys() != {"identifier"} and "name" not in application):
                continue  # there is no such application on a disk
            with self.subTest(case["case"]):
                self.store(self.here(case["domain"]))
                named = application["identifier"] if len(application) == 1 else self.install(application)
                said = json.loads(subprocess.run([f"{BUILD}/bin/typeslatectl", "resolve", named, "--json"], check=True,
                                                 env=self.env, capture_output=True).stdout)
                for key, value in {"row": "row", "reason": "reason", "applies": "applies", "on": "moduleOn"}.items():
                    self.assertEqual(said[value], expected[key], key)
                for key, value in expected["options"].items():
                    self.assertEqual(int(said["options"][key]), value, key)
                tried += 1
        self.assertGreater(tried, 30)

    def test_random_lists(self):
        chance = random.Random(18)
        words = ["a", "b", "a.b", "", "é", "/a", "^a", "(a", "a+$", "(?i)A", "[", "a{2}", "\\w", "dcba"]
        kinds = ["Global", "Identifier", "Creator", "Path", "RegEx", "RegEx", "Other", 5]
        values = [0, 1, 2, 3, -1, 255, 256, True, False, 0.5, 1.5, "yes", "1", [], 1 << 62, 1e300]
        keys = list(reference.SHOWN_WHEN_MISSING)

        def entry():
            made = {"Type": chance.choice(kinds), "Data": chance.choice(words), "RegEx Type": chance.choice(values),
                    "Settings": {key: chance.choice(values) for key in chance.sample(keys, 5)}}
            for key in chance.sample(list(made), chance.choice((0, 0, 0, 1))):
                made[key] = chance.choice(values)
            return made

        for _ in range(400):
            self.store({"TheExcList": [entry() for _ in range(chance.randrange(9))], "Disabled": chance.choice(values)})
            application = {key: chance.choice(words) for key in ("identifier", "creator", "path", "name")}
            self.assertEqual(self.read(application), reference.resolve(self.file, application), application)


class Item(ctypes.Structure):
    pass


NUMBERS, TEXTS = ("is_marked", "is_active", "drawing", "size", "icon"), ("family", "style", "full_name", "postscript_name", "file")
Item._fields_ = [("kind", ctypes.c_int), ("title", ctypes.c_char_p), ("detail", ctypes.c_char_p),
                 *((name, ctypes.c_int) for name in NUMBERS), ("copies", ctypes.c_uint),
                 *((name, ctypes.c_char_p) for name in TEXTS), ("index", ctypes.c_uint),
                 *((name, ctypes.c_int) for name in ("weight", "width", "slant")),
                 ("items", ctypes.POINTER(ctypes.POINTER(Item))), ("item_count", ctypes.c_size_t)]


class Menu(ctypes.Structure):
    _fields_ = [("is_arranged", ctypes.c_int), ("arranges_font_panel", ctypes.c_int),
                *((name, ctypes.c_size_t) for name in ("faces", "families", "lines")),
                ("items", ctypes.POINTER(ctypes.POINTER(Item))), ("item_count", ctypes.c_size_t)]


class MenuTest(Home):
    """The menu of the library is that of the command line."""

    def of_library(self, items, count):
        kinds, drawings = ("face", "submenu", "title", "separator"), ("plain", "inFace", "sampleBeside")
        for item in (items[at].contents for at in range(count)):
            value = {"kind": kinds[item.kind], "title": item.title.decode(), "marked": bool(item.is_marked),
                     "drawing": drawings[item.drawing], "size": item.size, "copies": item.copies, "file": item.file.decode(),
                     "index": item.index}
            yield value | {"items": list(self.of_library(item.items, item.item_count))}

    def of_command_line(self, items):
        for item in items:
            face = item.get("face", {})
            yield {"kind": item["kind"], "title": item.get("title", ""), "marked": item.get("marked", False),
                   "drawing": item.get("drawing", "plain"), "size": item.get("size", 0), "copies": item.get("copies", 1),
                   "file": face.get("file", ""), "index": face.get("index", 0),
                   "items": list(self.of_command_line(item.get("children", [])))}

    def test_one_menu(self):
        library = example["library"]
        library.typeslate_menu_new.restype = ctypes.POINTER(Menu)
        library.typeslate_menu_new.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p, ctypes.c_void_p]
        library.typeslate_menu_free.argtypes = [ctypes.c_void_p]
        on = dict.fromkeys(("Enabled", "HierarchicalMenu", "AllFontsGroup", "CheckMenuItems", "ShowFontInFace", "ScriptSort"), True)
        for settings in (on | {"DupeHandling": 2, "ChangeSize": True, "FontSize": 12}, {"Enabled": True, "ShowIcons": True}, {}):
            self.store({"TheExcList": [{"Type": "Global", "Settings": settings}]})
            said = json.loads(subprocess.run([f"{BUILD}/bin/typeslatectl", "menu", "0", "--json", "--font", "DejaVu Sans Bold"],
                                             check=True, env=self.env, capture_output=True).stdout)
            with example["Settings"]() as read:
                entry = library.typeslate_resolve(read.handle, ctypes.byref(example["Application"]()))
                menu = library.typeslate_menu_new(read.handle, entry, b"DejaVu Sans Bold", None, None)
                self.assertTrue(menu)
                got = list(self.of_library(menu.contents.items, menu.contents.item_count))
                self.assertEqual((menu.contents.faces, menu.contents.lines), (said["faces"], said["lines"]))
                library.typeslate_menu_free(menu)
                library.typeslate_entry_free(entry)
            self.assertEqual(got, list(self.of_command_line(said["menu"])))


class LibraryTest(unittest.TestCase):
    def asked(self, *command):
        return subprocess.run([*command, LIBRARY], check=True, capture_output=True, text=True).stdout

    def test_exported_names_and_what_is_loaded(self):
        exported = [line.split()[-1].split("@")[0] for line in self.asked("nm", "-D", "--defined-only").splitlines()]
        names = (pathlib.Path(__file__).parent / "exported.txt").read_text().split()
        self.assertEqual([name for name in exported if name != "TYPESLATE_1"], names)
        loaded = set(re.findall(r"NEEDED.*\[lib([a-z+_0-9-]+)\.so", self.asked("readelf", "-d")))
        self.assertEqual(loaded - {"c", "m", "stdc++", "gcc_s"}, {"pcre2-8"})


class ExampleTest(Home):
    def test_both_examples_follow_what_is_stored(self):
        program = self.home / "reader"
        build = [CC, ROOT / "examples/reader.c", f"-I{ROOT}/reader", LIBRARY, "-o", program, "-Wall", "-Werror",
                 "-std=c99", "-D_POSIX_C_SOURCE=200809L"]
        subprocess.run(build, check=True)
        self.file.parent.rmdir()
        running = subprocess.Popen([program, "a.b"], env=self.env, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(running.communicate)
        self.addCleanup(running.terminate)
        self.assertIn("entry -1, by default: Enabled=1", running.stdout.readline())
        self.assertEqual(running.stderr.readline(), "reader: nothing is stored yet\n")
        one = {"Type": "Identifier", "Data": "a.b", "Settings": {"Enabled": True, "FontSize": 12}}
        self.file.parent.mkdir()
        self.store({"TheExcList": [{"Type": "Global"}, one]})
        self.assertRegex(running.stdout.readline(), "^entry 1, by its identifier: .* FontSize=12 ")
        said = subprocess.run([sys.executable, ROOT / "examples/reader.py", "a.b"], env=self.env, check=True,
                              capture_output=True, text=True).stdout
        self.assertIn("'reason': 'identifier'", said)
        self.store({"TheExcList": [{"Type": "Global"}, one], "Disabled": True})
        self.assertEqual(running.stdout.readline(), "menus are left alone (all is off)\n")
        self.file.write_bytes(b"half")  # a fault changes nothing; the next good file does
        self.store({"TheExcList": [{"Type": "Global"}]})
        self.assertEqual(running.stdout.readline(), "menus are left alone (the entry is off)\n")
        self.file.unlink()
        self.assertIn("entry -1, by default", running.stdout.readline())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
