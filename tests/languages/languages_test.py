"""Every text in every language: interface files, code, documents, desktop files.

    languages_test.py SOURCE_ROOT             fails, and says what, when a text is missing or does not fit
    languages_test.py SOURCE_ROOT --keys      prints the English texts, one a line as JSON
"""
import collections
import json
import pathlib
import plistlib
import re
import sys
import xml.etree.ElementTree as ET

LANGUAGES = ("de", "fr", "ja")
CODE = ("pane", "settings", "TarnwickUpdater", "qt", "tools", "host")
NO_TEXT = {"action", "image", "columnIdentifiers", "itemTags", "styleSheet"}
LITERAL = r'"(?:[^"\\\n]|\\.)*"'
LOOK_UP = re.compile(r"\b(?:localized|localizedString|localizedFormat|refused)\(\s*((?:%s\s*)+)" % LITERAL)
PLACEHOLDER = re.compile(r"%(?:\d+\$)?[-+0-9.]*[@sdfgux]")

problems = []


def shown(element):
    """The texts of an interface file's element that are for people."""
    for child in element:
        if child.get("notr") == "true" or (child.tag in ("property", "attribute") and child.get("name") in NO_TEXT):
            continue
        if child.tag == "string" and re.search(r"[^\W\d]", child.text or ""):
            yield child.text
        yield from shown(child)


def keys(root):
    found = {}
    for file in sorted((root / "resources").glob("*.ui")):
        for text in shown(ET.parse(file).getroot()):
            found.setdefault(text, file.name)
    for folder in CODE:
        for file in sorted((root / folder).rglob("*.cpp")) + sorted((root / folder).rglob("*.h")):
            for match in LOOK_UP.finditer(file.read_text(encoding="utf-8")):
                text = "".join(json.loads(part) for part in re.findall(LITERAL, match.group(1)))
                if text:
                    found.setdefault(text, str(file.relative_to(root)))
    statuses = (root / "platform/PlatformTypes.h").read_text(encoding="utf-8")
    for text in re.findall(r'return "([^"]+)";', statuses):
        found.setdefault(text, "PlatformTypes.h")
    return found


def placeholders(text):
    """By kind: a translation may turn them round with positions ("%2$@")."""
    return collections.Counter(re.sub(r"\d+\$", "", found) for found in PLACEHOLDER.findall(text))


def edges(text):
    """What surrounds a text belongs to its place, not to its language."""
    return (re.match(r"\s*", text).group(), re.search(r"\s*$", text).group(), bool(re.search(r"&\w", text)),
            text.count("\n"))


def check_strings(root, language, english, wanted):
    file = root / "resources" / (language + ".lproj") / "Localizable.strings"
    strings = plistlib.loads(file.read_bytes())
    for key in strings.keys() - wanted.keys():
        problems.append(f"{language}: nobody asks for {key!r}")
    for key, place in wanted.items():
        source, text = english.get(key, key), strings.get(key)
        if not text:
            problems.append(f"{language}: {key!r} is missing ({place})")
        elif placeholders(source) != placeholders(text) or edges(source) != edges(text):
            problems.append(f"{language}: {text!r} does not fit {source!r}")


def check_documents(root):
    documents = {file.parent.name for file in (root / "resources").glob("*.rtfd/TXT.rtf*")}
    for language in LANGUAGES:
        for name in documents:
            if not list((root / "resources" / f"{language}.lproj" / name).glob("TXT.rtf*")):
                problems.append(f"{language}: {name} is missing")


def check_desktop_files(root):
    """Name=... needs Name[de]=... and so on, in desktop entries and in the plugin's description alike."""
    files = [file for pattern in ("*.desktop*", "*.json*") for folder in ("host", "resources", "share", "packaging")
             for file in sorted((root / folder).rglob(pattern))]
    for file in files:
        text = file.read_text(encoding="utf-8")
        for key in re.findall(r'^\s*"?(Name|GenericName|Comment|Description|Keywords|X-KDE-Keywords)"?\s*[=:]', text, re.M):
            for language in LANGUAGES:
                if not re.search(rf'^\s*"?{key}\[{language}\]"?\s*[=:]\s*"?\S', text, re.M):
                    problems.append(f"{language}: {file.name} has no {key}")
    for file in sorted(root.rglob("*.metainfo.xml*")):
        if "build" in file.relative_to(root).parts:
            continue
        texts = re.findall(r"<(name|summary|p|caption)((?: [^>]*)?)>", file.read_text(encoding="utf-8"))
        for tag in {tag for tag, _ in texts}:
            plain = sum(1 for name, rest in texts if name == tag and "xml:lang" not in rest)
            for language in LANGUAGES:
                if sum(1 for name, rest in texts if name == tag and f'"{language}"' in rest) != plain:
                    problems.append(f"{language}: {file.name} lacks a <{tag}>")


def main():
    root = pathlib.Path(sys.argv[1])
    wanted = keys(root)
    if "--keys" in sys.argv:
        for text in wanted:
            print(json.dumps(text, ensure_ascii=False))
        return 0
    english = plistlib.loads((root / "resources/en.lproj/Localizable.strings").read_bytes())
    for language in LANGUAGES:
        check_strings(root, language, english, wanted)
    for key in english.keys() - wanted.keys():
        problems.append(f"en: nobody asks for {key!r}")
    check_documents(root)
    check_desktop_files(root)
    print("\n".join(problems) or f"{len(wanted)} texts in {len(LANGUAGES) + 1} languages")
    return 1 if problems else 0


sys.exit(main())
