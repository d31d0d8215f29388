"""Entries in the real window: the chooser, a drop, an expression, removal, and leaving while a sheet is open."""
import json
import os
import signal

import windowtest


def notified(line):
    return json.loads(line).get("object") == "PrefsChanged"


def install(session, identifier, name):
    folder = session.home + "/share/applications"
    os.makedirs(folder, exist_ok=True)
    with open(f"{folder}/{identifier}.desktop", "w", encoding="utf-8") as file:
        file.write(f"[Desktop Entry]\nType=Application\nName={name}\nExec=/bin/true\n")
    return f"{folder}/{identifier}.desktop"


def names(session):
    return [entry["Name"] for entry in session.entries()]


def test(session):
    install(session, "org.test.Alpha", "Alpha")
    install(session, "org.test.Beta", "Beta")
    dropped = install(session, "org.test.ä ö%", "Übung")
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "Added Default Exclusions", "true")
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "Default Exclusions Version", "1000")
    changes = session.watch()
    host = session.open_pane()

    # The chooser, by keyboard: it opens in its search field.
    session.key("alt+a")
    session.wait_for_window("Choose an Application")
    session.type("alp")
    session.key("Return")
    changes.until(notified)
    assert names(session) == ["Global", "Alpha"], names(session)
    added = session.entries()[1]
    assert (added["Type"], added["Data"]) == ("Identifier", "org.test.Alpha"), added
    assert added["Settings"] == session.entries()[0]["Settings"]

    # An expression.
    session.focus(host.window)
    session.key("alt+e")
    session.wait_for_window("Regular Expression")
    session.type("Wine")  # over the proposed name, which is selected
    session.key("Tab", "Tab")
    session.type("^wine")
    session.key("Return")
    changes.until(notified)
    assert session.entries()[2]["Data"] == "^wine", session.entries()[2]
    assert names(session) == ["Global", "Alpha", "Wine"], names(session)

    # A drop from another window.
    source = session.start(session.build + "/tests/dragsource", dropped)
    session.drag(session.wait_for_window("dragsource"), host.window)
    changes.until(notified)
    assert names(session)[-1] == "Übung", names(session)
    source.terminate()

    # Removal of the entry that the drop has selected.
    session.focus(host.window)
    session.key("alt+r")
    changes.until(notified)
    assert names(session) == ["Global", "Alpha", "Wine"], names(session)

    # Asked to leave while the chooser is open, the pane waits for it to end.
    session.key("alt+a")
    session.wait_for_window("Choose an Application")
    host.send_signal(signal.SIGTERM)
    session.key("Escape")
    changes.until(notified)  # a cancelled chooser announces the unchanged list
    assert host.wait(timeout=windowtest.LIMIT) == 0
    assert names(session) == ["Global", "Alpha", "Wine"], names(session)


windowtest.run(test)
