#!/usr/bin/env python3
"""The program is killed at random moments while it receives and deletes on the server. Whatever the
moment, every message is in the store or on the server, and in the end each is stored once.

usage: kill_receive_test.py VORNCTL LOOPBACK_SERVER KILLS
"""
import json
import os
import pathlib
import poplib
import random
import signal
import smtplib
import subprocess
import sys
import tempfile
import time

VORNCTL, SERVER, KILLS = sys.argv[1], sys.argv[2], int(sys.argv[3])
BATCH = 40


def main():
    with tempfile.TemporaryDirectory() as folder:
        run(pathlib.Path(folder))


def run(work):
    (work / "mail").mkdir()
    environment = dict(os.environ, XDG_CONFIG_HOME=str(work / "config"))
    server = subprocess.Popen([SERVER, "--mail", str(work / "mail")], stdout=subprocess.PIPE,
                              text=True)
    words = server.stdout.readline().split()
    pop3_port, smtp_port = int(words[1]), int(words[3])

    def ctl(*arguments, stdin=b""):
        done = subprocess.run([VORNCTL, "--data", str(work / "data"), *arguments], input=stdin,
                              capture_output=True, env=environment)
        assert done.returncode == 0, done.stderr.decode()
        return done.stdout.decode()

    def stored():
        rows = [json.loads(line) for line in ctl("list", "受信", "--json").splitlines()]
        return [row["subject"] for row in rows]

    def on_server():
        box = poplib.POP3("127.0.0.1", pop3_port)
        box.user("demo")
        box.pass_("demo")
        count = len(box.list()[1])
        subjects = []
        for number in range(1, count + 1):
            lines = box.retr(number)[1]
            subjects += [line[9:].decode() for line in lines if line.startswith(b"Subject: ")]
        box.close()  # without QUIT
        return subjects

    ctl("account", "add", "--in-security", "none",
        "--out-security", "none", "--name", "a", "--address", "a@example.jp", "--in-server", "127.0.0.1",
        "--in-port", str(pop3_port), "--in-user", "demo", "--in-password-fd", "0",
        "--delete-on-server", stdin=b"demo\n")
    chance = random.Random(20261124)
    expected, longest, runs, killed = [], 0.3, 0, 0
    while killed < KILLS:
        runs += 1
        with smtplib.SMTP("127.0.0.1", smtp_port) as smtp:
            for number in range(BATCH):
                subject = f"m{runs:03d}-{number:03d}"
                expected.append(subject)
                smtp.sendmail("x@example.jp", ["a@example.jp"],
                              f"Subject: {subject}\r\n\r\n{'text ' * 400}\r\n")
        started = time.monotonic()
        process = subprocess.Popen([VORNCTL, "--data", str(work / "data"), "receive"],
                                   stdout=subprocess.DEVNULL, env=environment)
        try:
            process.wait(chance.uniform(0.02, longest))
            longest = max(0.1, time.monotonic() - started)  # changes with the machine's load
        except subprocess.TimeoutExpired:
            process.send_signal(signal.SIGKILL)
            process.wait()
            longest *= 1.05
            killed += 1
        # Looking into the store every time would take most of the test's time.
        if runs % 5 == 0:
            held = stored()
            assert len(held) == len(set(held)), f"stored twice after run {runs}"
            missing = set(expected) - set(held) - set(on_server())
            assert not missing, f"lost after run {runs}: {sorted(missing)[:5]}"
    ctl("receive")
    held = stored()
    assert sorted(held) == sorted(expected), (len(held), len(expected))
    assert on_server() == [], "left on the server"
    ctl("check")
    server.terminate()
    server.wait()
    print(f"{killed} of {runs} runs killed, {len(expected)} messages, each stored once")


main()
