"""The real settings applications with the plugin of the build: what the test and the pictures share."""
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "window"))
import windowtest  # noqa: E402

SHELL = sys.argv[2]
windowtest.TOOLS += [SHELL, "systemsettings"]
MODULE = "kcm_typeslate"
TITLE = "Typeslate"


def prepare(session):
    session.environment.update(
        QT_PLUGIN_PATH=session.build + "/plugins", TYPESLATE_PREFPANE=session.build + "/Typeslate.prefPane",
        XDG_DATA_DIRS="/usr/local/share:/usr/share",
        # A warning names the libraries on its stack, so that ours can be told from those of the applications.
        QT_MESSAGE_PATTERN='%{type}: %{message} %{backtrace depth=200 separator=" "}')
    session.ours = ["?kcm_typeslate", "?Typeslate?"]


def start(session, program, module=MODULE, title=TITLE, *arguments):
    process = session.open(program, module, *arguments, title=title, end="")
    session.settle(process.window)
    return process


def turn_to(session, process, module, title):
    """Has the running System Settings go to another module, as the desktop's search does."""
    subprocess.run(["systemsettings", module], env=session.environment, check=True, capture_output=True,
                   timeout=windowtest.LIMIT)
    process.window = session.wait_for_window(title, end="")
    session.settle(process.window)
