"""Makes the pictures of the documentation from a real window: pictures.py BUILD FOLDER"""
import subprocess
import sys

import windowtest

FOLDER = sys.argv[2]


def test(session):
    subprocess.run([windowtest.ROOT + "/scripts/make-demo-home", session.home, session.build], check=True)
    session.environment["XDG_DATA_DIRS"] = "/usr/share"
    session.environment["QT_STYLE_OVERRIDE"] = "Fusion"
    host = session.open_pane()

    def picture(name, window):
        session.settle(window)
        subprocess.run(["import", "-window", window, f"{FOLDER}/{name}.png"], check=True)

    session.key("Down")
    picture("window", host.window)
    session.key("alt+a")
    chooser = session.wait_for_window("Choose an Application")
    picture("chooser", chooser)
    session.key("Escape")
    session.focus(host.window)
    session.key("End")
    session.double_click(host.window, 150, 345)
    sheet = session.wait_for_window("Regular Expression")
    picture("expression", sheet)


windowtest.run(test)
