#!/usr/bin/env python3
"""The description of the settings against what is stored and taken: schema_test.py PROGRAM

Without a validator of JSON Schema only half of it is tried, and the test counts as skipped.
"""
import json, os, pathlib, re, subprocess, sys, unittest
import xml.etree.ElementTree as ET

from sessions import PROGRAM, Case

try:
    from jsonschema import Draft202012Validator
except ImportError:
    Draft202012Validator = None
DOMAIN = "com.tarnwick.typeslate"
ROOT = pathlib.Path(__file__).resolve().parents[2]


def place_of(error):
    """As typeslatectl writes it: what stands for a dictionary in JSON is no place of its own."""
    parts = [*error.absolute_path]
    if error.validator == "required":
        parts += [key for key in error.validator_value if key not in error.instance]
    parts = [part for part in parts if not str(part).startswith("$")]
    return "".join(f"[{part}]" if isinstance(part, int) else f".{part}" for part in parts).lstrip(".")


class SchemaTest(Case):
    def setUp(self):
        super().setUp()
        self.schema = self.value("schema")
        if Draft202012Validator:
            Draft202012Validator.check_schema(self.schema)

    def breaches(self, domain):
        return {place_of(error) for error in Draft202012Validator(self.schema).iter_errors(domain)}

    def test_program_and_schema_refuse_the_same_at_the_same_place(self):
        lines = (pathlib.Path(__file__).parent / "schema.txt").read_text(encoding="utf-8").splitlines()
        self.assertGreater(len(lines), 60)
        file, importing = f"{self.home}/file", ("defaults", "import", DOMAIN, f"{self.home}/file")
        stored = {"before": 1}
        self.ok("defaults", "write", DOMAIN, "before", "1")
        for number, line in enumerate(lines):
            values, _, problems = line.partition(" -> ")
            problem, *others = problems.split(" | ")  # the first in the order of the tables, and where there are more
            with self.subTest(values):
                for key, value in json.loads(values).items():
                    self.ok("defaults", "write", f"d{number}", key, json.dumps(value))
                domain = self.value("defaults", "read", f"d{number}")
                if Draft202012Validator:
                    self.assertEqual(self.breaches(domain), {problem.partition(": ")[0], *others} - {""})
                self.ok("defaults", "export", f"d{number}", file)
                if problem:
                    self.assertEqual(self.refused(*importing),
                                     f"typeslatectl: {file}: {problem}; --anyway stores it all the same")
                    self.assertEqual(self.value("defaults", "read", DOMAIN), stored)
                self.ok(*importing, *["--anyway"] * bool(problem))
                stored = self.value("defaults", "read", DOMAIN)
                self.assertEqual(stored, domain)
        self.refused(*importing)
        self.ok("defaults", "import", "other", file)  # which has no schema

    def test_what_the_pane_stores_fits(self):
        window = pathlib.Path(PROGRAM).parent / "panehost"
        if window.exists():  # it merges the shipped entries
            subprocess.run([window, "--screenshot", f"{self.home}/picture.png"], check=True, env=self.env, timeout=60,
                           capture_output=True)
        self.ok("entries", "add", str(self.application("Editor")))
        self.ok("entries", "add-regex", "Wine", "^wine", "--kind", "2")
        for command in ("entries set 1 DupeHandling marked", "entries set 0 FontSize 255", "pane logging on",
                        "pane disable", "update schedule on", "update interval 86400"):
            self.ok(*command.split())
        domain = self.value("defaults", "read", DOMAIN)
        self.assertGreater(len(domain["TheExcList"]), 10 if window.exists() else 2)
        if Draft202012Validator:
            self.assertEqual(self.breaches(domain), set())
        self.ok("defaults", "export", DOMAIN, f"{self.home}/file")
        self.ok("defaults", "import", DOMAIN, f"{self.home}/file")
        self.assertEqual(domain.keys() - self.schema["$defs"]["domainKeys"]["properties"].keys(), set())

    def test_options_are_described_as_in_the_window(self):
        """Each with what its control says of itself, what it offers, and what it shows for a missing value."""
        widgets = {widget.get("name"): widget for widget in ET.parse(ROOT / "resources/TSPrefs.ui").iter("widget")}
        table = (ROOT / "settings/SettingsSchema.cpp").read_text(encoding="utf-8")
        outlets = dict(re.findall(r'^    \{"(\w+)".*"(perApp\w+)"', table, re.M))
        described = self.schema["$defs"]["optionKeys"]["properties"]
        self.assertEqual((list(described), len(described)), (list(outlets), 16))
        self.ok("entries", "add-regex", "Bare", "x")
        self.ok("defaults", "write", DOMAIN, "TheExcList", '[{"Type": "Global"}]')
        for key, option in described.items():
            widget = widgets[outlets[key]]
            text = lambda path: [found.text for found in widget.findall(path)]
            self.assertEqual([option["description"]], text("property[@name='toolTip']/string"))
            self.assertEqual(option["default"], self.value("entries", "get", "0", key), key)
            offered = option.get("anyOf", [{}])
            self.assertEqual([(each["const"], each["title"]) for each in offered if "const" in each],
                             list(enumerate(text("item/property/string"))))
            self.assertEqual([str(each["maximum"]) for each in offered if "maximum" in each],
                             text("property[@name='maximum']/number"))

    def application(self, name):
        file = self.home / f"org.example.{name}.desktop"
        file.write_text(f"[Desktop Entry]\nType=Application\nName={name}\nExec=/bin/sh\n")
        return file


if __name__ == "__main__":
    result = unittest.main(argv=sys.argv[:1], exit=False).result
    sys.exit(not result.wasSuccessful() or (0 if Draft202012Validator else print("no validator") or 77))
