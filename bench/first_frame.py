"""Times windows under X11: from the start of a process until its first window is mapped, and until it is first painted.

Mapped: the server says that a window without override-redirect is there. Painted: the server says that at least a
hundred pixels square of the screen have changed after that; toolkits that let the server fill a new window with a colour
have that counted as paint. Wants an X server that shows nothing else, and libX11, libXdamage.
"""
import ctypes
import os
import plistlib
import select
import signal
import statistics
import subprocess
import sys
import time

SUBSTRUCTURE_NOTIFY, CREATE_NOTIFY, MAP_NOTIFY, CONFIGURE_NOTIFY = 1 << 19, 16, 19, 22
RAW_RECTANGLES, DAMAGE_NOTIFY = 0, 0
SMALLEST = 100  # pixels each way of what counts as a window, and as paint
PATIENCE = 10  # seconds

IDENTIFIER = ctypes.c_ulong
_head = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int), ("display", ctypes.c_void_p)]


class _WindowEvent(ctypes.Structure):  # of creation and of another size; that of mapping has other fields after window
    _fields_ = _head + [("parent", IDENTIFIER), ("window", IDENTIFIER), ("x", ctypes.c_int), ("y", ctypes.c_int),
                        ("width", ctypes.c_int), ("height", ctypes.c_int)]


class _MapEvent(ctypes.Structure):
    _fields_ = _head + [("parent", IDENTIFIER), ("window", IDENTIFIER), ("override_redirect", ctypes.c_int)]


class _DamageEvent(ctypes.Structure):
    _fields_ = _head + [("drawable", IDENTIFIER), ("damage", IDENTIFIER), ("level", ctypes.c_int),
                        ("more", ctypes.c_int), ("timestamp", ctypes.c_ulong), ("x", ctypes.c_short),
                        ("y", ctypes.c_short), ("width", ctypes.c_ushort), ("height", ctypes.c_ushort)]


class _Event(ctypes.Union):
    _fields_ = [("type", ctypes.c_int), ("window", _WindowEvent), ("map", _MapEvent), ("damage", _DamageEvent),
                ("room", ctypes.c_long * 24)]


def entry(number):
    name = f"org.example.Application{number}"
    return {"Name": f"Application {number}", "Type": "Identifier", "Data": name, "Identifier": name,
            "Path": f"/usr/share/applications/{name}.desktop", "Settings": {"Enabled": True, "ShowSets": True}}


def environment_with(count, build, home):
    """Of a user with a new home and so many entries."""
    os.mkdir(home)
    environment = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
    environment.update(HOME=home, TYPESLATE_ROOT=home + "/root", TYPESLATE_UID="1000", XDG_RUNTIME_DIR=home)
    entries = [{"Name": "Global", "Type": "Global", "Settings": {"Enabled": True}}]
    entries += [entry(i) for i in range(1, count)]
    subprocess.run([build + "/bin/typeslatectl", "defaults", "import", "com.tarnwick.typeslate", "-"], check=True,
                   input=plistlib.dumps({"TheExcList": entries, "Added Default Exclusions": True,
                                         "Default Exclusions Version": 1000}), env=environment)
    return environment


def _isLarge(area):
    return area.width >= SMALLEST and area.height >= SMALLEST


class Screen:
    def __init__(self):
        self.x = x = ctypes.CDLL("libX11.so.6")
        damage = ctypes.CDLL("libXdamage.so.1")
        x.XOpenDisplay.restype = ctypes.c_void_p
        x.XDefaultRootWindow.restype = IDENTIFIER
        self.display = ctypes.c_void_p(x.XOpenDisplay(None))
        root = IDENTIFIER(x.XDefaultRootWindow(self.display))
        x.XSelectInput(self.display, root, ctypes.c_long(SUBSTRUCTURE_NOTIFY))
        self.connection = x.XConnectionNumber(self.display)
        first, errors = ctypes.c_int(), ctypes.c_int()
        if not damage.XDamageQueryExtension(self.display, ctypes.byref(first), ctypes.byref(errors)):
            raise SystemExit("the X server cannot tell what is painted")
        self.damageNotify = first.value + DAMAGE_NOTIFY
        damage.XDamageCreate.restype = IDENTIFIER
        damage.XDamageCreate(self.display, root, RAW_RECTANGLES)

    def times(self, command, environment):
        """Milliseconds until mapped and until painted. The process, which must not end by itself, is killed then."""
        self.x.XSync(self.display, 1)  # forget the events of the last window
        start = time.perf_counter()
        process = subprocess.Popen(command, env=environment, start_new_session=True, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        try:
            return self._wait(start) or sys.exit(f"{command}: no window")
        finally:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()

    def _wait(self, start):
        event, large, mapped = _Event(), set(), None
        while True:
            if not self.x.XPending(self.display) and not select.select([self.connection], [], [], PATIENCE)[0]:
                return None
            self.x.XNextEvent(self.display, ctypes.byref(event))
            now = (time.perf_counter() - start) * 1e3
            if event.type in (CREATE_NOTIFY, CONFIGURE_NOTIFY):
                (large.add if _isLarge(event.window) else large.discard)(event.window.window)
            elif event.type == MAP_NOTIFY and event.map.window in large and not event.map.override_redirect:
                mapped = mapped or now
            elif event.type == self.damageNotify and mapped and _isLarge(event.damage):
                return mapped, now


def medians(commands, runs):
    """Of {name: (command, environment)} the medians {name: (mapped, painted)} of runs that take turns, after two that
    do not count."""
    screen = Screen()
    times = {name: [] for name in commands}
    for run in range(runs + 2):
        for name, (command, environment) in commands.items():
            times[name].append(screen.times(command, environment))
    return {name: tuple(map(statistics.median, zip(*all[2:]))) for name, all in times.items()}


def print_table(medians, peers, runs):
    """Beside the figures how many times as long each takes as the named peers."""
    print(f"{'':24} {'ms until mapped, painted':>26}" + "".join(f"{'times ' + peer:>26}" for peer in peers))
    for name, times in medians.items():
        print(f"{name[-24:]:24}{times[0]:18.1f}{times[1]:9.1f}" +
              "".join(f"{times[0] / medians[peer][0]:19.2f}{times[1] / medians[peer][1]:7.2f}" for peer in peers))
    print(f"(medians of {runs} runs each, which take turns)")
