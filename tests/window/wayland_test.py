"""The window under Wayland: the picture that it has under X, the keyboard, the chooser, and a second start.

The compositor's screen is a window under X, by which keys reach it. It has no xdg-activation, so that coming forward by
a token is not seen here, and dropping files is seen by test_qt_toolkit only.
"""
import os
import subprocess

import windowtest

SIZE, TOP = (1000, 740), 150
POINTER_ROOT = 1  # of X: no window in particular
PART = f"{SIZE[0]}x{SIZE[1] - TOP}+0+{TOP}"  # in the upper part the compositor draws a pointer
SETTINGS = """[shell]
panel-position=none
locking=false
animation=none
startup-animation=none
close-animation=none
"""


def picture_under_x(session):
    host = session.open_pane()
    session.xdotool("windowsize", "--sync", host.window, *SIZE)
    session.settle(host.window)
    shown = session.picture(host.window, PART)
    session.close(host)
    return shown


def start_compositor(session):
    settings = session.home + "/weston.ini"
    with open(settings, "w", encoding="utf-8") as file:
        file.write(SETTINGS)
    session.environment.update(WAYLAND_DISPLAY="typeslate", QT_QPA_PLATFORM="wayland")
    session.start("weston", "--backend=x11-backend.so", "--use-pixman", f"--width={SIZE[0]}", f"--height={SIZE[1]}",
                  "--idle-time=0", "--config=" + settings, "--socket=typeslate", "--log=" + session.home + "/weston.log")
    screen = session.xdotool("search", "--sync", "--onlyvisible", "--class", "Weston").split()[-1]
    session.focus(screen)
    session.settle(screen)
    return screen


def fill_screen(session, screen, wanted):
    """Without a frame. The compositor misses at times that it has the keyboard: then it gets it once more."""
    framed = session.settle(screen, PART)

    def is_filled(seen):
        if seen == framed:
            session.xdotool("windowfocus", POINTER_ROOT)
            session.focus(screen)
            session.key("super+Tab", "super+shift+f")
            session.settle(screen, PART)
        return seen == wanted

    session.wait_for_picture(screen, is_filled, PART)


def test(session):
    os.makedirs(session.home + "/share/applications")
    with open(session.home + "/share/applications/org.test.Alpha.desktop", "w", encoding="utf-8") as file:
        file.write("[Desktop Entry]\nType=Application\nName=Alpha\nExec=/bin/true\n")
    session.keep_out_exclusions()
    session.xdotool("mousemove", 1279, 1023)
    under_x = picture_under_x(session)

    screen = start_compositor(session)
    empty = session.picture(screen, PART)
    host = session.start(session.build + "/bin/panehost", stderr=subprocess.PIPE)
    host.messages = windowtest.Lines(host.stderr)
    session.wait_for_picture(screen, lambda seen: seen != empty, PART)
    fill_screen(session, screen, under_x)

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
    session.key("ctrl+w")
    session.wait_for_end(host)


windowtest.run(test, ["weston"])
