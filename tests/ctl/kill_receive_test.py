#!/usr/bin/env python3
"""The program is killed at random moments while it receives and deletes on the server. Whatever the
moment, every message is in the store or on the server, and in the end each is stored once.

usage: kill_receive_test.py VORNCTL LOOPBACK_SERVER KILLS
"""
import pathlib
import poplib
import random
import smtplib
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import vornctl  # noqa: E402

VORNCTL, SERVER, KILLS = sys.argv[1], sys.argv[2], int(sys.argv[3])
BATCH = 40


def main():
    with tempfile.TemporaryDirectory() as folder:
        run(pathlib.Path(folder))


def run(work):
    (work / "mail").mkdir()
    store = vornctl.Store(VORNCTL, work)
    server, pop3_port, smtp_port = vornctl.serve(SERVER, "--mail", str(work / "mail"))

    def stored():
        return [row["subject"] for row in store.rows("list", "受信")]

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

    store.add_account("a", "--in-port", pop3_port, "--delete-on-server")
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
        process = store.start("receive")
        try:
            process.communicate(timeout=chance.uniform(0.02, longest))
            longest = max(0.1, time.monotonic() - started)  # changes with the machine's load
        except subprocess.TimeoutExpired:
            process.kill()
            process.communicate()
            longest *= 1.05
            killed += 1
        # Looking into the store every time would take most of the test's time.
        if runs % 5 == 0:
            held = stored()
            assert len(held) == len(set(held)), f"stored twice after run {runs}"
            missing = set(expected) - set(held) - set(on_server())
            assert not missing, f"lost after run {runs}: {sorted(missing)[:5]}"
    store.ctl("receive")
    held = stored()
    assert sorted(held) == sorted(expected), (len(held), len(expected))
    assert on_server() == [], "left on the server"
    store.ctl("check")
    server.terminate()
    server.wait()
    print(f"{killed} of {runs} runs killed, {len(expected)} messages, each stored once")


main()
