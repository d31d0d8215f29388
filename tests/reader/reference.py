"""The reading rules a second time, from docs/reading.md alone: what the library is held against."""
import ctypes
import ctypes.util
import os
import plistlib

pcre2 = ctypes.CDLL(ctypes.util.find_library("pcre2-8"))
for name in ("compile", "match_data_create", "match_context_create"):
    getattr(pcre2, f"pcre2_{name}_8").restype = ctypes.c_void_p
UTF, INVALID_UTF, NEVER_C = 0x00080000, 0x04000000, 0x00100000
MATCH_LIMIT = -47

OFF, ON = 0, 1
SHOWN_WHEN_MISSING = dict.fromkeys(
    ("Enabled", "CheckMenuItems", "ShowFontInFace", "DupeHandling", "ShowSets", "ChangeSize", "FontSize", "ShowIcons",
     "HierarchicalMenu", "AllFontsGroup", "ScriptSort"), OFF) | dict.fromkeys(
    ("IncludeFAPSets", "IncludeFEXSets", "IncludeSuitcaseSets", "GenerateInactivePreview", "ModifyFontPanel"), ON)
NEW_GLOBAL = {"Enabled": True, "ShowFontInFace": True, "DupeHandling": 1, "ShowSets": True, "ShowIcons": True,
              "HierarchicalMenu": True, "AllFontsGroup": True, "ScriptSort": False}


def number(value):
    if isinstance(value, float):
        return 0 if value != value else int(min(max(value, -2.0**63), 2.0**63))
    return int(value) if isinstance(value, (bool, int)) else 0


def is_true(value):
    if isinstance(value, str):
        return value.lower() in ("true", "yes", "1")
    return isinstance(value, (bool, int, float)) and value != 0


def kept(value):
    return value.encode() if isinstance(value, str) else value if isinstance(value, bytes) else b""


class Budget:
    left = 10_000_000


def searches(expression, subject, budget):
    pattern = expression.encode()
    error, at = ctypes.c_int(), ctypes.c_size_t()
    code = len(pattern) <= 10_000 and pcre2.pcre2_compile_8(
        pattern, ctypes.c_size_t(len(pattern)), UTF | INVALID_UTF | NEVER_C, ctypes.byref(error), ctypes.byref(at), None)
    if not code:
        return False
    data = ctypes.c_void_p(pcre2.pcre2_match_data_create_8(1, None))
    context = ctypes.c_void_p(pcre2.pcre2_match_context_create_8(None))
    pcre2.pcre2_set_depth_limit_8(context, 10_000)
    pcre2.pcre2_set_heap_limit_8(context, 8 * 1024)
    result = MATCH_LIMIT
    for steps in (1_000, 100_000):
        if result == MATCH_LIMIT and budget.left >= steps:
            budget.left -= steps
            pcre2.pcre2_set_match_limit_8(context, steps)
            result = pcre2.pcre2_match_8(ctypes.c_void_p(code), subject, ctypes.c_size_t(len(subject)),
                                         ctypes.c_size_t(0), 0, data, context)
        else:
            break
    pcre2.pcre2_code_free_8(ctypes.c_void_p(code))
    pcre2.pcre2_match_data_free_8(data)
    pcre2.pcre2_match_context_free_8(context)
    return result >= 0


def applying(entries, application):
    facts = {key: os.fsencode(value) for key, value in application.items()}
    exact = {"Identifier": facts.get("identifier", b""), "Path": facts.get("path", b""),
             "Creator": facts.get("creator", b"").replace(b"????", b"")}
    for row, entry in enumerate(entries):
        kind = entry.get("Type")
        if isinstance(kind, str) and exact.get(kind) and exact[kind] == kept(entry.get("Data")):
            return row, kind.lower()
    budget = Budget()
    held_against = dict(enumerate(("name", "identifier", "path")))
    for row, entry in enumerate(entries):
        if entry.get("Type") == "RegEx" and isinstance(entry.get("Data"), str) and entry["Data"]:
            subject = facts.get(held_against.get(number(entry.get("RegEx Type"))))
            if subject and searches(entry["Data"], subject, budget):
                return row, "expression"
    for row, entry in enumerate(entries):
        if entry.get("Type") == "Global":
            return row, "global"
    return -1, "default"


def options_of(settings):
    options = {}
    for key, missing in SHOWN_WHEN_MISSING.items():
        value = settings.get(key, missing)
        if key == "FontSize":
            options[key] = min(max(number(value), 0), 255)
        elif key == "DupeHandling":
            options[key] = number(value) if 0 <= number(value) <= 2 else 0
        else:
            options[key] = int(not isinstance(value, str) and is_true(value))
    return options


def resolve(file, application):
    """As the examples give it; the file need not be there."""
    try:
        with open(file, "rb") as stored:
            domain = plistlib.load(stored)
    except (OSError, ValueError, plistlib.InvalidFileException):
        domain = {}
    entries = domain.get("TheExcList")
    entries = [entry if isinstance(entry, dict) else {} for entry in entries] if isinstance(entries, list) else []
    row, reason = applying(entries, application)
    settings = NEW_GLOBAL if row < 0 else entries[row].get("Settings", {})
    options = options_of(settings if isinstance(settings, dict) else {})
    on = not is_true(domain.get("Disabled"))
    return {"row": row, "reason": reason, "on": on, "applies": on and bool(options["Enabled"]), "options": options}
