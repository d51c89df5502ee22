#!/usr/bin/env python3
"""Runs vornctl as scripts do, against the loopback server, and reads what it prints.

usage: commands_test.py VORNCTL LOOPBACK-SERVER STORE-WORKER SAMPLES
"""
import json
import os
import pathlib
import re
import resource
import subprocess
import sys
import tempfile
import unittest

VORNCTL, SERVER, STORE_WORKER, SAMPLES = sys.argv[1:5]
PASSWORD = "pässwört日本"


class Commands(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.data = os.path.join(self.folder.name, "data")
        self.environment = dict(os.environ, XDG_CONFIG_HOME=self.folder.name)
        self.server = subprocess.Popen([SERVER, "--mail", SAMPLES, "--password", PASSWORD], stdout=subprocess.PIPE,
                                       text=True)
        words = self.server.stdout.readline().split()
        self.pop3, self.smtp, self.messages = words[1], words[3], int(words[5])

    def tearDown(self):
        self.server.kill()
        self.server.communicate()
        self.folder.cleanup()

    def run_ctl(self, *arguments, code=0, stdin=PASSWORD.encode() + b"\n"):
        done = subprocess.run([VORNCTL, "--data", self.data, *arguments], input=stdin,
                              capture_output=True, env=self.environment)
        self.assertEqual(done.returncode, code, (arguments, done.stdout, done.stderr.decode()))
        self.errors = done.stderr.decode()
        return done.stdout.decode()

    def add_account(self, *more, code=0, name="仕事", security=("--in-security", "none",
                                                            "--out-security", "none")):
        return self.run_ctl("account", "add", "--name", name, "--address", "y@example.org",
                            "--in-server", "127.0.0.1", "--in-port", self.pop3, "--in-user",
                            "demo", "--in-password-fd", "0", *security, *more, code=code)

    def receive(self, *more, code=0):
        return json.loads(self.run_ctl("receive", "--json", *more, code=code).splitlines()[-1])

    def test_receives_lists_and_writes_pages(self):
        self.add_account("--default")
        result = self.receive()
        self.assertEqual((result["stored"], result["errors"]), (self.messages, 0))
        result = self.receive("--account", "仕事")
        self.assertEqual((result["stored"], result["known"]), (0, self.messages))

        rows = [json.loads(line) for line in self.run_ctl("list", "Inbox", "--json").splitlines()]
        self.assertEqual(len(rows), self.messages)
        self.assertEqual(set(rows[0]),
                         {"serialId", "subject", "from", "timestamp", "status", "flag"})
        self.assertIn("寿司🍣の日", [row["subject"] for row in rows])
        self.assertEqual({row["status"] for row in rows}, {4})
        self.assertEqual(self.run_ctl("list", "01_folder_2_OUTBOX000000"), "")

        out = os.path.join(self.folder.name, "page.html")
        self.run_ctl("page", "受信", "--page", "1", "--out", out)
        page = pathlib.Path(out).read_bytes().decode("cp932")
        self.assertEqual(page.count("preview:"), self.messages)
        self.assertIn("寿司&#127843;の日", page)

    def test_an_account_that_is_switched_off_receives_when_it_is_named(self):
        self.add_account()
        subprocess.run([STORE_WORKER, self.data, "", "disable", "仕事"], check=True,
                       env=self.environment)
        self.run_ctl("receive", code=1)
        self.assertIn("受信するアカウントがありません", self.errors)
        self.assertEqual(self.receive("--account", "仕事")["stored"], self.messages)

    def test_clear_text_is_spoken_only_when_told(self):
        self.add_account(security=())
        result = self.receive(code=1)
        self.assertEqual((result["stored"], result["errors"]), (0, 1))

    def test_failures_have_codes_and_sentences(self):
        self.add_account()
        self.add_account(code=1)
        self.assertIn("同じオブジェクト名", self.errors)
        self.add_account("--out-port", "many", "--out-password-fd", "0", code=2, name="x")
        self.assertIn("--out-port", self.errors)
        self.run_ctl("--password-fd", "0", "list", "受信", code=3, stdin=b"wrong\n")
        self.assertIn("ログインできませんでした", self.errors)
        self.run_ctl("import", "/nonexistent", os.path.join(SAMPLES, sorted(os.listdir(SAMPLES))[0]), code=1)
        out = os.path.join(self.folder.name, "out")
        self.run_ctl("compose", "--body-file", __file__, "--attach", "/nonexistent", "--out", out,
                     code=1)
        self.assertIn("/nonexistent", self.errors)
        self.assertFalse(os.path.exists(out))
        self.server.kill()
        self.server.wait()
        self.assertEqual(self.receive(code=1)["errors"], 1)
        self.assertIn("接続できません", self.errors)

    def test_the_list_of_profiles_is_left_to_whom_it_belongs(self):
        """A timer or another user has other settings, and so another key."""
        self.add_account()
        listed = pathlib.Path(self.data, "navi.mbx")
        whole = listed.read_bytes()
        own = self.environment["XDG_CONFIG_HOME"]
        self.environment["XDG_CONFIG_HOME"] = os.path.join(own, "other")
        self.run_ctl("list", "受信", code=3)
        self.assertIn("--create", self.errors)
        self.assertEqual(listed.read_bytes(), whole)
        self.assertEqual(list(listed.parent.glob("navi.mbx.*")), [])
        self.run_ctl("list", "受信", "--create")
        self.assertEqual(len(list(listed.parent.glob("navi.mbx.unreadable-*"))), 1)

    def test_the_locale_chooses_the_language(self):
        for variable in ("LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"):
            self.environment.pop(variable, None)
        options = sorted(re.findall(r"--[a-z-]+", self.run_ctl("--help")))
        self.environment["LC_MESSAGES"] = "en_US.UTF-8"
        japanese = re.compile("[\u3000-\u30ff\u4e00-\u9fff\uff00-\uffef]")
        self.assertEqual(sorted(re.findall(r"--[a-z-]+", self.run_ctl("--help"))), options)
        mail = pathlib.Path(self.folder.name) / "mail.eml"
        mail.write_bytes(b"From: nobody@example.com\r\nTo: b@x\r\nSubject: s\r\n\r\ntext\r\n")
        self.add_account(name="work")
        for code, *arguments in (
                (0, "--help"), (2,), (2, "account", "add", "--in-protocol", "imap"),
                (2, "account", "add", "--in-security", "x"), (2, "account", "add", "--in-port", "x"),
                (2, "account", "add", "--out-port", "x"), (2, "receive", "--account"),
                (2, "receive", "--frobnicate", "x"), (1, "receive", "--account", "nobody"),
                (0, "receive"), (0, "list", "受信", "--json"), (1, "list", "nowhere"),
                (1, "send", str(mail)), (1, "send", "/nonexistent"), (1, "send", "--account", "x"),
                (0, "send"), (2, "doubtful", "again"), (1, "doubtful", "again", "x"),
                (2, "page", "Inbox"), (1, "page", "x", "--out", "x"),
                (2, "rules", "add", "subject: x"), (2, "rules", "add", "from: *"), (2, "rules"),
                (0, "rules", "add", "from: *nobody*"), (0, "rules", "test", str(mail)),
                (2, "import"), (1, "import", "/nonexistent"), (0, "import", str(mail)),
                (2, "export", "Inbox"), (1, "export", "x", "--out", "x"),
                (0, "export", "Inbox", "--out", str(mail) + ".mbox"),
                (1, "export", "Inbox", "--out", str(mail) + ".mbox"), (0, "check"),
                (2, "inspect"), (1, "inspect", "/nonexistent"), (0, "inspect", str(mail)),
                (2, "open", "9", "x"), (1, "open", "0", "mail_x"), (1, "open", "0", "/nonexistent"),
                (2, "compose", "--charset", "x"), (1, "compose", "--body-file", "/nonexistent"),
                (2, "compose", "--body-file", str(mail), "--to", "x y"),
                (3, "--profile", "x", "list", "Inbox"), (3, "--password-fd", "0", "check")):
            told = self.run_ctl(*arguments, code=code, stdin=b"wrong\n")
            told = "" if arguments[:1] == ["list"] and code == 0 else told  # of messages
            self.assertIsNone(japanese.search(told + self.errors), (arguments, told, self.errors))
        self.add_account(name="work", code=1)
        self.assertIn("work", self.errors)
        self.assertIsNone(japanese.search(self.errors), self.errors)
        self.server.kill()
        self.server.wait()
        self.run_ctl("receive", code=1)
        self.assertIn("cannot be reached", self.errors)
        self.assertIsNone(japanese.search(self.errors), self.errors)

    def test_rules_stop_mail_by_its_header(self):
        (pathlib.Path(self.folder.name) / "sales.eml").write_bytes(b"From: Sales <s@x.example>\r\n\r\n")
        self.run_ctl("rules", "add", "subject: *", code=2)
        self.run_ctl("rules", "add", "from: *Sales*")
        told = json.loads(self.run_ctl("rules", "test", str(pathlib.Path(self.folder.name) / "sales.eml"), "--json"))
        self.assertEqual(told, {"stop": True, "deleteOnServer": False, "rule": "from: *Sales*"})
        told = self.run_ctl("rules", "test", "-", stdin=b"From: b@x.example\r\n\r\n")
        self.assertEqual(told.strip(), "受信します。")
        self.assertEqual(self.run_ctl("rules", "list").strip(), "from: *Sales*")

    def test_a_stranger_is_sent_by_the_account_that_is_named_and_opened_in_his_code(self):
        self.add_account("--out-port", self.smtp, "--out-server", "127.0.0.1")
        mail = pathlib.Path(self.folder.name) / "mail.eml"
        mail.write_bytes(b"From: nobody@example.com\r\nTo: b@x\r\nSubject: s\r\n\r\n" +
                         "会議の資料をお送りします。".encode("shift_jis") + b"\r\n")
        stranger = mail.read_bytes()
        self.run_ctl("send", str(mail), code=1)
        # Nothing waits, so that giving the command again sends one message.
        told = json.loads(self.run_ctl("send", str(mail), "--account", "仕事", "--json").splitlines()[-1])
        self.assertEqual((told["sent"], told["errors"]), (1, 0))
        # Of two with one address the one that is named sends, and nobody sends for another's address.
        self.add_account("--out-port", self.smtp, "--out-server", "127.0.0.1", name="別")
        mail.write_bytes(b"From: y@example.org\r\nTo: b@x\r\nSubject: t\r\n\r\nx\r\n")
        for name in ("別", "仕事"):
            self.run_ctl("send", str(mail), "--account", name)
            self.assertIn(name + ": ", self.errors)
        self.run_ctl("account", "add", "--name", "他", "--address", "z@example.org", "--in-server", "127.0.0.1",
                     "--in-port", self.pop3, "--in-user", "demo", "--in-password-fd", "0", "--in-security", "none",
                     "--out-security", "none", "--out-port", self.smtp, "--out-server", "127.0.0.1")
        self.run_ctl("send", str(mail), "--account", "他", code=1)
        self.assertIn("差出人はアカウント", self.errors)
        mail.write_bytes(stranger)
        opened = json.loads(self.run_ctl("open", "0", str(mail), "--json"))
        self.assertIn("会議の資料をお送りします。", opened["text"])
        for code in ("shift_jis", "euc_jp", "utf-8"):
            text = "次の会議は来週の火曜日です。"
            mail.write_bytes(b"From: a@x\r\nSubject: s\r\n\r\n" + text.encode(code) + b"\r\n")
            opened = json.loads(self.run_ctl("open", "0", str(mail), "--json"))
            self.assertIn(text, opened["text"], code)
        # A raw subject that is in another code than the text.
        mail.write_bytes("From: a@x\r\nSubject: 山田\r\n\r\n".encode("euc_jp") + text.encode("iso2022_jp") + b"\r\n")
        self.assertEqual(json.loads(self.run_ctl("open", "0", str(mail), "--json"))["subject"], "山田")

    def test_a_stored_message_is_opened_as_its_window_opens_it(self):
        self.add_account("--default")
        self.receive()
        rows = [json.loads(line) for line in self.run_ctl("list", "受信", "--json").splitlines()]
        for row in rows[:3]:
            opened = json.loads(self.run_ctl("open", "0", row["serialId"], "--json"))
            self.assertEqual(opened["subject"], row["subject"])
        reply = json.loads(self.run_ctl("open", "2", rows[0]["serialId"], "--json"))
        self.assertIn(("FROM", "y@example.org"),
                      [(entry["kind"], entry["address"]) for entry in reply["addresses"]])
        self.run_ctl("open", "0", "mail_nobody", code=1)

    def test_the_check_is_of_every_file(self):
        """Though the last one is sound, and the profile's own can be logged in to."""
        self.add_account()
        profile, = pathlib.Path(self.data).glob("_profile*/profile.mbx")
        whole = profile.read_bytes()
        codes = set()
        for page in range(1, len(whole) // 4096):
            profile.write_bytes(whole[:page * 4096] + bytes(4096) + whole[(page + 1) * 4096:])
            done = subprocess.run([VORNCTL, "--data", self.data, "check"], capture_output=True,
                                  env=self.environment)
            codes.add(done.returncode)
        self.assertEqual(codes, {1, 3})

    def test_a_command_that_failed_can_be_given_again(self):
        """Of several files to send, all wait or none, so that none is sent twice."""
        self.add_account()
        self.receive()
        files = []
        for number in range(10):
            files.append(pathlib.Path(self.folder.name) / f"{number}.eml")
            files[-1].write_bytes(b"From: a@x\r\nTo: b@x\r\nSubject: %d\r\n\r\n" % number +
                                  b"text text\r\n" * 10000)
        mail = next(path for path in pathlib.Path(self.data).glob("_profile*/*.mbx")
                    if path.name != "profile.mbx")
        limit = mail.stat().st_size + 40000
        failed = subprocess.run(
            [VORNCTL, "--data", self.data, "send", *files], capture_output=True,
            env=self.environment,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        self.assertEqual(failed.returncode, 1)
        self.assertIn("何も送信していません", failed.stderr.decode())
        self.assertEqual(self.run_ctl("list", "待ち", "--json"), "")

    def sources(self, folder):
        """The sources in a folder, by way of an export as single files."""
        out = os.path.join(self.folder.name, "out-%d" % len(os.listdir(self.folder.name)))
        self.run_ctl("export", folder, "--format", "eml", "--out", out)
        return sorted(path.read_bytes() for path in pathlib.Path(out).iterdir())

    def test_what_is_exported_is_imported_the_same(self):
        self.add_account()
        self.receive()
        before = self.sources("受信")
        self.assertEqual(len(before), self.messages)
        for form in ("mbox", "maildir", "eml"):
            out = os.path.join(self.folder.name, "archive-" + form)
            self.run_ctl("export", "受信", "--format", form, "--out", out)
            told = json.loads(self.run_ctl("import", out, "--json"))
            known = {"imported": 0, "returned": 0, "known": self.messages, "kept": 0, "unreadable": []}
            self.assertEqual(told, known, form)
            self.data = os.path.join(self.folder.name, "data-" + form)
            told = json.loads(self.run_ctl("import", out, "--json"))
            self.assertEqual(told, known | {"imported": self.messages, "known": 0}, form)
            self.assertEqual(self.sources("受信"), before, form)
            told = json.loads(self.run_ctl("import", out, "--json"))
            self.assertEqual(told["known"], self.messages, form)
            self.data = os.path.join(self.folder.name, "data")
        # Another program that fetched the same mail has noted in it what was read.
        box = pathlib.Path(self.folder.name) / "archive-mbox"
        # Each names its sender, and who wrote it.
        self.assertEqual(len(re.findall(rb"(?m)^From \S+ .* remote from vorn$", box.read_bytes())), self.messages)
        noted = re.sub(rb"(?m)^(From \S+ .*\r?\n)", rb"\1Status: RO\nX-UIDL: 7\n", box.read_bytes())
        other = pathlib.Path(self.folder.name) / "noted.mbox"
        other.write_bytes(noted)
        told = json.loads(self.run_ctl("import", str(other), "--json"))
        self.assertEqual((told["imported"], told["known"]), (0, self.messages))
        # What was sent is stored with an end mark, which an export leaves out.
        mail = os.path.join(self.folder.name, "sent.eml")
        pathlib.Path(mail).write_bytes(b"From: y@example.org\r\nTo: b@x\r\nSubject: s\r\n\r\ntext\r\n.\r\n")
        self.run_ctl("send", mail, code=1)
        own = os.path.join(self.folder.name, "own")
        self.run_ctl("export", "待ち", "--format", "eml", "--out", own)
        told = json.loads(self.run_ctl("import", own, "--json"))
        self.assertEqual((told["imported"], told["known"]), (0, 1))
        self.run_ctl("export", "受信", "--out", out, code=1)  # never over something
        # What came from outside is no draft of ours, whatever its last line is.
        dotted = pathlib.Path(self.folder.name) / "dotted.eml"
        dotted.write_bytes(b"From: y@example.org\r\nSubject: dot\r\n\r\ntext\r\n.\r\n")
        self.run_ctl("import", str(dotted), "--json")
        all_mail = os.path.join(self.folder.name, "all")
        self.run_ctl("export", "受信", "--format", "eml", "--out", all_mail)
        self.assertIn(dotted.read_bytes(), [p.read_bytes() for p in pathlib.Path(all_mail).iterdir()])

    def test_imported_mail_has_its_own_date_and_foreign_forms_are_read(self):
        box = pathlib.Path(self.folder.name) / "foreign.mbox"
        box.write_bytes(
            b"From a@b Thu Jan  1 00:00:00 1970\nSubject: second\nDate: Mon, 5 Jan 2004 09:00 +0900\n"
            b"\n>From the start\ntext\n\nFrom c@d Thu Jan  1 00:00:00 1970\nSubject: first\n"
            b"Received: from x by y; Sat, 3 Jan 2004 10:00:00 +0900 (JST)\n"
            b"Date: Fri, 1 Jan 2010 00:00:00 GMT\n\nbody\n")
        self.assertEqual(json.loads(self.run_ctl("import", str(box), "--json"))["imported"], 2)
        rows = [json.loads(line) for line in self.run_ctl("list", "受信", "--json").splitlines()]
        self.assertEqual([row["subject"] for row in rows], ["first", "second"])
        self.assertEqual([row["timestamp"][:7] for row in rows], ["2004-01", "2004-01"])
        self.assertIn(b"\r\n\r\nFrom the start\r\ntext\r\n", self.sources("受信")[1])
        self.run_ctl("import", "/no/such/file", code=1)

    def test_marks_in_a_list_are_seen_and_do_nothing(self):
        mail = pathlib.Path(self.folder.name) / "marks.eml"
        mail.write_bytes("Subject: a\u202egnp.exe\r\nFrom: \u2066y@z\r\n\r\n".encode())
        self.run_ctl("import", str(mail))
        line = self.run_ctl("list", "受信")
        self.assertIn("a[U+202E]gnp.exe", line)
        self.assertFalse({"\u202e", "\u2066"} & set(line), line)

    def test_inspect_needs_no_data_folder(self):
        source = pathlib.Path(SAMPLES, "file-rfc2231.eml").read_bytes()
        shown = json.loads(self.run_ctl("inspect", "-", "--json", stdin=source))
        self.assertEqual(set(shown), {"subject", "addressLines", "addresses", "flag", "fieldId",
                                      "parts", "text", "headers", "html", "attachments"})
        self.assertEqual(shown["attachments"][0]["name"], "見積書.pdf")
        self.assertEqual(shown["addresses"][0],
                         {"kind": "FROM", "address": "sato@example.jp", "name": "佐藤 花子"})
        self.assertEqual([part["name"] for part in shown["parts"]], [None, "見積書.pdf"])
        self.assertEqual(shown["flag"], "0201")
        self.assertFalse(os.path.exists(self.data))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
