"""The pane in kcmshell and in System Settings: an option by keyboard, on the disk and announced; and leaving."""
import json

import settingsapps
from settingsapps import MODULE, SHELL, TITLE, start, turn_to, windowtest
from windowtest import broadcast, notified

GLOBAL = {"Name": "Global", "Type": "Global", "Settings": {"Enabled": True, "HierarchicalMenu": False, "Kept": 7}}
OTHER, OTHER_TITLE = "kcm_filetypes", "File Associations"


def toggle(session, changes):
    """Ticks "Collect families in submenus" and sees it on the disk, announced, and nothing else changed."""
    before = session.entries()
    session.key("alt+b")
    changes.until(notified)
    settings = before[0]["Settings"]
    settings["HierarchicalMenu"] = not settings["HierarchicalMenu"]
    assert session.entries() == before, session.entries()
    changes.until(broadcast)


def test(session):
    settingsapps.prepare(session)
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "TheExcList", json.dumps([GLOBAL]))
    session.keep_out_exclusions()
    changes = session.watch()

    shell = start(session, SHELL, MODULE, TITLE, "-reverse")
    toggle(session, changes)
    session.key("F9")  # the preview, which is being made when the window closes
    session.close(shell)
    assert json.loads(session.ctl("defaults", "read", "com.tarnwick.typeslate.Settings", "Show Preview"))
    session.close(start(session, SHELL))

    # System Settings goes elsewhere and comes back: the page is made anew, and works as before.
    application = start(session, "systemsettings", OTHER, OTHER_TITLE)
    for module, title in [(MODULE, TITLE), (OTHER, OTHER_TITLE), (MODULE, TITLE)]:
        turn_to(session, application, module, title)
        if module == MODULE:
            toggle(session, changes)
    session.close(application)

    # Without a bundle there is a page all the same.
    session.environment["TYPESLATE_PREFPANE"] = session.home + "/missing"
    session.close(start(session, SHELL))


windowtest.run(test)
