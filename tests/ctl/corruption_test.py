#!/usr/bin/env python3
"""A real store is damaged at random, and then listed, shown, exported, checked and received into,
with deletion on the server. Whatever was damaged, nothing is lost without a word: a command that
does not give everything says so, what it gives is as it was stored, and what cannot be read back is
not deleted on the server.

usage: corruption_test.py VORNCTL LOOPBACK_SERVER CORRUPTIONS [SEED]
"""
import collections
import fcntl
import json
import pathlib
import poplib
import random
import re
import shutil
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import vornctl  # noqa: E402

VORNCTL, SERVER, COUNT = sys.argv[1], sys.argv[2], int(sys.argv[3])
SEED = int(sys.argv[4]) if len(sys.argv) > 4 else 20261125
PAGE = 4096
STORED, LOGGED, NEW = 60, 30, 3
# What only the engine says.
ENGINE_WORDS = re.compile(r"malformed|SQL|logic error|no such|constraint|disk I/O|database|tree "
                          r"page|[Ff]reelist|row \d+ missing|wrong # of")


def message(number, size):
    chance = random.Random(number)
    lines = [f"Subject: m-{number:03d}", "From: a@example.jp", "To: b@example.jp",
             "Date: Wed, 25 Nov 2026 10:00:00 +0900", ""]
    while size > 0:
        lines.append("".join(chance.choices("abcdefghij klmnop", k=70)))
        size -= 72
    return ("\r\n".join(lines) + "\r\n").encode()


class Store(vornctl.Store):
    """A data folder and a mail server, both of which can be put back to how they were."""

    def __init__(self, work):
        super().__init__(VORNCTL, work)
        self.mail = work / "mail"
        self.server, self.port = None, 0
        self.mail.mkdir()

    def serve(self, numbers):
        self.stop()
        shutil.rmtree(self.mail)
        self.mail.mkdir()
        for number in numbers:
            (self.mail / f"{number:03d}.eml").write_bytes(SOURCES[number])
        self.server, port, _ = vornctl.serve(SERVER, "--mail", self.mail, "--pop3-port",
                                             str(self.port))
        self.port = int(port)

    def stop(self):
        if self.server is not None:
            self.server.kill()
            self.server.communicate()
            self.server = None

    def on_server(self):
        box = poplib.POP3("127.0.0.1", self.port)
        box.user("demo")
        box.pass_("demo")
        subjects = set()
        for number in range(1, len(box.list()[1]) + 1):
            subjects |= {line[9:].decode() for line in box.top(number, 0)[1]
                         if line.startswith(b"Subject: ")}
        box.close()
        return subjects

    def ctl(self, *arguments, stdin=b""):
        done = self.run(*arguments, stdin=stdin, codes=range(5))
        done.stdout, done.stderr = done.stdout.decode(), done.stderr.decode()
        words = ENGINE_WORDS.search(done.stderr.replace(str(self.work), ""))
        assert not words, f"the engine speaks: {done.stderr}"
        return done

    def files(self):
        profile, = self.data.glob("_profile*")
        mail, = [file for file in profile.glob("*.mbx") if file.name != "profile.mbx"]
        return {"mail": mail, "profile": profile / "profile.mbx", "log": pathlib.Path(
            str(mail) + "-wal")}


SOURCES = {number: message(number, 300_000 if number % 20 == 7 else 200 + 700 * (number % 13))
           for number in range(STORED + LOGGED + NEW)}
BY_SUBJECT = {f"m-{number:03d}": source for number, source in SOURCES.items()}


def prepare(store):
    """Two accounts of one mailbox, of which one deletes; messages in the file, and others in its
    log alone."""
    store.serve(range(STORED))
    for name, more in (("keep", []), ("delete", ["--delete-on-server"])):
        store.add_account(name, "--in-port", str(store.port), *more)
    assert store.ctl("receive", "--account", "keep").returncode == 0
    shutil.copytree(store.data, store.work / "closed")
    store.serve(range(STORED + LOGGED))
    # Whoever closes a file that nobody else has open empties its log. With a lock of ours on the file
    # (the engine's shared bytes) it stays as a killed program leaves it.
    with store.files()["mail"].open("rb") as file:
        fcntl.lockf(file, fcntl.LOCK_SH, 510, 0x40000002)
        assert store.ctl("receive", "--account", "keep").returncode == 0
        assert store.files()["log"].stat().st_size > 30 * PAGE
        shutil.copytree(store.data, store.work / "open")


def listed(done):
    rows = [json.loads(line) for line in done.stdout.splitlines()]
    return {row["subject"] for row in rows if row["from"] == "a@example.jp"}


def put(data, at, replacement):
    return data[:at] + replacement + data[at + len(replacement):]


def damage(chance, kind, path):
    data = path.read_bytes()
    pages = max(len(data) // PAGE, 1)
    place = chance.randrange(pages) * PAGE
    if kind == "flip":
        at = chance.randrange(len(data))
        data = put(data, at, bytes([data[at] ^ 1 << chance.randrange(8)]))
    elif kind == "zero":
        data = put(data, place, bytes(PAGE))
    elif kind == "cut":
        data = data[:chance.choice([place, chance.randrange(1, len(data))])]
    elif kind == "swap":
        other = chance.randrange(pages) * PAGE
        here, there = data[place:place + PAGE], data[other:other + PAGE]
        data = put(put(data, place, there), other, here)
    elif kind == "empty":
        data = b""
    elif kind == "last":  # the last pages are those of the newest messages
        at = len(data) - 1 - chance.randrange(min(len(data), 20 * PAGE))
        data = put(data, at, bytes([data[at] ^ 0xFF]))
    else:
        raise ValueError(kind)
    path.write_bytes(data)


class Trial:
    def __init__(self, store, before, what):
        self.store, self.before, self.what = store, before, what
        self.loud, self.of_log, self.words = False, "log" in what, []

    def silent(self, words):
        raise AssertionError(f"silent: {self.what}: {words}")

    def note(self, done):
        if done.returncode != 0:
            self.loud = True
            self.words.append((done.args[3:], done.stdout[-300:], done.stderr))
            if not done.stderr and not done.stdout:
                self.silent("a failure without a word")
        return done.returncode == 0

    def look(self):
        """What can be read, and whether it was told that this is not all."""
        complete = self.note(done := self.store.ctl("list", "受信", "--json"))
        if complete and self.lacks(listed(done)):
            self.silent(f"the list lacks {sorted(self.before - listed(done))[:3]}")
        page = self.store.work / "page.html"
        page.unlink(missing_ok=True)
        if self.note(self.store.ctl("page", "受信", "--out", str(page))):
            text = page.read_bytes().decode("cp932")
            missing = {subject for subject in self.before if subject not in text}
            if self.lacks(self.before - missing):
                self.silent(f"the page lacks {sorted(missing)[:3]}")
        return self.export()

    def lacks(self, shown):
        """What a log held is gone once its damage was told; only the check still tells it."""
        return self.before - shown and not (self.of_log and self.loud)

    def export(self):
        target = self.store.work / "out"
        shutil.rmtree(target, ignore_errors=True)
        done = self.store.ctl("export", "受信", "--format", "eml", "--out", str(target), "--json")
        complete = self.note(done)
        read = set()
        for file in target.glob("*") if target.exists() else []:
            source = file.read_bytes()
            subject = source[9:14].decode(errors="replace")
            if source != BY_SUBJECT.get(subject):
                self.silent(f"{file.name} is not as it was stored")
            read.add(subject)
        if complete and self.lacks(read):
            self.silent(f"the export lacks {sorted(self.before - read)[:3]}")
        if done.returncode == 4 and done.stdout:
            named = len(json.loads(done.stdout.splitlines()[-1])["unreadable"])
            if named < len(self.before - read) and not self.of_log:
                self.silent(f"{len(self.before - read)} lacking, {named} named")
        return read

    def check(self):
        bytes_before = self.bytes()
        done = self.store.ctl("check")
        was_loud = self.loud
        sound = self.note(done)
        if sound and was_loud:
            self.silent("called sound after an earlier command complained")
        if self.bytes() != bytes_before:
            self.silent("the check changed a file")
        return sound

    def bytes(self):
        files = self.store.files()
        return [files[name].read_bytes() if files[name].exists() else b""
                for name in ("mail", "log")]

    def receive(self):
        before = self.store.on_server()
        done = self.store.ctl("receive", "--account", "delete")
        self.note(done)
        return before - self.store.on_server(), done

    def run(self, receives_first):
        deleted = set()
        if receives_first:
            deleted, _ = self.receive()
            self.before = self.before | {subject for subject in deleted if subject in BY_SUBJECT}
        read = self.look()
        sound = self.check()
        if sound and self.before - read:
            self.silent(f"called sound, without {sorted(self.before - read)[:3]}")
        if not receives_first:
            deleted, done = self.receive()
            if not sound and (deleted or done.returncode == 0):
                self.silent("received into a damaged store")
            if deleted:
                self.before = self.before | deleted
                read = self.export()
        if deleted - read:
            self.silent(f"deleted on the server and not to be read: {sorted(deleted - read)[:3]}")
        return self.loud


KINDS = [("flip", "mail"), ("zero", "mail"), ("cut", "mail"), ("swap", "mail"), ("last", "mail"),
         ("flip", "mail"), ("empty", "mail"), ("foreign", "log"), ("flip", "log"), ("zero", "log"),
         ("flip", "profile"), ("zero", "profile"), ("cut", "profile"), ("swap", "profile"),
         ("empty", "profile"), ("foreign", "profile log")]


def foreign_log(chance, store, file):
    """The log of another profile's file, or what is no log at all."""
    log = pathlib.Path(str(store.files()[file]) + "-wal")
    shm = pathlib.Path(str(store.files()[file]) + "-shm")
    shm.unlink(missing_ok=True)
    log.write_bytes(chance.choice([FOREIGN[0], chance.randbytes(20 * PAGE)]))


FOREIGN = []


def main():
    chance = random.Random(SEED)
    with tempfile.TemporaryDirectory() as folder:
        store = Store(pathlib.Path(folder))
        try:
            run(store, chance)
        finally:
            store.stop()


def put_back(store, state):
    shutil.rmtree(store.data)
    shutil.copytree(store.work / state, store.data)
    store.serve([0, 7, 12, *range(STORED + LOGGED, STORED + LOGGED + NEW)])


def run(store, chance):
    prepare(store)
    other = Store(store.work / "other") if (store.work / "other").mkdir() is None else None
    prepare(other)
    other.stop()
    FOREIGN.append((pathlib.Path(str(other.work / "open")) / other.files()["log"].relative_to(
        other.data)).read_bytes())
    baseline = {}
    for state in ("closed", "open"):
        shutil.rmtree(store.data)
        shutil.copytree(store.work / state, store.data)
        baseline[state] = listed(store.ctl("list", "受信", "--json"))
    assert len(baseline["closed"]) == STORED < len(baseline["open"])
    for state in ("closed", "open"):  # an undamaged store calls for no word
        for receives_first in (False, True):
            put_back(store, state)
            trial = Trial(store, baseline[state], f"undamaged, {state}")
            assert not trial.run(receives_first), f"undamaged, {state}: {trial.words}"
    outcomes = collections.Counter()
    failures = []
    for number in range(COUNT):
        # A short run as well goes through all kinds of files.
        kind, file = KINDS[number * max(1, len(KINDS) // COUNT) % len(KINDS)]
        state = "open" if file == "log" and kind != "foreign" else (
            "closed" if kind == "foreign" else chance.choice(["closed", "open"]))
        put_back(store, state)
        if kind == "foreign":
            foreign_log(chance, store, "profile" if file.startswith("profile") else "mail")
        else:
            damage(chance, kind, store.files()[file])
        what = f"{number}: {kind} {file}, {state}"
        trial = Trial(store, baseline[state], what)
        try:
            loud = trial.run(receives_first=number % 3 == 2)
            outcomes["told" if loud else "harmless"] += 1
        except AssertionError as failure:
            failures.append(str(failure))
            print(failure, *trial.words, sep="\n    ", flush=True)
    print(f"{COUNT} corruptions: {outcomes['told']} told, {outcomes['harmless']} without effect, "
          f"{len(failures)} silent (seed {SEED})")
    sys.exit(1 if failures else 0)


main()
