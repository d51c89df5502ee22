#!/usr/bin/env python3
"""Whatever the user's file mode mask, everything in the data folder is for its owner alone, and so is a
page that is written elsewhere; an export follows the mask.

usage: private_files_test.py VORNCTL STORE_WORKER SAMPLES
"""
import os
import pathlib
import stat
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import vornctl  # noqa: E402

VORNCTL, WORKER, SAMPLES = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])


def mode(path):
    return stat.S_IMODE(path.stat().st_mode)


def assert_private(folder):
    wrong = [f"{path} {mode(path):o}" for path in [folder, *folder.rglob("*")]
             if mode(path) & 0o077]
    assert not wrong, wrong


def main():
    os.umask(0)
    with tempfile.TemporaryDirectory() as folder:
        run(pathlib.Path(folder))


def run(work):
    store = vornctl.Store(VORNCTL, work)
    data, page = store.data, work / "page.html"

    def ctl(*arguments):
        return store.run(*arguments).stderr.decode()

    ctl("import", str(next(SAMPLES.glob("*.eml"))))
    assert_private(data)
    assert_private(work / "config")
    ctl("page", "受信", "--out", str(page))
    ctl("export", "受信", "--out", str(work / "box"))
    assert mode(page) == 0o600 and mode(work / "box") == 0o666, (mode(page), mode(work / "box"))

    # While a program works: its logs, copies and locks.
    worker = subprocess.Popen([WORKER, str(data), ""], stdout=subprocess.PIPE, text=True,
                              env=store.environment)
    while not worker.stdout.readline().startswith("changed"):
        pass
    for _ in range(200):
        try:
            assert_private(data)
        except FileNotFoundError:
            pass  # it came and went
        time.sleep(0.005)
    worker.kill()
    worker.wait()

    # What an earlier version left open to others is closed at the next start.
    other = work / "other"
    store.data = other
    ctl("list", "受信")
    (other / "temp").mkdir(exist_ok=True)
    (other / "temp" / "page.html").write_text("x")
    for path in [other, *other.rglob("*")]:
        path.chmod(0o777)
    # A link leads out of it: what lies there keeps its mode, and nothing is opened or emptied there.
    outside = work / "outside"
    outside.mkdir()
    (outside / "clip_1.html").write_text("x")
    profile = next(path for path in other.iterdir() if (path / "profile.lock").exists())
    for link in [other / "layout", profile / "link", profile.with_name("navi.link")]:
        assert not link.exists(), link
        link.symlink_to(outside)
    (other / "temp" / "page.html").unlink()
    (other / "temp").rmdir()
    (other / "temp").symlink_to(outside)
    for path in [outside, outside / "clip_1.html"]:
        path.chmod(0o777)
    ctl("list", "受信")
    assert [mode(path) for path in [outside, outside / "clip_1.html"]] == [0o777, 0o777]
    assert not (other / "temp").is_symlink() and (other / "layout").is_symlink()
    for link in [other / "layout", profile / "link", profile.with_name("navi.link")]:
        link.unlink()
    (other / "temp").mkdir(mode=0o777, exist_ok=True)
    (other / "temp").chmod(0o777)
    ctl("list", "受信")
    assert_private(other)
    # A folder with things of other programs keeps its own mode.
    (other / "notes.txt").write_text("x")
    other.chmod(0o755)
    ctl("list", "受信")
    assert mode(other) == 0o755 and mode(other / "notes.txt") == 0o666
    assert ctl("list", "受信") == ""
    other.chmod(0o777)
    assert "ほかの利用者も書き込めます" in ctl("list", "受信")
    print("everything is private")


main()
