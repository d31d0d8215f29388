"""Tab in the real shells: completions_test.py BUILD

Names that others have chosen are completed to one word of the shell each, and nothing in them is run; entries, keys and
values to what the program knows.
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

# What is typed, and what that prints or leaves to be printed.
LINES = {
    "typeslatectl entries get na\tAl\t Na\t": '"Alpha"\n',
    "typeslatectl entries get id:org.e\t Ty\t": '"Identifier"\n',
    "typeslatectl entries se\t name:Two\t Dup\tma\t && typeslatectl entries get 2 Dup\t": "2\n",
    "typeslatectl entries unset 2 DupeH\t --if-\tnone": "typeslatectl: the list of entries has changed since its token was printed\n",
    "typeslatectl defaults read com.tarn\t The\t | wc -l | sed 's/[1-9][0-9]*/some/'": "some\n",
    "typeslatectl defaults export com.tarn\t --form\txm\t - | grep -c '<plist'": "1\n",
    "typeslatectl pane log\tmaybe": "typeslatectl: STATE: not one of these: on, off (--help tells more)\n",
    "typeslatectl login-items remove org.ex\t && typeslatectl login-items list --js\t": "[]\n",
}


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
            run = lambda *arguments: subprocess.run([BUILD / "bin/typeslatectl", *arguments], check=True, cwd=home,
                                                    env={"HOME": folder, "PATH": os.environ["PATH"]})
            for number, name in enumerate(NAMES.values()):
                run("defaults", "write", name, "k", str(number))
            (home / "org.example.Alpha.desktop").write_text("[Desktop Entry]\nType=Application\nName=Alpha\nExec=sh\n")
            run("entries", "add", "org.example.Alpha.desktop")
            run("entries", "add-regex", "Two words", "two")
            run("login-items", "add", "org.example.Alpha.desktop")
            typed = ["\\" + start if start == "$" and quote != "'" else start for start in NAMES]
            lines = {f"typeslatectl defaults read {quote}{start}\t k\t": f"{number}\n" for number, start in enumerate(typed)}
            if not quote:
                lines |= LINES
            for line, said in zip(lines, complete(shell, home, lines)):
                assert said == lines[line], (shell, quote, line, said)
            assert not (home / "RUN").exists(), (shell, quote)
if missing := [shell for shell in SHELLS if not shutil.which(shell)]:
    print("not tried, as they are not installed:", *missing)
    sys.exit(77)
