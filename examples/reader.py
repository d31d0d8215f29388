#!/usr/bin/env python3
"""Tells which settings apply to an application: reader.py IDENTIFIER [NAME [PATH]]"""
import ctypes
import os
import sys

library = ctypes.CDLL("libtypeslate.so.1")


class Application(ctypes.Structure):
    _fields_ = [(name, ctypes.c_char_p) for name in ("identifier", "creator", "path", "name")]


for name, result, arguments in [
    ("typeslate_open", ctypes.c_void_p, [ctypes.POINTER(ctypes.c_int)]),
    ("typeslate_close", None, [ctypes.c_void_p]),
    ("typeslate_status_text", ctypes.c_char_p, [ctypes.c_int]),
    ("typeslate_is_on", ctypes.c_int, [ctypes.c_void_p]),
    ("typeslate_resolve", ctypes.c_void_p, [ctypes.c_void_p, ctypes.POINTER(Application)]),
    ("typeslate_entry_free", None, [ctypes.c_void_p]),
    ("typeslate_entry_reason", ctypes.c_int, [ctypes.c_void_p]),
    ("typeslate_entry_row", ctypes.c_int, [ctypes.c_void_p]),
    ("typeslate_entry_applies", ctypes.c_int, [ctypes.c_void_p]),
    ("typeslate_entry_option", ctypes.c_int, [ctypes.c_void_p, ctypes.c_int]),
    ("typeslate_option_key", ctypes.c_char_p, [ctypes.c_int]),
]:
    function = getattr(library, name)
    function.restype, function.argtypes = result, arguments

REASONS = ["default", "global", "identifier", "creator", "path", "expression"]


class Settings:
    """The current user's settings, as they are stored at this moment."""

    def __init__(self):
        status = ctypes.c_int()
        self.handle = library.typeslate_open(ctypes.byref(status))
        self.problem = library.typeslate_status_text(status).decode() if status.value else None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        library.typeslate_close(self.handle)

    def resolve(self, **facts):
        """What applies to an application, of which identifier, creator, path and name may be known."""
        known = Application(**{key: os.fsencode(value) for key, value in facts.items()})
        entry = library.typeslate_resolve(self.handle, ctypes.byref(known))
        try:
            return {
                "row": library.typeslate_entry_row(entry),
                "reason": REASONS[library.typeslate_entry_reason(entry)],
                "on": bool(library.typeslate_is_on(self.handle)),
                "applies": bool(library.typeslate_entry_applies(entry)),
                "options": {library.typeslate_option_key(option).decode(): library.typeslate_entry_option(entry, option)
                            for option in range(16)},
            }
        finally:
            library.typeslate_entry_free(entry)


if __name__ == "__main__":
    if not 2 <= len(sys.argv) <= 4:
        sys.exit("usage: reader.py IDENTIFIER [NAME [PATH]]")
    with Settings() as settings:
        if settings.problem:
            print(f"reader.py: {settings.problem}", file=sys.stderr)
        print(settings.resolve(**dict(zip(("identifier", "name", "path"), sys.argv[1:]))))
