"""The main job: select an entry, tick an option, see it on the disk, announced, and shown again."""
import copy
import datetime
import json

import windowtest

GLOBAL = {"Name": "Global", "Type": "Global", "Settings": {"Enabled": True, "ShowSets": True}}
APPLICATION = {"Name": "Quill", "Type": "Path", "Data": "/quill", "Path": "/quill",
               "Settings": {"Enabled": True, "ShowSets": False, "Kept": 7}}


def notified(line):
    return json.loads(line).get("object") == "PrefsChanged"


def broadcast(line):
    return json.loads(line).get("message") == "PrefChanged"


def time_of(line):
    return datetime.datetime.fromisoformat(json.loads(line)["time"].rstrip("Z"))


def test(session):
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "TheExcList", json.dumps([GLOBAL, APPLICATION]))
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "Added Default Exclusions", "true")
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "Default Exclusions Version", "1000")
    changes = session.watch()

    host = session.open_pane()
    session.key("Down")  # from the Global entry to the application
    session.key("alt+o")  # "Show font sets"
    changes.until(notified)
    expected = [GLOBAL, copy.deepcopy(APPLICATION)]
    expected[1]["Settings"]["ShowSets"] = True
    assert session.entries() == expected, session.entries()
    assert list(session.entries()[1]["Settings"]) == ["Enabled", "ShowSets", "Kept"], "the stored order changed"

    # A burst: each change is announced at once, and a broadcast comes only when two seconds have passed quietly.
    burst = []
    for _ in range(3):
        session.key("alt+o")
        burst += changes.until(notified)
    burst += changes.until(broadcast)
    for before, line in zip(burst, burst[1:]):
        if broadcast(line):
            assert notified(before) and time_of(line) - time_of(before) >= datetime.timedelta(seconds=1.99), burst
    expected[1]["Settings"]["ShowSets"] = False
    assert session.entries() == expected, session.entries()
    session.close(host)

    # Opened again, the box shows what is stored: ticking it turns it on.
    host = session.open_pane()
    session.key("Down")
    session.key("alt+o")
    changes.until(notified)
    expected[1]["Settings"]["ShowSets"] = True
    assert session.entries() == expected, session.entries()
    session.close(host)


windowtest.run(test)
