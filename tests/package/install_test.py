"""An installation works from a folder that the build knows nothing of, and what describes it to others is sound."""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD, VERSION, PREFIX, TEXTS, CC = [sys.argv.pop(1) for _ in range(5)]
SOURCE = pathlib.Path(__file__).resolve().parents[2]
ID = "com.tarnwick.typeslate.Settings"


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="typeslate-install-")
        cls.addClassCleanup(folder.cleanup)
        cls.prefix, cls.texts = pathlib.Path(folder.name + PREFIX), pathlib.Path(folder.name + TEXTS)
        subprocess.run(["cmake", "--install", BUILD, "--strip"], env={**os.environ, "DESTDIR": folder.name}, check=True,
                       stdout=subprocess.DEVNULL)
        cls.environment = {"PATH": f"{cls.prefix}/bin:{os.environ['PATH']}", "HOME": folder.name, "LC_ALL": "C.UTF-8",
                           "TYPESLATE_ROOT": folder.name, "TSAN_OPTIONS": os.environ.get("TSAN_OPTIONS", "")}

    def run_installed(self, *command, status=0):
        result = subprocess.run(command, env=self.environment, capture_output=True, text=True, timeout=60)
        self.assertEqual(result.returncode, status, (command, result.stdout, result.stderr))
        return result.stdout + result.stderr

    def test_runs_from_anywhere(self):
        self.assertIn(VERSION, self.run_installed("typeslatectl", "--version"))
        self.assertIn("Global", self.run_installed("typeslatectl", "entries", "list"))
        self.assertIn("no session bus", self.run_installed("typeslatectl", "watch", status=1))
        picture = self.prefix / "picture.png"
        self.run_installed("panehost", "--screenshot", str(picture))
        self.assertGreater(picture.stat().st_size, 10_000)

    @staticmethod
    def headers(file):
        return subprocess.run(["readelf", "-dS", file], check=True, capture_output=True, text=True).stdout

    def test_code_is_stripped_and_looks_nowhere_else(self):
        files = [file for file in self.prefix.rglob("*") if file.is_file() and not file.is_symlink()]
        code = [file for file in files if file.read_bytes()[:4] == b"\x7fELF"]
        self.assertIn("typeslatectl-bus.so", [file.name for file in code])
        for file in code:
            self.assertNotRegex(self.headers(file), r"RPATH|RUNPATH|\.symtab", file)
        names = {file.name for file in files}
        self.assertIn("com.tarnwick.typeslate.schema.json", names)
        self.assertFalse(names & {"libplinth.so", "Tarnwick Updater", "Sample.plinth"}, "samples are not installed")
        # The room of a path that is taken out stays: builds in folders with longer names would be others.
        installed = {file.name for file in code}
        for file in pathlib.Path(BUILD).rglob("*"):
            if file.name in installed and file.is_file():
                self.assertNotRegex(self.headers(file), r"(RPATH|RUNPATH).*[\[:]/", file)

    def test_programs_are_built_with_the_library_that_is_installed(self):
        pkg_config = next(self.prefix.rglob("typeslate.pc"), None)
        if not pkg_config or not shutil.which("pkg-config"):
            self.skipTest("needs the library and pkg-config")
        found = subprocess.run(["pkg-config", "--cflags", "--libs", "typeslate"], check=True, capture_output=True, text=True,
                               env={**os.environ, "PKG_CONFIG_PATH": str(pkg_config.parent),
                                    "PKG_CONFIG_SYSROOT_DIR": str(self.prefix)[:-len(PREFIX)]}).stdout.split()
        program = self.prefix / "reader"
        # A sanitizer must be in a program from its start.
        loaded = self.headers(next(self.prefix.rglob("libtypeslate.so.1")))
        sanitizers = [f"-fsanitize={name}" for short, name in (("asan", "address"), ("tsan", "thread")) if f"lib{short}." in loaded]
        subprocess.run([CC, self.prefix / "share/doc/libtypeslate/examples/reader.c", *found, *sanitizers, "-o", program],
                       check=True)
        said = subprocess.run([program], env=self.environment | {"LD_LIBRARY_PATH": str(pkg_config.parents[1])}, capture_output=True)
        self.assertEqual((said.returncode, said.stderr[:6]), (2, b"usage:"))

    def test_other_people_have_nothing_to_say_against_our_files(self):
        share = self.prefix / "share"
        pages = [["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page] for page in share.glob("man/man?/*")]
        interfaces = [*share.glob("dbus-1/interfaces/*.xml")]
        for file in interfaces:
            self.assertIn(f'<interface name="{file.stem}">', file.read_text())
        made = self.prefix / "made"
        bindings = [[*tool, made, file] for tool in (["gdbus-codegen", "--interface-info-header", "--output"],
                                                     ["qdbusxml2cpp", "-p"]) for file in interfaces]
        for command in (["desktop-file-validate", share / f"applications/{ID}.desktop"],
                        ["appstreamcli", "validate", "--no-net", share / f"metainfo/{ID}.metainfo.xml"],
                        *pages, *bindings):
            with self.subTest(command):
                if not shutil.which(command[0]):
                    self.skipTest(f"needs {command[0]}")
                # AppStream 0.16 does not know what 1.0 misses, and 1.0 calls what 0.16 knows out of date.
                known = "I: .*: unknown-tag developer$"
                self.assertNotRegex(self.run_installed(*command), rf"(?im)(warning|error): |^(?!{known})[EWI]: ")
        self.assertGreaterEqual(len(pages), 2)
        self.assertEqual(len(bindings), 4)

    def test_the_installed_texts_lead_to_texts_that_are_there(self):
        texts = [self.texts / name for name in ("README.md", "docs/updates.md")]
        for text in texts:
            for link in re.findall(r"\]\((?!https?:)([^)#]+)", text.read_text()):
                linked = text.parent / link
                self.assertTrue(linked.is_file(), f"{text.name}: {link}")
                if linked.suffix == ".md" and linked not in texts:
                    texts.append(linked)
        self.assertGreater(len(texts), 8)
        self.assertNotIn("./check", texts[0].read_text())

    def test_versions_agree(self):
        # While a package is built the folder is at the top.
        changelog = [*SOURCE.glob("debian/changelog"), *SOURCE.glob("packaging/debian/changelog")][0].read_text()
        self.assertEqual(re.match(r"typeslate-settings \(([^)]*)\)", changelog)[1], VERSION)
        metadata = (self.prefix / f"share/metainfo/{ID}.metainfo.xml").read_text()
        self.assertEqual(re.search(r'<release version="([^"]*)"', metadata)[1], VERSION)
        for recipe in (SOURCE / "packaging/PKGBUILD", *(SOURCE / "packaging").glob("typeslate.*")):
            self.assertEqual(re.search(r"^(?:Version: *|pkgver=)(.*)", recipe.read_text(), re.M)[1], VERSION)


unittest.main()
