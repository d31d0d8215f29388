"""Makes the pictures of the pane in System Settings and kcmshell: pictures.py BUILD KCMSHELL FOLDER"""
import subprocess
import sys

import settingsapps
from settingsapps import MODULE, SHELL, close, start, windowtest

FOLDER = sys.argv[3]


def test(session):
    subprocess.run([windowtest.ROOT + "/scripts/make-demo-home", session.home, session.build], check=True)
    settingsapps.prepare(session)
    session.environment.update(QT_STYLE_OVERRIDE="Fusion", XDG_CURRENT_DESKTOP="KDE")
    for name, program in [("system-settings", "systemsettings"), ("kcmshell", SHELL)]:
        application = start(session, program, MODULE)
        session.settle(application.window)
        # The title is the name of a window inside, too.
        active = subprocess.check_output(["xdotool", "getactivewindow"], text=True).strip()
        subprocess.run(["import", "-window", active, f"{FOLDER}/{name}.png"], check=True)
        close(session, application)


windowtest.run(test)
