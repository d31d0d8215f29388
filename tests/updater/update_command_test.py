#!/usr/bin/env python3
"""typeslatectl update, and a foreign caller: update_command_test.py TYPESLATECTL CALLER PANE"""
import json, os, pathlib, subprocess, sys, tempfile

ctl, caller, pane = sys.argv[1:4]
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)


with tempfile.TemporaryDirectory() as folder:
    home = pathlib.Path(folder)
    env = {k: v for k, v in os.environ.items()
           if k not in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_SESSION_ID", "DBUS_SESSION_BUS_ADDRESS")}
    env |= {"HOME": folder, "TYPESLATE_ROOT": folder + "/root", "TYPESLATE_LOG": "stderr", "LC_ALL": "C.UTF-8"}
    (home / "root").mkdir()
    module = home / "Library/Plinthworks/T.plinth"
    updater = module / "Contents/Resources/Tarnwick Updater.app"

    def bundle(path, **info):
        (path / "Contents/Linux").mkdir(parents=True)
        items = "".join(f"<key>{k}</key><string>{v}</string>" for k, v in info.items())
        (path / "Contents/Info.plist").write_text(f"<plist><dict>{items}</dict></plist>")

    def run(*words, program=ctl):
        done = subprocess.run([program, *words], env=env, capture_output=True, text=True, timeout=60)
        return done.returncode, done.stdout, done.stderr

    def status(*words):
        return json.loads(run("update", "status", "--json", *words)[1])

    check("no module", run("update", "check")[0] == 1 and status()["rule"] == "date")
    bundle(module, CFBundleIdentifier="com.tarnwick.typeslate", CFBundleName="T", CFBundleShortVersionString="1.0b2")
    bundle(updater, CFBundleIdentifier="u", CFBundleExecutable="true")
    (updater / "Contents/Linux/true").symlink_to("/bin/true")

    first = status()
    check(f"first {first}", first["due"] and first["rule"] == "date" and first["interval"] == 86400.0
          and "SULastCheckDate" not in first)
    code, out, err = run("update", "check")
    check(f"launch {code} {out}", code == 0 and out == f"launched {updater}\n" and "Launched the updater" in err)
    after = status()
    check(f"after {after}", after["rule"] == "none" and "$date" in after["SULastCheckDate"])
    check("nothing due", run("update", "check")[0] == 3)
    check("now", run("update", "check", "--now")[0] == 0)
    lock = home / "root/tmp/com.tarnwick.typeslate.updater.lock"
    check("lock given back", list(lock.parent.iterdir()) == [])

    for words, code, rule in [(("interval", "1"), 0, None), (("schedule", "off"), 0, "off"),
                              (("schedule", "on"), 0, None), (("interval", "-1"), 2, None),
                              (("interval", "nan"), 2, None), (("interval", "x"), 2, None),
                              (("schedule", "maybe"), 2, None), (("schedule",), 2, None), ((), 2, None)]:
        check(f"{words}", run("update", *words)[0] == code and (rule is None or status()["rule"] == rule))
    check("interval kept", status()["SUCheckInterval"] == 1.0)

    lock.touch()
    code, out, err = run("update", "check", "--now")
    check(f"locked {code} {err}", code == 1 and "error -48" in err and lock.exists())
    lock.unlink()
    (updater / "Contents/Linux/true").unlink()
    code, out, err = run("update", "check", "--now")
    check(f"cannot launch {code} {err}", code == 1 and "could not be launched" in err)

    (updater / "Contents/Linux/true").symlink_to("/bin/true")
    run("defaults", "delete", "com.tarnwick.typeslate", "SULastCheckDate")
    code, out, err = run(pane, str(module), program=caller)
    check(f"foreign caller {code} {out} {err}", code == 0 and out == f"-50 0 {updater}\n")

print("\n".join(f"FAILED {what}" for what in failures) or "ok")
sys.exit(bool(failures))
