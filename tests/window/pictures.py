"""Makes the pictures of the documentation from a real window: pictures.py BUILD FOLDER"""
import subprocess
import sys

import windowtest

FOLDER = sys.argv[2]


def test(session):
    subprocess.run([windowtest.ROOT + "/scripts/make-demo-home", session.home, session.build], check=True)
    session.environment["XDG_DATA_DIRS"] = "/usr/share"
    session.environment["QT_STYLE_OVERRIDE"] = "Fusion"

    def picture(name, window):
        session.settle(window)
        subprocess.run(["import", "-window", window, f"{FOLDER}/{name}.png"], check=True)

    # Its text never rests unless the reader takes it in hand; Home does so at the top.
    for name, look in [("about", ()), ("about-dark", ("--dark",))]:
        host = session.open_pane("--tab", "Advanced", *look)
        session.key("alt+a")
        about = session.wait_for_window("About Typeslate")
        session.key("Home")
        picture(name, about)
        session.key("Escape")
        session.close(host)

    host = session.open_pane()
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
