#!/usr/bin/env python3
"""A mail file goes back in time: an older copy is put in its place, or the log of a killed program is
lost. What waits in it is not sent again without the user's word, nothing is received or deleted on a
server, and every command tells of it.

usage: older_copy_test.py VORNCTL LOOPBACK_SERVER
"""
import fcntl
import pathlib
import random
import shutil
import smtplib
import socket
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import vornctl  # noqa: E402

VORNCTL, SERVER = sys.argv[1], sys.argv[2]
DRAFT = b"From: a@example.jp\r\nTo: b@example.org\r\nSubject: %d\r\n\r\ntext\r\n.\r\n"

LARGE, LONG_RUN = 60, 90  # messages; the large ones alone reach the file
LINE = "text " * 14 + "\r\n"


def free_port():
    """One that stays free while no server of the test's listens: the system gives out higher ones."""
    while True:
        port = random.randrange(20000, 32000)
        with socket.socket() as probe:
            try:
                probe.bind(("127.0.0.1", port))
            except OSError:
                continue
        return str(port)


class Store(vornctl.Store):
    def __init__(self, work):
        super().__init__(VORNCTL, work)
        self.ports = (free_port(), free_port())
        self.serve()
        self.stop()
        self.add_account("a", "--in-port", self.ports[0], "--out-port", self.ports[1],
                         "--delete-on-server", "--default")

    def serve(self):
        """A server whose mailbox gets what it is sent, and says so."""
        self.server, *ports = vornctl.serve(SERVER, "--tell", "--pop3-port", self.ports[0],
                                            "--smtp-port", self.ports[1])
        assert tuple(ports) == self.ports, ports

    def stop(self):
        """How many messages it was given."""
        self.server.kill()
        return self.server.communicate()[0].count("accepted")

    def mail_file(self):
        return next(path for path in self.data.glob("_profile*/*.mbx")
                    if path.name != "profile.mbx")

    def archive(self, count):
        file = self.work / "archive.mbox"
        file.write_bytes(b"".join(b"From x@example.jp Mon Jan  1 00:00:00 2024\nSubject: %d\n\n" %
                                  number + b"text\n\n" for number in range(count)))
        return file

    def queue(self, count):
        """Messages that wait, as the server cannot be reached."""
        files = []
        for number in range(count):
            files.append(self.work / f"{number}.eml")
            files[-1].write_bytes(DRAFT % number)
        self.ctl("send", *map(str, files), code=1)


def expect_older(store, waiting):
    """The file is told to be older, and neither sent from nor received into."""
    assert "古い状態" in store.ctl("check", code=1)
    said = store.ctl("receive", code=1)
    assert "受信しません" in said, said
    doubtful = store.rows("doubtful", "list")
    assert len(doubtful) == waiting, doubtful
    store.ctl("send", code=1 if waiting else 0)
    assert "古い状態" in store.ctl("check", code=1), "not forgotten"
    return doubtful


def older_copy(store):
    store.queue(3)
    copy = store.work / "copy.mbx"
    shutil.copyfile(store.mail_file(), copy)
    store.serve()
    store.ctl("send")
    store.ctl("receive")
    assert len(store.rows("list", "受信")) == 3
    assert store.stop() == 3
    right = store.work / "right.mbx"
    shutil.copyfile(store.mail_file(), right)
    shutil.copyfile(copy, store.mail_file())
    store.serve()
    assert "古い状態" in store.ctl("list", "受信", code=4)
    doubtful = expect_older(store, 3)
    assert store.stop() == 0, "sent again"
    # The right file comes back: nothing is left of the other one.
    shutil.copyfile(store.mail_file(), copy)
    shutil.copyfile(right, store.mail_file())
    assert "正常" in store.ctl("check")
    store.serve()
    assert "受信 0通" in store.ctl("receive")
    assert store.stop() == 0
    shutil.copyfile(copy, store.mail_file())
    assert len(expect_older(store, 3)) == 3
    # The user decides: one again, and to work with the file as it is.
    store.serve()
    store.ctl("doubtful", "again", doubtful[0]["serialId"])
    store.ctl("check", "--accept-damage", code=1)
    store.ctl("send", code=1)  # as two are still doubtful
    store.ctl("receive")
    assert len(store.rows("list", "受信")) == 1
    assert store.stop() == 1
    assert "正常" in store.ctl("check")


def older_copy_before_an_import(store):
    """Nothing was sent or received in between. Deleting messages makes no file older."""
    store.ctl("import", store.archive(2))
    copy = store.work / "copy.mbx"
    shutil.copyfile(store.mail_file(), copy)
    more = store.work / "more.eml"
    more.write_bytes(b"Subject: more\r\n\r\ntext\r\n")
    store.ctl("import", more)
    assert "正常" in store.ctl("check")
    shutil.copyfile(copy, store.mail_file())
    assert "古い状態" in store.ctl("check", code=1)
    store.ctl("check", "--accept-damage", code=1)
    assert "正常" in store.ctl("check")


def leave_log(store, *commands):
    """Runs commands; the log that they leave. With a lock of ours on the file (the engine's shared
    bytes) nobody is alone with it when it is closed, and the log stays as a killed program leaves
    it."""
    with store.mail_file().open("rb") as file:
        fcntl.lockf(file, fcntl.LOCK_SH, 510, 0x40000002)
        for command in commands:
            store.ctl(command)
    log = pathlib.Path(f"{store.mail_file()}-wal")
    assert log.stat().st_size > 0
    return log


def older_copy_beside_a_log(store):
    """The log of a later state would be read into the copy, also when only what counts for no work
    came between, and by whichever of two programs comes first."""
    store.queue(3)
    copy = store.work / "copy.mbx"
    mail = store.work / "one.eml"
    mail.write_bytes(b"Subject: one\r\n\r\ntext\r\n")
    store.serve()
    store.ctl("receive")
    shutil.copyfile(store.mail_file(), copy)
    store.ctl("import", mail)
    log = leave_log(store, "send")
    assert "正常" in store.ctl("check"), "the log goes on from its file"
    store.ctl("receive")
    log = leave_log(store, "receive")
    assert store.stop() == 3
    shutil.copyfile(copy, store.mail_file())
    store.serve()
    for program in [store.start(command) for command in ("send", "receive")]:
        program.communicate()
    expect_older(store, 3)
    assert store.stop() == 0, "sent again"
    assert not log.exists() and pathlib.Path(f"{log}.damaged1").exists(), "the log is kept"


def expect_set_aside(store, log, kept):
    assert len(store.rows("list", "受信", code=4)) == kept
    assert not log.exists() and pathlib.Path(f"{log}.damaged1").exists(), "the log is kept"


def older_log_beside_the_file(store, count=1):
    """It would be read over what has come since."""
    store.queue(2)
    store.serve()
    store.ctl("send")
    log = leave_log(store, "receive")
    older = log.read_bytes()
    store.ctl("receive")
    store.ctl("import", store.archive(count))
    kept = len(store.rows("list", "受信"))
    assert kept == 2 + count and not log.exists(), kept
    log.write_bytes(older)
    expect_set_aside(store, log, kept)


def older_log_beside_a_file_that_has_grown(store):
    """The two make no database at all, while the file alone is sound."""
    older_log_beside_the_file(store, 200)


def log_of_another_history(store):
    """Two machines went on from the same copy, with as many changes."""
    store.queue(2)
    store.serve()
    store.ctl("send")
    here, elsewhere = store.data, store.work / "elsewhere"
    shutil.copytree(here, elsewhere)
    store.ctl("import", store.archive(1))
    store.data = elsewhere
    theirs = leave_log(store, "receive")
    store.data = here
    log = pathlib.Path(f"{store.mail_file()}-wal")
    shutil.copyfile(theirs, log)
    expect_set_aside(store, log, 1)


def lost_log(store):
    store.queue(2)
    store.serve()
    leave_log(store, "send", "receive").unlink()
    assert store.stop() == 2
    store.serve()
    assert "古い状態" in store.ctl("list", "受信", code=4)
    expect_older(store, 2)
    assert store.stop() == 0, "sent again"


def lost_log_of_a_long_run(store):
    """So much is received that a part of it reaches the file, or on a slow machine all, with the
    count of the beginning; the server's copies of the rest are gone as well."""
    store.serve()
    with smtplib.SMTP("127.0.0.1", int(store.ports[1])) as smtp:
        for number in range(LONG_RUN):
            lines = 10 if number >= LARGE else 2000
            smtp.sendmail("x@example.jp", ["a@example.jp"],
                          f"Subject: {number}\r\n\r\n{LINE * lines}")
    leave_log(store, "receive").unlink()
    store.stop()
    store.serve()
    kept = len(store.rows("list", "受信", code=4))
    assert kept > 0
    expect_older(store, 0)


def main():
    for test in (older_copy, older_copy_before_an_import, older_copy_beside_a_log, older_log_beside_the_file,
                 older_log_beside_a_file_that_has_grown, log_of_another_history, lost_log,
                 lost_log_of_a_long_run):
        with tempfile.TemporaryDirectory() as folder:
            store = Store(pathlib.Path(folder))
            try:
                test(store)
            finally:
                store.server.kill()


main()
