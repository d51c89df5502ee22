#!/usr/bin/env python3
"""A message goes the whole way: composed, sent through a real SMTP server, received from a real POP3
server, and read again the same. Needs root for Dovecot.

usage: conversation_test.py VORNCTL
"""
import json
import os
import pathlib
import random
import shutil
import socket
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from dovecot import Dovecot, await_port  # noqa: E402

VORNCTL = sys.argv[1]
ALPHABET = [chr(c) for c in range(0x20, 0x7F)] + [chr(c) for c in range(0x3041, 0x3094)] + \
    list("会議資料東京明日①㈱髙🍣é한中\u0301")


class Conversation(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = pathlib.Path(folder.name)
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(self.work / "config"))
        self.dovecot = Dovecot(self.work)
        self.addCleanup(self.dovecot.stop)
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.smtp_port = probe.getsockname()[1]
        smtp = subprocess.Popen(
            ["/usr/bin/python3", "-m", "aiosmtpd", "-n", "-l", "127.0.0.1:%d" % self.smtp_port,
             "-c", "aiosmtpd.handlers.Mailbox", str(self.work / "sent")])
        self.smtp = smtp
        self.addCleanup(smtp.wait)
        self.addCleanup(smtp.terminate)
        await_port(self.smtp_port, smtp)
        self.ctl("account", "add", "--in-security", "none",
                 "--out-security", "none", "--name", "work", "--address", "a@example.jp", "--display",
                 "山田", "--in-server", "127.0.0.1", "--in-port", str(self.dovecot.port),
                 "--in-user", "a", "--in-password-fd", "0", "--out-server", "127.0.0.1",
                 "--out-port", str(self.smtp_port), "--default", stdin=b"secret\n")

    def ctl(self, *arguments, code=0, stdin=b""):
        done = subprocess.run([VORNCTL, "--data", str(self.work / "data"), *arguments],
                              input=stdin, capture_output=True, env=self.environment)
        self.assertEqual(done.returncode, code, (arguments, done.stderr.decode()))
        return done.stdout.decode()

    def rows(self, folder):
        return [json.loads(line) for line in self.ctl("list", folder, "--json").splitlines()]

    def deliver(self):
        """What the SMTP server took becomes mail of the POP3 server."""
        sent = sorted((self.work / "sent" / "new").iterdir())
        for path in sent:
            shutil.move(path, self.dovecot.mail / "new" / path.name)
        subprocess.run(["chown", "-R", "mail:mail", str(self.dovecot.mail)], check=True)
        return [self.dovecot.mail / "new" / path.name for path in sent]

    def test_messages_come_back_as_they_were_written(self):
        rng = random.Random(7)
        files, wanted = [], []
        for index in range(20):
            subject = "".join(rng.choice(ALPHABET) for _ in range(rng.randint(1, 60))).strip()
            body = "\r\n".join("".join(rng.choice(ALPHABET) for _ in range(rng.randint(0, 200)))
                               for _ in range(5)) + "\r\n.\r\n..x"
            (self.work / "body").write_bytes(body.encode())
            out = self.work / ("%d.eml" % index)
            self.ctl("compose", "--from", "a@example.jp", "--to", "b@example.org", "--bcc",
                     "hidden@example.org", "--subject=" + subject, "--body-file",
                     str(self.work / "body"), "--charset", rng.choice(["jis", "sjis", "auto"]),
                     "--out", str(out))
            files.append(str(out))
            wanted.append((subject, body))
        result = json.loads(self.ctl("send", *files, "--json"))
        self.assertEqual((result["sent"], result["errors"]), (20, 0))
        self.assertEqual({row["status"] for row in self.rows("送信")}, {3})
        self.assertEqual(self.rows("待ち"), [])
        for path in self.deliver():
            names = [line.split(b":")[0].lower() for line in path.read_bytes().split(b"\n")]
            self.assertNotIn(b"bcc", names)
        self.assertEqual(json.loads(self.ctl("receive", "--json"))["stored"], 20)
        self.assertEqual(sorted(row["subject"] for row in self.rows("受信")),
                         sorted(subject for subject, _ in wanted))
        read = []
        for path in sorted((self.dovecot.mail / "cur").iterdir()) + \
                sorted((self.dovecot.mail / "new").iterdir()):
            shown = json.loads(self.ctl("inspect", str(path), "--json"))
            read.append((shown["subject"], shown["text"].replace("\r\n", "\n").rstrip("\n")))
        self.assertEqual(sorted(read),
                         sorted((s, b.replace("\r\n", "\n").rstrip("\n")) for s, b in wanted))

    def test_what_cannot_be_sent_keeps_waiting(self):
        (self.work / "body").write_text("x")
        out = self.work / "x.eml"
        self.smtp.terminate()
        self.smtp.wait()
        # Whom no account sends for is told before anything waits.
        for sender, waiting in ("stranger@example.jp", 0), ("a@example.jp", 1):
            self.ctl("compose", "--from", sender, "--to", "b@example.org", "--subject", "s",
                     "--body-file", str(self.work / "body"), "--out", str(out))
            self.ctl("send", str(out), "--json", code=1)
            self.assertEqual(len(self.rows("待ち")), waiting)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
