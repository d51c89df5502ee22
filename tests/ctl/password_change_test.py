#!/usr/bin/env python3
"""A program that changes the password of its profile again and again is killed while commands run
beside it. Whatever happened, one password opens every file.

usage: password_change_test.py VORNCTL STORE_WORKER TRIALS
"""
import os
import pathlib
import random
import signal
import subprocess
import sys
import tempfile
import threading
import time

VORNCTL, WORKER, TRIALS = sys.argv[1], sys.argv[2], int(sys.argv[3])
SECONDS = 3.0
REFUSED = "プロファイル情報を確認してください"


def main():
    with tempfile.TemporaryDirectory() as folder:
        run(pathlib.Path(folder))


def run(work):
    environment = dict(os.environ, XDG_CONFIG_HOME=str(work / "config"))
    data = str(work / "data")

    def ctl(password, *command):
        done = subprocess.run([VORNCTL, "--data", data, "--password-fd", "0", *command],
                              input=password.encode() + b"\n", capture_output=True,
                              env=environment)
        return done.returncode, done.stdout.decode() + done.stderr.decode()

    password = ""
    code, text = ctl(password, "list", "受信")
    assert code == 0, text
    chance = random.Random(20261126)
    changed = refused = commands = 0
    for trial in range(TRIALS):
        known = [password]
        stop = threading.Event()
        problems = []

        def beside():
            nonlocal commands
            while not stop.is_set():
                code, text = ctl(known[-1], "list", "受信")
                commands += 1
                # A password that was changed meanwhile is refused; damage is something else.
                if code not in (0, 3) or "壊れ" in text:
                    problems.append(text)
                time.sleep(chance.uniform(0, 0.3))

        worker = subprocess.Popen([WORKER, data, password], stdout=subprocess.PIPE, text=True,
                                  env=environment)
        # The first time nobody disturbs, so that there is a change.
        threads = [threading.Thread(target=beside) for _ in range(2 if trial > 0 else 0)]
        for thread in threads:
            thread.start()
        # Its end comes some moments after a report of its own: how far it gets must not depend on how
        # fast it is. With the eighth it has changed the password.
        timer = threading.Timer(chance.uniform(0, SECONDS / 10), worker.send_signal,
                                [signal.SIGKILL])
        reports = chance.randint(1, 24) if trial > 0 else 8
        candidates = {password}
        for number, line in enumerate(worker.stdout, 1):
            if number == reports:
                timer.start()
            word, _, value = line.strip().partition(" ")
            if word == "changing":
                candidates.add(value)
            elif word == "changed":
                candidates = {value}
                known.append(value)
                changed += 1
            elif word == "refused":
                assert "ほかのプログラム" in value, value
                candidates = {known[-1]}
                refused += 1
            else:
                assert word in ("stored", "opened"), line
        worker.wait()
        timer.join()
        assert changed > 0, "the password was not changed"
        stop.set()
        for thread in threads:
            thread.join()
        assert not problems, problems
        results = {candidate: ctl(candidate, "check") for candidate in candidates}
        opening = [candidate for candidate, (code, _) in results.items() if code == 0]
        assert len(opening) == 1, (trial, results)
        password = opening[0]
    assert commands > 0, commands
    print(f"{TRIALS} kills, {changed} changes, {refused} refused, {commands} commands beside; "
          "always one password")


main()
