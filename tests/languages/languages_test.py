"""Every text in every language: languages_test.py SOURCE_ROOT [--keys | --documents]

Fails when a text is missing or does not fit; with --documents when one is not what scripts/make-texts makes of its
source. --keys prints the English texts, one a line as JSON.
"""
import collections, json, pathlib, plistlib, re, subprocess, sys, tempfile
import xml.etree.ElementTree as ET

ROOT = pathlib.Path(sys.argv[1])
LANGUAGES = ("de", "fr", "ja")
CODE = ("entrylist", "fontmenu", "pane", "settings", "TarnwickUpdater", "linux", "qt", "tools", "host", "reader")
NO_TEXT = {"action", "shortcut", "searches", "image", "columnIdentifiers", "itemTags", "styleSheet"}
LITERAL = r'"(?:[^"\\\n]|\\.)*"'
LOOK_UP = re.compile(r"\b(?:localized|localizedString|localizedFormat|localizedText|localizable|refused|(?<![.>])text)\(\s*(?:\w+,\s*)?((?:%s\s*)+)" % LITERAL)
PLACEHOLDER = re.compile(r"%(?:\d+\$)?[-+0-9.]*[@sdfgux]")


def shown(element):
    """The texts of an interface file's element that are for people."""
    for child in element:
        if child.get("notr") == "true" or (child.tag in ("property", "attribute") and child.get("name") in NO_TEXT):
            continue
        if child.tag == "string" and re.search(r"[^\W\d]", child.text or ""):
            yield child.text
        yield from shown(child)


def keys():
    """Where each English text is asked for first."""
    found = {text: file.name for file in (ROOT / "resources").glob("*.ui") for text in shown(ET.parse(file).getroot())}
    for file in (file for folder in CODE for suffix in ("cpp", "h") for file in (ROOT / folder).rglob("*." + suffix)):
        for match in LOOK_UP.finditer(file.read_text(encoding="utf-8")):
            found.setdefault("".join(json.loads(part) for part in re.findall(LITERAL, match.group(1))), file.name)
    found |= {each["Name"]: "" for each in plistlib.loads((ROOT / "resources/Exclusions.plist").read_bytes())}
    statuses = (ROOT / "platform/PlatformTypes.h").read_text(encoding="utf-8")
    return found | {text: "PlatformTypes.h" for text in re.findall(r'return "([^"]+)";', statuses)}


def shape(text):
    """What belongs to a text's place and not to its language. Placeholders may be turned round with positions ("%2$@")."""
    return (collections.Counter(re.sub(r"\d+\$", "", found) for found in PLACEHOLDER.findall(text)), text.count("\n"),
            re.match(r"\s*", text).group(), re.search(r"\s*$", text).group(), bool(re.search(r"&\w", text)))


def problems(wanted):
    strings = {language: plistlib.loads((ROOT / f"resources/{language}.lproj/Localizable.strings").read_bytes())
               for language in ("en", *LANGUAGES)}
    for language, texts in strings.items():
        yield from (f"{language}: nobody asks for {key!r}" for key in texts.keys() - wanted.keys())
    for language in LANGUAGES:
        for key, place in wanted.items():
            source, text = strings["en"].get(key, key), strings[language].get(key)
            if not text or shape(source) != shape(text):
                yield f"{language}: {text!r} does not fit {source!r} ({place})"
    documents = {tuple(file.name.split(".")[:2]) for file in (ROOT / "resources/texts").glob("*.md")}
    yield from (f"{language}: {name} is missing" for name in {name for name, _ in documents} for language in LANGUAGES
                if (name, language) not in documents)
    for file in (file for folder in ("host", "packaging") for pattern in ("*.desktop*", "*.json*", "*.metainfo.xml*")
                 for file in (ROOT / folder).rglob(pattern)):
        yield from unlike(file.name, file.read_text(encoding="utf-8"))


def examples(language):
    """Of the help on expressions: each expression with what it matches and what it does not."""
    text = (ROOT / f"resources/texts/RegEx Help.{language}.md").read_text(encoding="utf-8")
    return [(expression, re.findall("([✓✗])\u00a0`([^`]+)`", samples))
            for expression, samples in re.findall(r"^`(.+)`\\\n(.*)$", text, re.M)]


def wrong_examples():
    for expression, samples in examples("en"):
        yield from (f"{expression} and {text}: not {sign}" for sign, text in samples
                    if (sign == "✓") != bool(re.search(expression, text)))
    yield from (f"{language}: the help has other examples" for language in LANGUAGES
                if examples(language) != examples("en") or len(examples("en")) < 5)


def unlike(name, text):
    """Name=... needs Name[de]=... in desktop entries and in the plug-in's description, a <p> a <p xml:lang="de">."""
    keys = re.findall(r'^\s*"?(Name|GenericName|Comment|Description|Keywords|X-KDE-Keywords)"?\s*[=:]\s*[^{\s]', text, re.M)
    text = re.sub(r"<developer.*?</developer>", "", text, flags=re.S)
    tags = re.findall(r"<(name|summary|p|caption)((?: [^>]*)?)>", text)
    for language in LANGUAGES:
        yield from (f"{language}: {name} has no {key}" for key in keys
                    if not re.search(rf'^\s*"?{key}\[{language}\]"?\s*[=:]\s*"?\S', text, re.M))
        english, translated = (sorted(tag for tag, rest in tags if mark(rest)) for mark in
                               (lambda rest: "xml:lang" not in rest, lambda rest: f'"{language}"' in rest))
        if english != translated:
            yield f"{language}: {name} has {translated} for {english}"


def words(file):
    """Versions of pandoc differ in spaces, other attributes and how RTF is to look."""
    text = file.read_text(encoding="utf-8")
    if file.suffix == ".html":
        text = re.sub(r' (?!href|src|class|title)[\w-]+="[^"]*"| /(?=>)', "", text)
    text = re.sub(r"\\u(-?\d+) ?.", lambda code: chr(int(code[1]) % 65536), text)
    return re.sub(r"([<>])", r" \1 ", re.sub(r"\\\*|\\[a-z]+-?\d* ?|[{}]", " ", text)).split()


def drifted():
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([ROOT / "scripts/make-texts", folder], check=True)
        made, kept = ({str(file.relative_to(top)): words(file) for file in pathlib.Path(top).rglob("TXT.*")}
                      for top in (folder, ROOT / "resources"))
    yield from (f"{name} is not what scripts/make-texts makes" for name in made.keys() | kept.keys()
                if made.get(name) != kept.get(name))


wanted = {text: place for text, place in keys().items() if text}
if "--keys" in sys.argv:
    print(*(json.dumps(text, ensure_ascii=False) for text in wanted), sep="\n")
else:
    found = drifted() if "--documents" in sys.argv else [*problems(wanted), *wrong_examples()]
    sys.exit("\n".join(found) or not wanted)
