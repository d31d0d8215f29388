"""Each of the sixteen options, ticked in the window, changes the preview there and the menu of another program.

Both are seen as pictures, as faces, sizes and icons are nothing else; what the lines say preview_window_test sees.
"""
import json
import operator
import os
import shutil
import subprocess
import time

import windowtest

IDENTIFIER = "org.example.FontPicker"
FONTS = "/usr/share/fonts/truetype/dejavu/"
MANAGERS = ["com.insidersoftware.fontagentpro.fontmanager", "com.linotype.FontExplorerX", "com.extensis.SuitcaseFusion"]
SIZE, AWAY, TREE = (760, 960), (1279, 1023), "430x300+20+520"

# The keys that tick it in the window, and the option. What is ticked stays so: some need others to show something.
CHANGES = [
    ("alt+g", "Enabled"),
    ("alt+o", "ShowSets"),
    ("alt+b", "HierarchicalMenu"),
    ("alt+l", "AllFontsGroup"),
    ("alt+k", "CheckMenuItems"),
    ("alt+d Down", "DupeHandling"),
    ("Down", "DupeHandling"),
    ("alt+i", "ShowIcons"),
]
CHANGES_NOTHING = [
    ("alt+p", "ModifyFontPanel"),  # is about another place; a line below the preview says so
    ("alt+n", "IncludeFAPSets"),  # how this product and the next two store their sets is not known
    ("alt+x", "IncludeFEXSets"),
    ("alt+m", "IncludeSuitcaseSets"),
]
CHANGES_IN_SETS = [
    ("alt+c", "ShowFontInFace"),
    ("alt+h", "GenerateInactivePreview"),
    ("alt+z", "ChangeSize"),
    ("Tab Down", "FontSize"),
    ("alt+s", "ScriptSort"),
]


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def prepare(session):
    """A few fonts, one of them twice, one of them not active, a set, and the three products, so that nothing is grey."""
    fonts = session.home + "/fonts/"
    os.makedirs(fonts)
    shutil.copy(os.path.dirname(__file__) + "/hebrew.bdf", fonts)
    for name in "DejaVuSans", "DejaVuSans-Bold", "DejaVuSansMono", "DejaVuSerif":
        shutil.copy(f"{FONTS}{name}.ttf", fonts)
    shutil.copy(f"{FONTS}DejaVuSansMono.ttf", fonts + "Mono.ttf")
    with open(f"{FONTS}DejaVuSerif-Bold.ttf", "rb") as font, open(fonts + "inactive.ttf", "wb") as inactive:
        own = font.read()
        for encoding in "ascii", "utf-16-be":  # a font's names are in both
            own = own.replace("Serif".encode(encoding), "Aerif".encode(encoding))
        inactive.write(own)
    write(session.home + "/fonts.conf",
          f"<fontconfig><dir>{fonts}</dir><cachedir>{session.home}/cache</cachedir><selectfont><rejectfont>"
          f"<glob>{fonts}inactive.ttf</glob></rejectfont></selectfont></fontconfig>")
    write(session.home + "/.config/font-manager/Collections.json",
          '[{"name": "My Set", "families": ["DejaVu Serif", "DejaVu Aerif"]}]')
    for name in MANAGERS:
        write(f"{session.home}/share/applications/{name}.desktop",
              f"[Desktop Entry]\nType=Application\nName={name}\nExec=/bin/true\n")
    session.environment["FONTCONFIG_FILE"] = session.home + "/fonts.conf"
    session.keep_out_exclusions()
    options = {option: 0 for _, option in CHANGES + CHANGES_NOTHING + CHANGES_IN_SETS} | {"FontSize": 30}
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "TheExcList", json.dumps(
        [{"Name": "Global", "Type": "Global", "Settings": {}},
         {"Name": "Picker", "Type": "Identifier", "Data": IDENTIFIER, "Settings": options}]))


class Windows:
    """The pane, with the picker's entry selected and the preview open, and the picker, with a font chosen."""

    def __init__(self, session):
        self.session, self.levels = session, 1
        session.xdotool("mousemove", *AWAY)
        self.host = session.open_pane()
        session.xdotool("windowsize", "--sync", self.host.window, *SIZE)
        session.key("Down", "F9")
        session.settle(self.host.window)
        self.picker = session.open(session.build + "/bin/fontpicker", title="Font picker")
        for window, left in [(self.host.window, 0), (self.picker.window, 840)]:
            session.xdotool("windowmove", "--sync", window, left, 0)
        self.open_menu(windowtest.LIMIT)
        session.key("Down", "Return")
        self.press("", lambda *_: True, (None, None))

    def click(self, window, left, top):
        self.session.xdotool("mousemove", "--window", window, left, top, "click", 1, "mousemove", *AWAY)

    def popups(self, count, latest):
        while True:
            found = self.session.xdotool("search", "--onlyvisible", "--class", "fontpicker").split()
            if len(found) > count or time.monotonic() > latest:
                return [window for window in found if window != self.picker.window]

    def open_menu(self, patience):
        """The windows of the menu, and of its first submenu where there are to be two."""
        latest = time.monotonic() + patience
        self.click(self.picker.window, 200, 20)
        popups = self.popups(1, latest)
        if self.levels == 1:
            return popups
        self.session.key("Down", "Right")
        return self.popups(2, latest)

    def menu(self, wanted):
        """Pictures of the picker's menu. It goes when another one comes, and is then to be opened again."""
        start = time.monotonic()
        while (spent := time.monotonic() - start) < windowtest.LIMIT:
            try:
                shown = [self.session.settle(window) for window in self.open_menu(max(1, spent))]
            except subprocess.CalledProcessError:
                shown = []
            self.session.key("Escape", "Escape")
            if len(shown) == self.levels and wanted(shown):
                return shown
        raise AssertionError("the menu did not come")

    def press(self, keys, compare, others):
        """Keys in the pane, until the preview and the menu compare with others so."""
        self.session.focus(self.host.window)
        if keys:
            self.session.key(*keys.split())
        self.session.wait_for_picture(self.host.window, lambda seen: compare(seen, others[0]), TREE)
        self.seen = self.session.settle(self.host.window, TREE), self.menu(lambda seen: compare(seen, others[1]))


def test(session):
    prepare(session)
    windows = Windows(session)
    for keys, _ in CHANGES:
        before = windows.seen
        windows.press(keys, operator.ne, before)
    # Without the last of them again all is as it was before.
    last = CHANGES[-1][0]
    windows.press(" ".join([*(keys for keys, _ in CHANGES_NOTHING), last]), operator.eq, before)

    windows.click(windows.host.window, 200, 700)
    windows.levels = 2
    windows.press("Home Right", lambda *_: True, before)
    for keys in last, *(keys for keys, _ in CHANGES_IN_SETS):
        windows.press(keys, operator.ne, windows.seen)
    settings = session.entries()[1]["Settings"]
    assert [*map(settings.pop, ["DupeHandling", "FontSize"])] == [2, 29] and all(settings.values()), settings
    session.close(windows.host)


windowtest.run(test)
