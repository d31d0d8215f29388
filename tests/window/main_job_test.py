"""The main job: select an entry, tick an option, see it on the disk, announced, and shown again."""
import copy
import json

import windowtest

GLOBAL = {"Name": "Global", "Type": "Global", "Settings": {"Enabled": True, "ShowSets": True}}
APPLICATION = {"Name": "Quill", "Type": "Path", "Data": "/quill", "Path": "/quill",
               "Settings": {"Enabled": True, "ShowSets": False, "Kept": 7}}


def notified(line):
    return json.loads(line).get("object") == "PrefsChanged"


def broadcast(line):
    return json.loads(line).get("message") == "PrefChanged"


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

    # A burst: each change is announced at once, all of them by one broadcast afterwards.
    for _ in range(3):
        session.key("alt+o")
    burst = changes.until(broadcast)
    assert sum(map(notified, burst)) == 3, burst
    times = [json.loads(line)["time"] for line in burst]
    assert times == sorted(times)
    seconds = [float(time[17:-1]) + 60 * int(time[14:16]) for time in times[-2:]]
    assert (seconds[1] - seconds[0]) % 3600 >= 1.99, times
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
