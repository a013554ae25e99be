#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
"""Runs a command on a desktop of its own: an X server without a screen, a session bus with the accessibility bus behind
it, and an empty home. Nothing of the user's desktop is seen or touched; everything ends with the command.

    private_desktop.py COMMAND...

Ends with the command's exit code; with 77 ("skipped") and a line that says why when something that it takes is missing.
"""

import importlib.util
import os
import shutil
import signal
import subprocess
import sys
import tempfile

SKIPPED = 77
AT_SPI_SERVICE = "/usr/share/dbus-1/services/org.a11y.Bus.service"
SPANISH_DIALOGS = "/usr/share/qt6/translations/qtbase_es.qm"


def what_is_missing():
    for program in ("Xvfb", "dbus-run-session"):
        if not shutil.which(program):
            yield program
    for file in (AT_SPI_SERVICE, SPANISH_DIALOGS):
        if not os.path.exists(file):
            yield file
    if not importlib.util.find_spec("gi"):
        yield "python3-gi"
        return
    import gi

    try:
        gi.require_version("Atspi", "2.0")
    except ValueError:
        yield "gir1.2-atspi-2.0"


def environment(home):
    kept = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS")
    env = {name: os.environ[name] for name in kept if name in os.environ}
    env |= {"HOME": home, "LANG": "C.UTF-8", "TZ": "UTC", "NO_AT_BRIDGE": "0"}
    for name in ("CONFIG_HOME", "DATA_HOME", "CACHE_HOME", "STATE_HOME", "RUNTIME_DIR"):
        folder = os.path.join(home, name.lower())
        os.mkdir(folder, 0o700)
        env["XDG_" + name] = folder
    return env


def start_x_server(env):
    """Returns the server and its display, which it chooses itself and names when it is ready."""
    reading, writing = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x900x24", "-nolisten", "tcp", "-noreset"],
        pass_fds=[writing], env=env, stderr=subprocess.DEVNULL, start_new_session=True)
    os.close(writing)
    with os.fdopen(reading) as answer:
        number = answer.readline().strip()
    if not number:
        raise SystemExit("Xvfb does not start")
    return server, ":" + number


def main():
    missing = list(what_is_missing())
    if missing:
        print("skipped, these are missing:", ", ".join(missing))
        return SKIPPED
    # A test that takes too long is ended by a signal, and must not leave its X server behind.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended by a signal"))
    with tempfile.TemporaryDirectory(prefix="dorvantel-desktop-", ignore_cleanup_errors=True) as home:
        env = environment(home)
        server, env["DISPLAY"] = start_x_server(env)
        try:
            return subprocess.run(["dbus-run-session", "--"] + sys.argv[1:], env=env, check=False).returncode
        finally:
            server.terminate()
            server.wait()


if __name__ == "__main__":
    sys.exit(main())
