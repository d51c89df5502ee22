#!/usr/bin/env python3
"""Programs are killed at random moments while they send through a real SMTP server and import, with a
second one beside them. Whatever the moment, a message arrived at most once; it arrived, waits, or is
shown as doubtful; and an archive is imported once.

usage: kill_send_test.py VORNCTL KILLS
"""
import collections
import pathlib
import random
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import vornctl  # noqa: E402

VORNCTL, KILLS = sys.argv[1], int(sys.argv[2])
SINK = pathlib.Path(__file__).resolve().parent.parent / "support" / "smtp_sink.py"
TOGETHER = 3  # messages handed to one run
TEXT = "text text text text text text text\r\n" * 500


def main():
    with tempfile.TemporaryDirectory() as folder:
        run(pathlib.Path(folder))


def subject_of(source):
    for line in source.split(b"\n"):
        if line.startswith(b"Subject: "):
            return line[9:].strip().decode()
    return ""


def message(subject):
    return (f"From: a@example.jp\r\nTo: b@example.org\r\nSubject: {subject}\r\n\r\n"
            f"{TEXT}.\r\n").encode()


def check(store, sink, asked):
    """Everything that was asked for, and nothing else."""
    delivered = collections.Counter(subject_of(path.read_bytes()) for path in sink.iterdir())
    doubles = {subject for subject, count in delivered.items() if count > 1}
    assert not doubles, f"delivered twice: {sorted(doubles)[:5]}"
    assert set(delivered) <= set(asked), "something arrived that nobody sent"
    doubtful = {row["subject"] for row in store.rows("doubtful", "list")}
    waiting = {row["subject"] for row in store.rows("list", "待ち")}
    sent = {row["subject"] for row in store.rows("list", "送信")}
    lost = sent - set(delivered)
    assert not lost, f"counted as sent and not arrived: {sorted(lost)[:5]}"
    again = (waiting - doubtful) & set(delivered)
    assert not again, f"arrived and would be sent again: {sorted(again)[:5]}"
    # What the killed program had not yet stored was never promised.
    return doubtful, waiting - doubtful


def import_once(store, chance):
    archive = store.work / f"{chance.random()}.mbox"
    subjects = [f"archive {chance.random()} {number}" for number in range(150)]
    archive.write_bytes(b"".join(
        b"From x@example.jp Mon Jan  1 00:00:00 2024\r\n" + message(subject) for subject in subjects))
    first, second = store.start("import", str(archive)), store.start("import", str(archive))
    time.sleep(chance.uniform(0.05, 0.5))
    first.kill()
    for process in (first, second):
        process.communicate()
    store.ctl("import", str(archive))
    stored = collections.Counter(row["subject"] for row in store.rows("list", "受信"))
    assert all(stored[subject] == 1 for subject in subjects), "not imported once"


def run(work):
    store, sink = vornctl.Store(VORNCTL, work), work / "sink"
    sink.mkdir()
    server = subprocess.Popen(["/usr/bin/python3", str(SINK), str(sink), "--delay", "0.1"], stdout=subprocess.PIPE,
                              text=True)
    port = server.stdout.readline().strip()
    store.add_account("a", "--out-port", port, "--default")
    chance = random.Random(20261125)
    asked, inside, longest = [], 0, 1.0
    for kill in range(KILLS):
        files = []
        for number in range(TOGETHER):
            asked.append(f"m{kill:04d}-{number}")
            files.append(work / f"{number}.eml")
            files[-1].write_bytes(message(asked[-1]))
        started = time.monotonic()
        beside = store.start("send")
        process = store.start("send", *map(str, files))
        victim = process if chance.random() < 0.8 else beside
        try:
            victim.wait(chance.uniform(0.02, longest))
            longest = 1.2 * (time.monotonic() - started)
        except subprocess.TimeoutExpired:
            victim.kill()
            inside += 1
            longest = min(5, 1.05 * longest)
        for one in (process, beside):
            one.communicate()
        if kill % 20 == 19:
            check(store, sink, asked)
        if kill % 25 == 24:
            import_once(store, chance)
    store.run("send", codes=(0, 1))
    doubtful, waiting = check(store, sink, asked)
    assert not waiting, f"still waiting: {sorted(waiting)[:5]}"
    arrived = len(list(sink.iterdir()))
    # The user's word on each.
    for number, row in enumerate(store.rows("doubtful", "list")):
        store.ctl("doubtful", "again" if number % 2 else "sent", row["serialId"])
    store.ctl("send")
    assert not store.rows("doubtful", "list") and not store.rows("list", "待ち")
    store.ctl("check")
    server.terminate()
    server.wait()
    assert inside > KILLS // 4, f"only {inside} kills hit"
    print(f"{inside} of {KILLS} runs killed, {len(asked)} messages asked for, {arrived} arrived, each "
          f"once, {len(doubtful)} left to the user")


main()
