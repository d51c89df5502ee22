#!/usr/bin/env python3
"""What vornctl composes is read back the same: by Vorn itself and by Python's email package.

Texts, subjects, names and file names are generated over all of Unicode and over each charset.
usage: compose_test.py VORNCTL [CASES]
"""
import email
import email.policy
import hashlib
import json
import os
import random
import re
import resource
import subprocess
import sys
import tempfile
import unittest

VORNCTL = sys.argv[1]
CASES = int(sys.argv[2]) if len(sys.argv) > 2 else 60

ASCII = "".join(chr(c) for c in range(0x21, 0x7F))
JIS = [chr(c) for c in range(0x3041, 0x3094)] + [chr(c) for c in range(0x30A1, 0x30F5)] + \
    [c for c in (bytes([row, cell]).decode("euc_jp", "ignore")
                 for row in range(0xB0, 0xD0) for cell in range(0xA1, 0xFF)) if len(c) == 1]
WIDE = ["😀", "👨‍👩‍👧", "é", "ß", "한", "글", "中", "ﾊ", "①", "㈱", "髙", "～", "〜", "𠮷", "\u0301", "Ω", "я"]


def text(rng, length, alphabet):
    return "".join(rng.choice(alphabet) for _ in range(length))


def words(rng, alphabet, most):
    return " ".join(text(rng, rng.randint(1, 12), alphabet) for _ in range(rng.randint(1, most)))


def alphabet_of(rng):
    return rng.choice([ASCII, JIS, ASCII + "".join(JIS), JIS + WIDE, list(ASCII) + WIDE])


class Composing(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def compose(self, subject, body, *more, to="y@example.org"):
        with open(self.path("body"), "w", newline="") as file:
            file.write(body)
        done = subprocess.run([VORNCTL, "compose", "--from", "a@example.jp", "--to", to,
                               "--subject=" + subject, "--body-file", self.path("body"),
                               "--out", self.path("out"), *more], capture_output=True)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        with open(self.path("out"), "rb") as file:
            return file.read()

    def inspect(self):
        done = subprocess.run([VORNCTL, "inspect", self.path("out"), "--json"],
                              capture_output=True, check=True)
        return json.loads(done.stdout)

    def check_wire(self, source):
        self.assertTrue(source.endswith(b"\r\n.\r\n"))
        self.assertNotIn(b"\n", source.replace(b"\r\n", b""))
        for line in source.split(b"\r\n"):
            self.assertLessEqual(len(line), 998)
        header = source.split(b"\r\n\r\n")[0]
        self.assertFalse([c for c in header if c >= 0x80], "raw eight-bit header")

    def test_what_an_attached_pipe_gives_once_is_sent(self):
        os.mkfifo(self.path("pipe"))
        writer = subprocess.Popen(["sh", "-c", 'printf contents > "$1"', "-", self.path("pipe")])
        self.addCleanup(writer.wait)
        self.addCleanup(writer.kill)
        parsed = email.message_from_bytes(self.compose("s", "b", "--attach", self.path("pipe")),
                                          policy=email.policy.default)
        self.assertEqual([p.get_content() for p in parsed.iter_attachments()], [b"contents"])

    def test_generated_messages_come_back_identical(self):
        rng = random.Random(20261124)
        for case in range(CASES):
            letters = alphabet_of(rng)
            subject = words(rng, letters, 8)
            name = words(rng, [c for c in letters if c not in '<>"\\'], 2)
            body = "\r\n".join(words(rng, letters, 6) for _ in range(rng.randint(0, 8)))
            charset = rng.choice(["jis", "euc", "sjis", "utf8", "auto"])
            more = ["--charset", charset, "--mime", rng.choice(["base64", "qp"])]
            files = []
            for index in range(rng.randint(0, 2)):
                file_name = text(rng, rng.randint(1, 25),
                                 [c for c in letters if c not in '/"\\\0']).strip(".") + ".pdf"
                data = rng.randbytes(rng.randint(0, 3000))
                with open(self.path(file_name), "wb") as file:
                    file.write(data)
                more += ["--attach", self.path(file_name)]
                files.append((file_name, data))
            source = self.compose(subject, body, *more, to='"%s" <y@example.org>' % re.sub(r'(["\\])', r"\\\1", name))
            with self.subTest(case=case, charset=charset, subject=subject):
                self.check_wire(source)
                shown = self.inspect()
                self.assertEqual(self.canonical(shown["subject"]), self.canonical(subject))
                self.assertEqual(self.canonical(shown["text"].rstrip("\r\n")),
                                 self.canonical(body.rstrip("\r\n")))
                to = [a for a in shown["addresses"] if a["kind"] == "TO"]
                self.assertEqual([(a["address"], self.canonical(a["name"])) for a in to],
                                 [("y@example.org", self.canonical(name))])
                self.assertEqual([(a["name"], a["sha256"]) for a in shown["attachments"]],
                                 [(n, hashlib.sha256(d).hexdigest()) for n, d in files])

                # Without the end mark, as it goes over the wire.
                parsed = email.message_from_bytes(source[:-3], policy=email.policy.default)
                self.assertEqual(self.canonical(parsed["Subject"]), self.canonical(subject))
                part = parsed.get_body(("plain",)) if files else parsed
                if part is not None:
                    read = part.get_content().replace("\r\n", "\n").rstrip("\n")
                    self.assertEqual(self.canonical(read),
                                     self.canonical(body.replace("\r\n", "\n").rstrip("\n")))
                read = [(p.get_filename(), p.get_content()) for p in parsed.iter_attachments()] \
                    if files else []
                self.assertEqual([(self.canonical(n), data) for n, data in read],
                                 [(self.canonical(n), data) for n, data in files])

    @staticmethod
    def canonical(value):
        """Signs for which the Japanese codes have two readings in Unicode."""
        value = re.sub("[〜～]", "~", str(value)).replace("‖", "∥").replace("−", "－")
        return value.replace("—", "―").replace("¢", "￠").replace("£", "￡").replace("¬", "￢")

    def test_what_a_charset_lacks_makes_the_message_utf8(self):
        for charset in ("jis", "euc", "sjis"):
            source = self.compose("寿司🍣", "ﾊﾝｶｸ ①", "--charset", charset)
            self.assertIn(b'charset="UTF-8"', source)
            self.assertNotIn(b"?\r\n\r\n.", source)
            self.assertEqual(self.inspect()["text"].strip(), "ﾊﾝｶｸ ①")

    def test_what_does_not_fit_on_the_disk_leaves_the_file_that_was_there(self):
        before = self.compose("first", "text")
        for more in (100, 10_000, 100_000):  # less than what is written together, and more
            with open(self.path("body"), "w") as file:
                file.write("x" * more)
            limit = len(before) if more > 100 else 50
            done = subprocess.run(
                [VORNCTL, "compose", "--from", "a@x", "--to", "b@x", "--subject=second",
                 "--body-file", self.path("body"), "--out", self.path("out")], capture_output=True,
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
            self.assertEqual(done.returncode, 1, done.stderr.decode())
            with open(self.path("out"), "rb") as file:
                self.assertEqual(file.read(), before)
            self.assertEqual(sorted(os.listdir(self.folder.name)), ["body", "out"])

    def test_uuencoded_files_are_found_again(self):
        data = bytes(range(256)) * 3
        with open(self.path("資料.bin"), "wb") as file:
            file.write(data)
        source = self.compose("uu", "本文", "--mime", "uu", "--charset", "jis", "--attach",
                              self.path("資料.bin"))
        self.assertNotIn(b"\r\n--", source.split(b"\r\n\r\n", 1)[1])
        self.assertIn(b"\r\n`\r\nend\r\n.\r\n", source)
        shown = self.inspect()
        self.assertEqual(shown["text"].strip(), "本文")
        self.assertEqual([(a["name"], a["sha256"]) for a in shown["attachments"]],
                         [("資料.bin", hashlib.sha256(data).hexdigest())])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
