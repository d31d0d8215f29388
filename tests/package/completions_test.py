"""Tab in the real shells, on names that others have chosen: completions_test.py BUILD

A name is completed to one word of the shell, and nothing in it is run.
"""
import os, pathlib, pty, shutil, subprocess, sys, tempfile, time

BUILD = pathlib.Path(sys.argv[1]).resolve()
COMPLETIONS = pathlib.Path(__file__).resolve().parents[2] / "packaging/completions"
LIMIT = 60
# How a shell is started bare, what makes it know the completions, and how a word may begin in it.
SHELLS = {
    "bash": (["--norc", "--noprofile", "-i"], "source typeslatectl.bash", ["", "'", '"']),
    "zsh": (["-f", "-i"], "fpath=($PWD $fpath); autoload -Uz compinit; compinit -u -D", [""]),
    "fish": (["--no-config", "-i"], "source typeslatectl.fish", [""]),
}
# The name's beginning as the user types it, and the name.
NAMES = {"ev": "ev il$(touch RUN)`touch RUN`", "qu": "qu'o\"te\\;&|*", "li": "li\nne", "$": "$HOME;touch RUN"}


def wait_for(condition):
    end = time.monotonic() + LIMIT
    while not (result := condition()):
        assert time.monotonic() < end, "nothing came"
        time.sleep(0.01)
    return result


def complete(shell, home, lines):
    """Types the lines into the shell, and gives what each has left in a file."""
    environment = {"HOME": str(home), "PATH": f"{BUILD}/bin:/usr/bin:/bin", "TERM": "dumb", "LC_ALL": "C.UTF-8"}
    child, terminal = pty.fork()
    if child == 0:
        os.chdir(home)
        os.execve(shutil.which(shell), [shell, *SHELLS[shell][0]], environment)
    os.set_blocking(terminal, False)

    def seen(name):
        try:
            while os.read(terminal, 65536):  # what is shown is not looked at, but must go somewhere
                pass
        except OSError:
            pass
        return (home / name).exists() and (home / name).read_text()

    os.write(terminal, f"{SHELLS[shell][1]}; echo ready > ready\r".encode())
    wait_for(lambda: seen("ready"))
    for number, line in enumerate(lines):
        os.write(terminal, f"{line} > said{number} 2>&1; echo over > over{number}\r".encode())
        wait_for(lambda: seen(f"over{number}"))
    os.write(terminal, b"exit\r")
    os.waitpid(child, 0)
    return [(home / f"said{number}").read_text() for number in range(len(lines))]


for shell, (_, _, quotes) in SHELLS.items():
    for quote in quotes if shutil.which(shell) else []:
        with tempfile.TemporaryDirectory() as folder:
            home = pathlib.Path(folder)
            for file in COMPLETIONS.glob("typeslatectl.*"):
                shutil.copy(file, home / ("_typeslatectl" if file.suffix == ".zsh" else file.name))
            for number, name in enumerate(NAMES.values()):
                subprocess.run([BUILD / "bin/typeslatectl", "defaults", "write", name, "k", str(number)], check=True,
                               env={"HOME": folder, "PATH": os.environ["PATH"]})
            typed = ["\\" + start if start == "$" and quote != "'" else start for start in NAMES]
            said = complete(shell, home, [f"typeslatectl defaults read {quote}{start}\t k" for start in typed])
            assert said == [f"{number}\n" for number in range(len(NAMES))], (shell, quote, said)
            assert not (home / "RUN").exists(), (shell, quote)
if missing := [shell for shell in SHELLS if not shutil.which(shell)]:
    print("not tried, as they are not installed:", *missing)
    sys.exit(77)
