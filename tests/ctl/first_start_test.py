#!/usr/bin/env python3
"""The first start of a data folder is killed at random moments, and two first starts run at once.
Whatever happened, the next start finds one usable profile.

usage: first_start_test.py VORNCTL KILLS PAIRS
"""
import pathlib
import random
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import vornctl  # noqa: E402

VORNCTL, KILLS, PAIRS = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])


class Store(vornctl.Store):
    """A data folder and user settings of their own, neither there yet."""

    def __init__(self, work, number):
        super().__init__(VORNCTL, work, f"data{number}", f"config{number}")

    def assert_usable(self):
        # Opening again after the work shows that nothing was left half done.
        for _ in range(2):
            self.ctl("list", "受信")
        self.ctl("check")
        profiles = sorted(path.name for path in self.data.glob("_profile*"))
        assert len(profiles) == 1, profiles
        left = [str(path) for path in self.data.rglob("*.new-*")]
        assert not left, left


def main():
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        whole = Store(work, "whole")
        started = time.monotonic()
        whole.ctl("list", "受信")
        # How long a start takes changes with what else the machine does.
        longest = time.monotonic() - started
        chance = random.Random(20261125)
        starts = killed = 0
        while killed < KILLS:
            store = Store(work, starts)
            starts += 1
            started = time.monotonic()
            process = store.start("list", "受信")
            try:
                process.communicate(timeout=chance.uniform(0.005, longest))
                longest = time.monotonic() - started
            except subprocess.TimeoutExpired:
                process.kill()
                process.communicate()
                longest *= 1.05
                killed += 1
            store.assert_usable()
        for number in range(PAIRS):
            store = Store(work, f"pair{number}")
            both = [store.start("list", "受信"), store.start("list", "受信")]
            for process in both:
                _, err = process.communicate()
                assert process.returncode == 0, err.decode()
            store.assert_usable()
    print(f"{killed} of {starts} first starts killed, {PAIRS} pairs; every store usable")


main()
