#!/usr/bin/env python3
"""Holds every #include between the rooms against the arrows that docs/design.md draws."""
import pathlib
import re
import sys

ROOT = pathlib.Path(sys.argv[1])
BUNDLE = {"settings", "entrylist", "fontmenu", "pane", "TarnwickUpdater"}
FLOOR = {"propertylist", "platform"}
MAY_SEE = {
    "propertylist": set(),
    "platform": {"propertylist"},
    "settings": FLOOR,
    "TarnwickUpdater": FLOOR | {"settings"},
    "entrylist": FLOOR | {"settings"},
    "fontmenu": FLOOR | {"settings"},
    "pane": FLOOR | {"settings", "entrylist", "fontmenu", "TarnwickUpdater"},
    "linux": FLOOR,
    "qt": FLOOR,
    "reader": FLOOR | {"settings", "fontmenu", "linux"},
    "host": FLOOR | BUNDLE | {"linux", "qt", "reader"},
    "tools": FLOOR | BUNDLE | {"linux", "qt", "host", "reader"},
}
# What only the standard library may be seen by: no header of another library comes in by <...> either.
STANDARD_ONLY = BUNDLE | FLOOR
STANDARD = re.compile(r"<([a-z_]+|std(def|int)\.h)>")
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|(<[^>]+>))', re.M)


def wrong_includes(room, file):
    for ours, other in INCLUDE.findall(file.read_text(encoding="utf-8")):
        seen = ours.split("/")[0] if "/" in ours else None
        if ours and not ours.endswith(".moc") and seen not in MAY_SEE[room] | {room}:
            yield ours
        if other and room in STANDARD_ONLY and not STANDARD.fullmatch(other):
            yield other


problems, files = [], 0
for room in MAY_SEE:
    for file in sorted((ROOT / room).rglob("*")):
        if file.suffix in (".h", ".cpp") and file.is_file():
            files += 1
            problems += [f"{file.relative_to(ROOT)} includes {what}" for what in wrong_includes(room, file)]
    if not files:
        problems.append(f"{room}/ has no sources: has it moved?")
others = set(MAY_SEE) | {"tests", "bench", "fuzz", "examples", "build"}
for folder in ROOT.iterdir():
    is_build = (folder / "CMakeCache.txt").exists()
    if folder.name not in others and not is_build and any(folder.glob("**/*.cpp")):
        problems.append(f"{folder.name}/ is in no row of this table")
print("\n".join(problems) or f"{files} files, every arrow points down.")
sys.exit(bool(problems))
