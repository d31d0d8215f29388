"""The About panel by keyboard: it rolls, a request to leave waits for it, and Escape answers that."""
import signal
import subprocess

import windowtest


def picture_of(window):
    return subprocess.run(["import", "-window", window, "png:-"], check=True, capture_output=True).stdout


def test(session):
    host = session.open_pane("--tab", "Advanced")
    session.key("alt+a")
    sheet = session.wait_for_window("About Typeslate")
    first = picture_of(sheet)
    while picture_of(sheet) == first:
        pass

    host.send_signal(signal.SIGTERM)
    second = picture_of(sheet)
    while picture_of(sheet) == second:
        pass
    assert host.poll() is None, "the host left while the panel was open"
    session.key("Escape")
    session.wait_for_end(host)


windowtest.run(test)
