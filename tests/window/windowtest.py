"""A real window on a real display, with a window manager and a session bus, for tests that drive it by keyboard.

A test script calls run(test): it starts itself again inside dbus-run-session and xvfb-run, and there calls
test(Session). Every wait is for an event; the limits only end a test that hangs.
"""
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import queue

LIMIT = 60
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SKIPPED = 77
TOOLS = ["dbus-run-session", "xvfb-run", "xdotool", "icewm", "import", "gdbus"]


def notified(line):
    return json.loads(line).get("object") == "PrefsChanged"


def broadcast(line):
    return json.loads(line).get("message") == "PrefChanged"


class Lines:
    """The lines of a program's output as they come."""

    def __init__(self, stream):
        self.queue = queue.Queue()
        self.seen = []
        threading.Thread(target=self.read, args=(stream,), daemon=True).start()

    def read(self, stream):
        for line in stream:
            self.queue.put(line.rstrip("\n"))
        self.queue.put(None)

    def next(self):
        self.seen.append(self.queue.get(timeout=LIMIT))
        return self.seen[-1]

    def until(self, wanted):
        """Every line up to the first that `wanted` accepts."""
        passed = []
        while not passed or not wanted(passed[-1]):
            passed.append(self.next())
            assert passed[-1] is not None, f"the output ended: {self.seen[-5:]}"
        return passed


class Session:
    def __init__(self, build, home):
        self.build, self.home = build, home
        self.environment = {key: value for key, value in os.environ.items()
                            if key not in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "LANGUAGE", "QT_QPA_PLATFORM")}
        self.environment.update(
            HOME=home, TYPESLATE_ROOT=home + "/root", XDG_DATA_DIRS=home + "/share", TYPESLATE_UID="1000",
            XDG_RUNTIME_DIR=home + "/run", LC_ALL="C.UTF-8", QT_FATAL_WARNINGS="0")
        os.makedirs(home + "/run", mode=0o700, exist_ok=True)
        self.processes = []
        self.ours = [""]  # a line on standard error is a complaint of ours when it names one of these

    def start(self, *command, **options):
        process = subprocess.Popen(command, env=self.environment, text=True, **options)
        self.processes.append(process)
        return process

    def ctl(self, *arguments):
        result = subprocess.run([self.build + "/bin/typeslatectl", *arguments], env=self.environment, text=True,
                                timeout=LIMIT, capture_output=True)
        assert result.returncode == 0, (arguments, result.stderr)
        return result.stdout

    def entries(self):
        return json.loads(self.ctl("defaults", "read", "com.tarnwick.typeslate", "TheExcList"))

    def keep_out_exclusions(self):
        for key, value in [("Added Default Exclusions", "true"), ("Default Exclusions Version", "1000")]:
            self.ctl("defaults", "write", "com.tarnwick.typeslate", key, value)

    def watch(self):
        process = self.start(self.build + "/bin/typeslatectl", "watch", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        Lines(process.stderr).until(lambda line: "watching" in line)
        return Lines(process.stdout)

    def open(self, *command, title, end="$"):
        """A program's process with its window, and with the lines that it writes to standard error as `messages`."""
        process = self.start(*command, stderr=subprocess.PIPE)
        process.messages = Lines(process.stderr)
        process.window = self.wait_for_window(title, end)
        return process

    def open_pane(self, *arguments):
        return self.open(self.build + "/bin/panehost", *arguments, title="Typeslate")

    def start_window_manager(self):
        signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGUSR1})
        signal.signal(signal.SIGUSR2, signal.SIG_IGN)  # newer ones send it, too
        self.start("icewm", "--notify", stderr=subprocess.DEVNULL)
        assert signal.sigtimedwait({signal.SIGUSR1}, LIMIT), "the window manager did not start"

    def xdotool(self, *arguments):
        return subprocess.check_output(["xdotool", *map(str, arguments)], text=True, timeout=LIMIT)

    def wait_for_window(self, name, end="$"):
        latest = time.monotonic() + LIMIT
        while True:
            try:
                found = self.xdotool("search", "--sync", "--onlyvisible", "--name", f"^{name}{end}").split()[-1]
                break
            except subprocess.CalledProcessError:  # a window went while the search came to it
                assert time.monotonic() < latest, name
        self.focus(found)
        return found

    def focus(self, window):
        self.xdotool("windowfocus", "--sync", window)

    def picture(self, window, part="100%x100%+0+0"):
        return subprocess.check_output(["import", "-window", window, "-crop", part, "-depth", "8", "rgb:-"])

    def wait_for_picture(self, window, wanted, part="100%x100%+0+0"):
        latest = time.monotonic() + LIMIT
        while not wanted(seen := self.picture(window, part)):
            assert time.monotonic() < latest, "the picture did not come"
        return seen

    def settle(self, window, part="100%x100%+0+0"):
        """Until the window's picture stays the same."""
        pictures = [b"", b" "]
        while pictures[-1] != pictures[-2]:
            pictures.append(self.picture(window, part))
        return pictures[-1]

    def key(self, *keys):
        self.xdotool("key", "--clearmodifiers", *keys)

    def type(self, text):
        self.xdotool("type", "--clearmodifiers", text)

    def close(self, process, key="alt+F4"):
        """Closes the window as its owner would and waits for the program to end."""
        self.focus(process.window)
        self.key(key)
        self.wait_for_end(process)

    def wait_for_end(self, process):
        assert process.wait(timeout=LIMIT) == 0, process.messages.seen[-10:]
        complaints = [line for line in iter(process.messages.next, None) if line and any(n in line for n in self.ours)]
        assert not complaints, complaints

    def end(self):
        for process in reversed(self.processes):
            process.kill()  # nothing happens to one that has ended
            process.wait(timeout=LIMIT)


def inside(test, build):
    with tempfile.TemporaryDirectory(prefix="typeslate-window-") as home:
        session = Session(build, home)
        try:
            session.start_window_manager()
            test(session)
        except BaseException:
            os.makedirs(build + "/failures", exist_ok=True)
            subprocess.run(["import", "-window", "root", f"{build}/failures/{os.path.basename(sys.argv[0])}.png"])
            raise
        finally:
            session.end()


def run(test, tools=()):
    build = os.path.abspath(sys.argv[1])
    missing = [tool for tool in [*TOOLS, *tools] if not shutil.which(tool)]
    if missing:
        print("cannot run here without", ", ".join(missing))
        sys.exit(SKIPPED)
    if "--inside" in sys.argv:
        return inside(test, build)
    command = ["dbus-run-session", "--", "xvfb-run", "-a", "-s", "-screen 0 1280x1024x24", sys.executable,
               os.path.abspath(sys.argv[0]), build, *sys.argv[2:], "--inside"]
    sys.exit(subprocess.run(command).returncode)
