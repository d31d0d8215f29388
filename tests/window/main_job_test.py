"""The main job: add an entry, tick an option, see it on the disk, announced, and shown again; remove it; leave."""
import json
import os
import signal

import windowtest
from windowtest import broadcast, notified

GLOBAL = {"Name": "Global", "Type": "Global", "Settings": {"Enabled": True, "ShowSets": True}}
APPLICATION = {"Name": "Quill", "Type": "Path", "Data": "/quill", "Path": "/quill",
               "Settings": {"Enabled": True, "ShowSets": False, "Kept": 7}}


def ticks_an_option(session, changes):
    session.key("Down")  # from the Global entry to the application
    session.key("alt+o")  # "Show font sets"
    changes.until(notified)
    ticked = APPLICATION | {"Settings": APPLICATION["Settings"] | {"ShowSets": True}}
    assert session.entries() == [GLOBAL, ticked], session.entries()
    assert list(session.entries()[1]["Settings"]) == ["Enabled", "ShowSets", "Kept"], "the stored order changed"

    changes.until(broadcast)


def adds_and_removes(session, changes, host):
    """From the chooser, which opens in its search field, and by an expression, over whose proposed name one types."""
    for keys, title, texts, data in [("alt+a", "Choose an Application", ["alp"], "org.test.Alpha"),
                                     ("alt+e", "Regular Expression", ["Wine", "^wine"], "^wine")]:
        session.focus(host.window)
        session.key(keys)
        session.wait_for_window(title)
        session.type(texts[0])
        for text in texts[1:]:
            session.key("Tab", "Tab")
            session.type(text)
        session.key("Return")
        changes.until(notified)
        assert session.entries()[-1]["Data"] == data, session.entries()
    session.focus(host.window)
    session.key("alt+r")
    changes.until(notified)
    assert [entry["Name"] for entry in session.entries()] == ["Global", "Quill", "Alpha"], session.entries()


def test(session):
    folder = session.home + "/share/applications"
    os.makedirs(folder)
    with open(folder + "/org.test.Alpha.desktop", "w", encoding="utf-8") as file:
        file.write("[Desktop Entry]\nType=Application\nName=Alpha\nExec=/bin/true\n")
    session.keep_out_exclusions()
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "TheExcList", json.dumps([GLOBAL, APPLICATION]))
    changes = session.watch()
    host = session.open_pane()
    ticks_an_option(session, changes)
    session.close(host, "ctrl+q")

    # Opened again, from right to left, the box shows what is stored: ticking it turns it off.
    host = session.open_pane("-reverse")
    session.key("Down", "alt+o")
    changes.until(notified)
    assert session.entries()[1]["Settings"]["ShowSets"] is False, session.entries()
    adds_and_removes(session, changes, host)

    # Asked to leave while a sheet is open, the host waits for it to end.
    session.key("alt+a")
    session.wait_for_window("Choose an Application")
    host.send_signal(signal.SIGTERM)
    session.key("Escape")
    changes.until(notified)  # a cancelled chooser announces the unchanged list
    session.wait_for_end(host)


windowtest.run(test)
