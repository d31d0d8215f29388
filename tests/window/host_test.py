"""The host window among the others: it remembers its place, a second start raises it, and a killed one is no obstacle."""
import os
import subprocess

import windowtest

NAME, APPLICATION = "com.tarnwick.typeslate.Settings", "org.freedesktop.Application"
METHODS = ["Activate(in a{sv} platform_data)", "Open(in as uris, in a{sv} platform_data)",
           "ActivateAction(in s action_name, in av parameter, in a{sv} platform_data)"]


def remembers_size_and_place(session):
    geometry = lambda window: session.xdotool("getwindowgeometry", "--shell", window).split()[1:5]
    host = session.open_pane()
    session.xdotool("windowsize", "--sync", host.window, 1000, 760)
    session.xdotool("windowmove", "--sync", host.window, 90, 70)
    session.settle(host.window)
    kept = geometry(host.window)
    session.close(host)
    host = session.open_pane()
    session.settle(host.window)
    assert geometry(host.window) == kept, (geometry(host.window), kept)
    return host


def start_again(session, *arguments, **environment):
    return subprocess.run([session.build + "/bin/panehost", *arguments], env={**session.environment, **environment},
                          timeout=windowtest.LIMIT, check=True)


def second_start_raises_the_first(session, host):
    for environment in {}, {"DESKTOP_STARTUP_ID": "launcher-1-host_TIME99999999"}:
        session.xdotool("windowminimize", "--sync", host.window)
        start_again(session, **environment)
        found = session.xdotool("search", "--sync", "--onlyvisible", "--name", "^Typeslate$").split()
        assert found == [host.window], found
        while session.xdotool("getactivewindow").split() != [host.window]:
            pass

    asks_by_the_standard_interface(session, host)

    picture = session.home + "/picture.png"
    session.xdotool("windowminimize", "--sync", host.window)
    start_again(session, "--screenshot", picture)
    assert os.path.getsize(picture) > 1000
    assert session.xdotool("search", "--name", "^Typeslate$").split() == [host.window]
    assert "Iconic" in subprocess.check_output(["xprop", "-id", host.window, "WM_STATE"], text=True)


def asks_by_the_standard_interface(session, host):
    """As desktops do."""
    place = ["--session", "--dest", NAME, "--object-path", "/" + NAME.replace(".", "/")]
    shown = "".join(subprocess.check_output(["gdbus", "introspect", *place], text=True).split())
    for method in METHODS:
        assert "".join(method.split()) in shown, (method, shown)
    session.xdotool("windowminimize", "--sync", host.window)
    for method, arguments, refusal in [("Open", ["['file:///a']", "{}"], "NotSupported"),
                                       ("ActivateAction", ["'a'", "[]", "{}"], "NotSupported"),
                                       ("Activate", ["{'desktop-startup-id': <''>}"], "")]:
        call = subprocess.run(["gdbus", "call", *place, "--method", f"{APPLICATION}.{method}", *arguments],
                              capture_output=True, text=True)
        assert refusal in call.stderr and bool(refusal) == (call.returncode != 0), call
    assert session.xdotool("search", "--sync", "--onlyvisible", "--name", "^Typeslate$").split() == [host.window]


def another_home_has_a_window_of_its_own(session, host):
    """And so has a pane that is named; the first window stays as it is."""
    for arguments, environment in [([], {"TYPESLATE_ROOT": session.home}), ([session.build + "/Typeslate.prefPane"], {})]:
        process = subprocess.Popen([session.build + "/bin/panehost", *arguments],
                                   env={**session.environment, **environment})
        session.processes.append(process)
        assert session.wait_for_window("Typeslate") != host.window
        process.terminate()
        assert process.wait(windowtest.LIMIT) == 0


def announces_though_the_clock_is_set_back(session):
    """Between the click and the broadcast two seconds later, by an hour."""
    session.environment.update(LD_PRELOAD=session.build + "/tests/libset_back.so", SET_BACK=session.home + "/set-back")
    host = session.open_pane()
    del session.environment["LD_PRELOAD"]
    lines = session.watch()
    session.key("alt+o")
    lines.until(windowtest.notified)
    open(session.environment["SET_BACK"], "w").close()
    lines.until(windowtest.broadcast)
    session.close(host)


def test(session):
    announces_though_the_clock_is_set_back(session)
    host = remembers_size_and_place(session)  # with an icon of its own, which has this colour
    assert "0xff4b5a6b" in subprocess.getoutput(f"xprop -id {host.window} -f _NET_WM_ICON 32x '=$0+' _NET_WM_ICON")
    second_start_raises_the_first(session, host)
    another_home_has_a_window_of_its_own(session, host)
    host.kill()  # which is no obstacle
    host.wait()
    host = session.open_pane()
    session.key("alt+v", "alt+r")
    session.wait_for_window("Typeslate Read Me")  # which goes with the pane's
    session.close(host, "ctrl+w")


windowtest.run(test)
