"""Tab in the real shells, on names that others have chosen: completions_test.py BUILD

A name is completed to one word of the shell, and nothing in it is run.
"""
import os, pathlib, pty, shutil, subprocess, sys, tempfile, time

BUILD = pathlib.Path(sys.argv[1]).resolve()
COMPLETIONS = pathlib.Path(__file__).resolve().parents[2] / "packaging/completions"
LIMIT = 60
START = {
    "bash": ["--norc", "--noprofile", "-i"],
    "zsh": ["-f", "-i"],
    "fish": ["--no-config", "-i"],
}
LOAD = {
    "bash": "source typeslatectl.bash",
    "zsh": "fpath=($PWD $fpath); autoload -Uz compinit; compinit -u -D",
    "fish": "source typeslatectl.fish",
}
# The name's beginning as the user types it, and the name.
NAMES = {
    "ev": "ev il$(touch RUN)`touch RUN`",
    "qu": "qu'o\"te\\;&|*",
    "li": "li\nne",
    "$": "$HOME;touch RUN",
}
BEGINNINGS = {"bash": ["", "'", '"'], "zsh": [""], "fish": [""]}


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
        os.execve(shutil.which(shell), [shell, *START[shell]], environment)
    os.set_blocking(terminal, False)

    def seen(name):
        try:
            while os.read(terminal, 65536):  # what is shown is not looked at, but must go somewhere
                pass
        except OSError:
            pass
        return (home / name).exists() and (home / name).read_text()

    os.write(terminal, f"{LOAD[shell]}; echo ready > ready\r".encode())
    wait_for(lambda: seen("ready"))
    for number, line in enumerate(lines):
        os.write(terminal, f"{line} > said{number} 2>&1; echo over > over{number}\r".encode())
        wait_for(lambda: seen(f"over{number}"))
    os.write(terminal, b"exit\r")
    os.waitpid(child, 0)
    return [(home / f"said{number}").read_text() for number in range(len(lines))]


def main():
    shells = [shell for shell in START if shutil.which(shell)]
    for shell in shells:
        with tempfile.TemporaryDirectory() as folder:
            home = pathlib.Path(folder)
            for file in COMPLETIONS.glob("typeslatectl.*"):
                shutil.copy(file, home / ("_typeslatectl" if file.suffix == ".zsh" else file.name))
            environment = {"HOME": folder, "PATH": os.environ["PATH"]}
            for number, name in enumerate(NAMES.values()):
                subprocess.run([BUILD / "bin/typeslatectl", "defaults", "write", name, "k", str(number)], check=True,
                               env=environment)
            for quote in BEGINNINGS[shell]:
                typed = [("\\" if start == "$" and not quote else "") + start for start in NAMES]
                if quote == '"':
                    typed[-1] = "\\$"
                said = complete(shell, home, [f"typeslatectl defaults read {quote}{start}\t k" for start in typed])
                assert said == [f"{number}\n" for number in range(len(NAMES))], (shell, quote, said)
                assert not (home / "RUN").exists(), (shell, quote)
                for file in [*home.glob("said*"), *home.glob("over*"), home / "ready"]:
                    file.unlink()
    missing = START.keys() - set(shells)
    if missing:
        print("not tried, as they are not installed:", *missing)
        sys.exit(77)


main()
