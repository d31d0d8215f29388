#!/usr/bin/env python3
"""typeslatectl catalog on a tree of real folders: catalog_test.py PROGRAM."""
import json, os, plistlib, pty, re, subprocess, sys, unittest

from ctl import PROGRAM, Case

TIMES = ("%!Adobe-FontList 1.07\n\n%BeginFont\nFontName:Times-Bold\nFamilyName:Times\nFullName:Times Bold\n"
         "OutlineFileName:\\Sub\\TimesBol\n%EndFont\n\n%BeginFont\nFontName:NoFullName\n%EndFont\n")
CAFE = b"%!Adobe-FontList 1.07\r%BeginFont\rFontName:Cafe\rFullName: Caf\x8e: \r%EndFont\r"
DATABASE = "version=2.1\n[Times-Bold]\nf=replaced\n[Only-DB]\nf=1,Caf\\8E\ns=Bold\n[Last]\nf=never stored\n"


class CatalogTest(Case):
    def setUp(self):
        super().setUp()
        del self.env["TYPESLATE_LOG"]
        self.user = self.home / "data/Adobe"
        self.shared = self.home / "usr/local/share/Adobe"
        self.times = self.file(self.user / "TypeSpt/AdobeFnt01.lst", TIMES.encode())
        self.cafe = self.file(self.shared / "TypeSpt/.hidden/myadobefnt.LST.bak", CAFE)
        self.file(self.shared / "TypeSpt/.AdobeFnt02.lst", TIMES.replace("Times", "Unseen").encode())
        self.outline = self.file(self.shared / "Fonts/Sub/TimesBol", b"")
        self.database = self.shared / "TypeSpt/FntNames.db"
        self.stored = self.home / "config/preferences/com.tarnwick.typeslate.AdobeNames.plist"
        self.records = {
            "Only-DB": {"FullName": "Café", "StyleName": "Bold"},
            "Times-Bold": {"FontName": "Times-Bold", "FamilyName": "Times", "FullName": "Times",
                           "OutlineFileName": "\\Sub\\TimesBol", "RealFullName": "Times Bold",
                           "FontListFilePath": str(self.times), "FontFilePath": str(self.outline)},
            "Cafe": {"FontName": "Cafe", "FullName": " Café:"}}

    def file(self, path, content):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        return path

    def ok(self, *arguments):
        return super().ok("catalog", *map(str, arguments)).decode()

    def refused(self, *arguments):
        result = super().refused("catalog", *map(str, arguments))
        self.assertEqual(result.stdout, b"", arguments)
        return result.stderr.decode()

    def test_parsing_stores_nothing(self):
        database = self.file(self.home / "names.db", DATABASE.encode())
        lists_only = {k: v for k, v in self.records.items() if k != "Only-DB"}
        relative = os.path.relpath(self.times)
        for arguments, expected in (((self.times, self.cafe), lists_only), ((relative, self.cafe), lists_only),
                                    ((self.times, self.cafe, "--database", database), self.records),
                                    ((database,), {})):
            self.assertEqual(json.loads(self.ok("parse", *arguments)), expected)
        for bad in (self.home, self.home / "none", "", "/dev/null"):
            self.refused("parse", self.times, bad)
            self.refused("parse", self.times, "--database", bad)
        self.assertFalse(self.stored.exists())

    def test_building_and_what_others_then_read(self):
        for call in (("build",), ("list",), ("stats",), ("show", "Cafe")):
            self.refused(*call)
        self.assertFalse(self.stored.exists())
        self.file(self.database, DATABASE.encode())
        for files in (2, 3):
            self.assertRegex(self.ok("build"), rf"^rebuilt: {files} files, 3 records, \d+\.\d{{3}} s\n$")
            content = plistlib.loads(self.stored.read_bytes())
            self.assertEqual(content["AllNames"], self.records)
            self.assertEqual([f["Path"] for f in content["AdobeFontNamesFiles"]][:2], [str(self.times), str(self.cafe)])
            self.assertEqual(self.ok("stats"), f"records: 3\nfiles: {files}\nversion: 2.1\n"
                                               f"size: {self.stored.stat().st_size} bytes\n")
            self.file(self.home / "usr/share/Adobe/TypeSpt/AdobeFnt.lst", b"nothing")
        self.times.unlink()  # the stored catalogue alone is shown
        for arguments, expected in (((), "Times-Bold\nOnly-DB\nCafe\n"), (("--family", "Times"), "Times-Bold\n"),
                                    (("--family", "Café"), "Only-DB\n")):
            self.assertEqual(self.ok("list", *arguments), expected)
        for name, record in self.records.items():
            self.assertEqual(json.loads(self.ok("show", name)), record)

    def test_refusals(self):
        self.file(self.database, DATABASE.encode())
        self.ok("build")
        for call in (("show", "none"), ("show", ""), ("list", "--family", "Times Bold")):
            self.refused(*call)
        self.stored.unlink()
        self.stored.mkdir()
        for call in (("build",), ("list",), ("stats",), ("show", "Cafe")):
            self.assertIn("could not be written" if call == ("build",) else "cannot be read", self.refused(*call))

    def test_a_terminal_shows_progress_and_is_left_clean(self):
        self.file(self.database, DATABASE.encode())
        master, terminal = pty.openpty()
        build = subprocess.run([PROGRAM, "catalog", "build"], env=self.env, stdout=subprocess.PIPE, stderr=terminal)
        os.close(terminal)
        shown = b""
        try:
            while part := os.read(master, 4096):
                shown += part
        except OSError:  # the end of a terminal without a writer
            pass
        os.close(master)
        self.assertEqual((build.returncode, build.stdout[:8]), (0, b"rebuilt:"))
        self.assertTrue(shown.endswith(b"\r\x1b[K"), shown)
        drawn = re.split(rb"\r\x1b\[K|\r\n", shown)
        self.assertIn(b"2 of 2 font lists", drawn)
        self.assertIn(b"Scanning " + bytes(self.cafe), drawn)  # a log line of its own


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
