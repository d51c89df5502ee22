#!/usr/bin/env python3
"""Receiving 10,000 messages of mixed size from Dovecot on loopback: vornctl into its encrypted
store, mpop into a plain Maildir, mpop followed by an index of mu, and a bare pipelined RETR that
throws everything away, in turns. With a delay, everything goes through a proxy that holds every
byte back for half of it in each direction.

Prints one JSON line per figure: the median of the rounds in seconds, and the ratios to mpop and to
the bare RETR. The last line is a run of transfer-bench: what the user interface would have felt.
usage: receive.py VORNCTL TRANSFER_BENCH [--messages N] [--rounds N] [--delay MS] [--mu]
"""
import argparse
import base64
import email.utils
import json
import os
import pathlib
import random
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "support"))
from dovecot import Dovecot  # noqa: E402
from peers import install  # noqa: E402


def make_mail(folder, count):
    """Mixed sizes, 118 MB for 10,000 messages: mostly short, some with large attachments."""
    rng = random.Random(20261124)
    words = "会議 資料 お世話 確認 明日 東京 報告 見積 請求 予定 ありがとうございます".split()
    total = 0
    for i in range(count):
        size = rng.choice([1500, 3000, 3000, 6000, 6000, 12000, 12000, 24000, 32500])
        text = ""
        while len(text.encode("iso2022_jp")) < min(size, 6000):
            text += "".join(rng.choice(words) for _ in range(8)) + "。\n"
        body = text.encode("iso2022_jp").decode("ascii")
        boundary = "b%d" % i
        rest = size - len(body)
        parts = "--%s\nContent-Type: text/plain; charset=ISO-2022-JP\n\n%s\n" % (boundary, body)
        if rest > 500:
            blob = rng.randbytes(45)
            line = base64.b64encode(blob).decode() + "\n"
            parts += ("--%s\nContent-Type: application/pdf; name=a.pdf\n"
                      "Content-Transfer-Encoding: base64\n\n%s" % (boundary, line * (rest // 61)))
        source = ("From: =?UTF-8?B?5L2Q6Jek?= <sato%d@example.jp>\nTo: yamada@example.org\n"
                  "Date: %s\nMessage-ID: <%d@example.jp>\n"
                  "Subject: =?UTF-8?B?5Lya6K2w44Gu44GU5qGI5YaF?= %d\nMIME-Version: 1.0\n"
                  "Content-Type: multipart/mixed; boundary=%s\n\n%s--%s--\n"
                  % (i % 50, email.utils.formatdate(1700000000 + i), i, i, boundary, parts,
                     boundary))
        path = folder / ("%d.%06d.bench" % (1700000000 + i, i))
        path.write_text(source)
        total += len(source) + source.count("\n")
    return total


def bare(port):
    start = time.perf_counter()
    with socket.create_connection(("127.0.0.1", port)) as s:
        f = s.makefile("rb", buffering=1 << 20)
        f.readline()
        s.sendall(b"USER u\r\nPASS secret\r\nSTAT\r\n")
        f.readline(), f.readline()
        count = int(f.readline().split()[1])
        sent = 0
        for i in range(count):
            if sent < min(count, i + 1000):
                more = range(sent + 1, min(count, i + 2000) + 1)
                s.sendall(b"".join(b"RETR %d\r\n" % number for number in more))
                sent = more[-1]
            f.readline()
            while f.readline() != b".\r\n":
                pass
        s.sendall(b"QUIT\r\n")
        f.readline()
    return time.perf_counter() - start


def mpop(port, work):
    shutil.rmtree(work / "mpop", ignore_errors=True)
    for part in ("cur", "new", "tmp"):
        (work / "mpop" / part).mkdir(parents=True)
    config = work / "mpoprc"
    config.write_text(f"account a\nhost 127.0.0.1\nport {port}\nuser u\npassword secret\n"
                      f"auth user\ntls off\nkeep on\nonly_new on\nreceived_header off\n"
                      f"uidls_file {work}/mpop.uidls\ndelivery maildir {work}/mpop\n")
    config.chmod(0o600)
    (work / "mpop.uidls").unlink(missing_ok=True)
    start = time.perf_counter()
    subprocess.run(["mpop", "-C", str(config), "-q", "a"], check=True)
    return time.perf_counter() - start


def mu(work):
    """An index of the Maildir that mpop wrote, made anew."""
    home = work / "mu"
    shutil.rmtree(home, ignore_errors=True)
    start = time.perf_counter()
    for command in (["init", "--maildir", str(work / "mpop")], ["index"]):
        subprocess.run(["mu", command[0], "--muhome", str(home), *command[1:]], check=True,
                       stdout=subprocess.DEVNULL)
    return time.perf_counter() - start


def vorn(program, port, work, count):
    data = work / "vorn"
    shutil.rmtree(data, ignore_errors=True)
    subprocess.run([program, "--data", str(data), "account", "add", "--in-security", "none",
                    "--out-security", "none", "--name", "bench", "--address",
                    "y@example.org", "--in-server", "127.0.0.1", "--in-port", str(port),
                    "--in-user", "u", "--in-password-fd", "0"],
                   input=b"secret\n", check=True, stdout=subprocess.DEVNULL)
    start = time.perf_counter()
    done = subprocess.run([program, "--data", str(data), "receive", "--json"], check=True,
                          capture_output=True)
    seconds = time.perf_counter() - start
    result = json.loads(done.stdout.splitlines()[-1])
    assert result["stored"] == count, result
    return seconds


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("vornctl")
    parser.add_argument("bench")
    parser.add_argument("--delay", type=int, default=0)
    parser.add_argument("--mu", action="store_true")
    parser.add_argument("--messages", type=int, default=10000)
    parser.add_argument("--rounds", type=int, default=3)
    arguments = parser.parse_args()
    program = os.path.abspath(arguments.vornctl)
    if arguments.mu:
        install("/usr/bin/mu", "maildir-utils")
    with tempfile.TemporaryDirectory() as name:
        work = pathlib.Path(name)
        os.environ["XDG_CONFIG_HOME"] = str(work / "config")
        (work / "mail" / "new").mkdir(parents=True)
        size = make_mail(work / "mail" / "new", arguments.messages)
        dovecot = Dovecot(work)
        port = dovecot.port
        proxy = None
        if arguments.delay:
            proxy = subprocess.Popen([sys.executable, "bench/delay_proxy.py", str(port),
                                      str(arguments.delay)], stdout=subprocess.PIPE, text=True)
            port = int(proxy.stdout.readline())
        try:
            bare(dovecot.port)  # the server builds its index once
            times = {"bare": [], "mpop": [], "vorn": []}
            for _ in range(arguments.rounds):
                times["bare"].append(bare(port))
                times["mpop"].append(mpop(port, work))
                if arguments.mu:
                    times.setdefault("mpop and mu", []).append(times["mpop"][-1] + mu(work))
                times["vorn"].append(vorn(program, port, work, arguments.messages))
            felt = subprocess.run([arguments.bench, "receive", str(port),
                                   str(arguments.messages)], check=True, capture_output=True)
        finally:
            if proxy:
                proxy.terminate()
            dovecot.stop()
        peer = statistics.median(times["mpop"])
        wire = statistics.median(times["bare"])
        for who, seconds in times.items():
            median = statistics.median(seconds)
            print(json.dumps({"figure": "receive", "who": who, "messages": arguments.messages,
                              "megabytes": round(size / 1e6, 1),
                              "seconds": round(median, 3), "ratio_to_mpop": round(median / peer, 2),
                              "ratio_to_bare": round(median / wire, 2),
                              "delay_ms": arguments.delay,
                              "rounds": [round(s, 3) for s in seconds]}))
        print(felt.stdout.decode().strip())


if __name__ == "__main__":
    main()
