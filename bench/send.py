#!/usr/bin/env python3
"""Sending messages of 15 kB, one session each, to postfix's smtp-sink on loopback: the program's own
sessions beside smtp-source (a new connection each) and curl (all on one connection), in turns.

Prints one JSON line per figure. Installs postfix (for smtp-sink and smtp-source) and curl when they
are missing.
usage: send.py TRANSFER_BENCH [--messages N] [--rounds N]
"""
import argparse
import json
import pathlib
import socket
import statistics
import subprocess
import tempfile
import time

from peers import install

BYTES = 15000


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def timed(command):
    start = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return time.perf_counter() - start


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("bench")
    parser.add_argument("--messages", type=int, default=1000)
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()
    install("/usr/sbin/smtp-sink", "postfix")
    install("/usr/bin/curl", "curl")
    port = free_port()
    sink = subprocess.Popen(["/usr/sbin/smtp-sink", "-u", "nobody", f"127.0.0.1:{port}", "1000"])
    times = {"vorn": [], "smtp-source": [], "curl": []}
    blocks, peaks = [], []
    try:
        time.sleep(0.5)
        with tempfile.TemporaryDirectory() as name:
            mail = pathlib.Path(name) / "mail"
            mail.write_text("Subject: x\r\n\r\n" + ("x" * 70 + "\r\n") * (BYTES // 72))
            transfer = (f'url = "smtp://127.0.0.1:{port}"\nmail-from = "a@example.org"\n'
                        f'mail-rcpt = "b@example.org"\nupload-file = "{mail}"\n')
            config = pathlib.Path(name) / "curlrc"
            config.write_text("next\n".join([transfer] * arguments.messages))
            for _ in range(arguments.rounds):
                done = subprocess.run([arguments.bench, "send", str(port),
                                       str(arguments.messages), str(BYTES)],
                                      check=True, capture_output=True)
                figure = json.loads(done.stdout)
                times["vorn"].append(figure["seconds"])
                blocks.append(figure["longest_block_ms"])
                peaks.append(figure["peak_mb"])
                times["smtp-source"].append(timed(
                    ["/usr/sbin/smtp-source", "-m", str(arguments.messages), "-l", str(BYTES),
                     "-s", "1", "-f", "a@example.org", "-t", "b@example.org",
                     f"inet:127.0.0.1:{port}"]))
                times["curl"].append(timed(["curl", "-s", "-K", str(config)]))
    finally:
        sink.terminate()
    peer = statistics.median(times["smtp-source"])
    for who, seconds in times.items():
        median = statistics.median(seconds)
        print(json.dumps({"figure": "send", "who": who, "messages": arguments.messages,
                          "seconds": round(median, 3), "ratio_to_smtp_source": round(median / peer, 2),
                          "rounds": [round(s, 3) for s in seconds]}))
    print(json.dumps({"figure": "send", "longest_block_ms": round(statistics.median(blocks), 1),
                      "peak_mb": round(max(peaks), 1)}))


main()
