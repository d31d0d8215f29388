"""The window under Wayland: the picture that it has under X, the keyboard, the chooser, and a second start.

The compositor's screen is a window under X, by which keys reach it; the window fills it. It has no xdg-activation, so that
coming forward by a token is not seen here, and dropping files is seen by test_qt_toolkit only.
"""
import os
import subprocess

import windowtest

SIZE, TOP = (1000, 740), 150
PART = f"{SIZE[0]}x{SIZE[1] - TOP}+0+{TOP}"  # in the upper part the compositor draws a pointer


def picture_under_x(session):
    host = session.open_pane()
    session.xdotool("windowsize", "--sync", host.window, *SIZE)
    session.settle(host.window)
    shown = session.picture(host.window, PART)
    session.close(host)
    return shown


def start_compositor(session):
    session.environment.update(WAYLAND_DISPLAY="typeslate", QT_QPA_PLATFORM="wayland")
    session.start("weston", "--backend=x11-backend.so", "--shell=kiosk-shell.so", "--use-pixman", "--no-config",
                  f"--width={SIZE[0]}", f"--height={SIZE[1]}", "--idle-time=0", "--socket=typeslate",
                  "--log=" + session.home + "/weston.log")
    screen = session.xdotool("search", "--sync", "--onlyvisible", "--class", "Weston").split()[-1]
    session.focus(screen)
    return screen


def test(session):
    os.makedirs(session.home + "/share/applications")
    with open(session.home + "/share/applications/org.test.Alpha.desktop", "w", encoding="utf-8") as file:
        file.write("[Desktop Entry]\nType=Application\nName=Alpha\nExec=/bin/true\n")
    session.keep_out_exclusions()
    session.xdotool("mousemove", 1279, 1023)
    under_x = picture_under_x(session)

    screen = start_compositor(session)
    host = session.start(session.build + "/bin/panehost", stderr=subprocess.PIPE)
    host.messages = windowtest.Lines(host.stderr)
    session.wait_for_picture(screen, lambda seen: seen == under_x, PART)

    changes = session.watch()
    session.key("alt+a")
    session.wait_for_picture(screen, lambda seen: seen != under_x, PART)
    session.settle(screen)
    session.type("alp")
    session.key("Return")
    changes.until(windowtest.notified)
    assert session.entries()[-1]["Data"] == "org.test.Alpha", session.entries()

    before = session.picture(screen, PART)
    assert session.start(session.build + "/bin/panehost", "--tab", "Advanced").wait(windowtest.LIMIT) == 0
    session.wait_for_picture(screen, lambda seen: seen != before, PART)
    # The compositor gives the keyboard to the chooser, and back to nobody.
    session.xdotool("mousemove", "--window", screen, SIZE[0] // 2, SIZE[1] // 2, "click", 1)
    session.key("ctrl+w")
    session.wait_for_end(host)


windowtest.run(test, ["weston"])
