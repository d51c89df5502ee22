#!/usr/bin/env python3
"""The system asks the program to end: it does so at once, without a question, leaves nothing of a mail
in clear, and the next start is not in anybody's way.

usage: end_signal_test.py VORN
"""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile

VORN = sys.argv[1]
SECRET = b"words of a mail"


def await_window(program):
    for line in program.stdout:
        if line.split() in (["shown", "Mail"], ["shown", "login"]):  # the second start asks who it is
            return
    raise AssertionError("ended without a window")


def clear_text(folder):
    return [path for path in folder.rglob("*") if path.is_file() and SECRET in path.read_bytes()]


def main():
    with tempfile.TemporaryDirectory() as name:
        work = pathlib.Path(name)
        data = work / "data"
        environment = dict(os.environ, HOME=name, XDG_CONFIG_HOME=name, XDG_RUNTIME_DIR=name, QT_QPA_PLATFORM="offscreen",
                           QTWEBENGINE_CHROMIUM_FLAGS="--disable-gpu")
        if os.geteuid() == 0:
            environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
        for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGKILL, signal.SIGINT):
            program = subprocess.Popen(
                [VORN, "--data", data, "--announce", "mailto:a@example.jp?body=text"],
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, env=environment)
            await_window(program)
            assert not clear_text(data), "what the last one left is gone"
            opened = data / "temp/clip_x/opened.txt"
            opened.parent.mkdir(parents=True)
            opened.write_bytes(SECRET)
            program.send_signal(number)
            program.wait()  # not for the engine, which goes with it by itself
            program.stdout.close()
            killed = number == signal.SIGKILL
            assert program.returncode == (-number if killed else 0), (number, program.returncode)
            assert bool(clear_text(data)) == killed, (number, clear_text(data))
            met = [path for path in work.rglob("*") if path.is_socket()]
            assert bool(met) == killed, (number, met)


main()
