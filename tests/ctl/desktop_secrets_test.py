#!/usr/bin/env python3
"""The code of a profile without a password is kept by a real secret service of the desktop: it opens
while that is unlocked and with nothing but the typed code otherwise.

usage: desktop_secrets_test.py VORNCTL LYING_SECRETS
"""
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time

VORNCTL, LYING_SECRETS = sys.argv[1:3]
LIMIT = 300  # seconds
BUS = """<busconfig><type>session</type><listen>unix:path=%s</listen>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>"""


class Desktop:
    """A session bus, which starts no service by itself, and the secret service on it."""

    def __init__(self, work):
        socket = work / "bus"
        rules = work / "bus.conf"
        rules.write_text(BUS % socket)
        runtime = work / "runtime"
        runtime.mkdir(mode=0o700)
        self.environment = dict(os.environ, HOME=str(work), XDG_DATA_HOME=str(work / "share"),
                                XDG_CONFIG_HOME=str(work / "config"), XDG_RUNTIME_DIR=str(runtime),
                                DBUS_SESSION_BUS_ADDRESS="unix:path=%s" % socket)
        self.bus = subprocess.Popen(["dbus-daemon", "--config-file=%s" % rules, "--nofork",
                                     "--print-address"], stdout=subprocess.PIPE)
        self.bus.stdout.readline()
        self.service = None

    def unlock(self):
        self.start(["--unlock"], b"password of the desktop")

    def lock(self):
        self.start([], b"")

    def start(self, options, typed):
        self.run(["gnome-keyring-daemon", "--foreground", "--components=secrets", *options], typed)

    def run(self, command, typed=b""):
        self.stop()
        self.service = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env=self.environment)
        self.service.stdin.write(typed)
        self.service.stdin.close()
        self.wait(lambda names: "org.freedesktop.secrets" in names)

    def stop(self):
        if self.service is None:
            return
        self.service.terminate()
        self.service.wait(LIMIT)
        self.service = None
        self.wait(lambda names: "org.freedesktop.secrets" not in names)

    def end(self):
        self.stop()
        self.bus.terminate()
        self.bus.wait(LIMIT)

    def wait(self, wanted):
        end = time.monotonic() + LIMIT
        while not wanted(self.names()):
            assert time.monotonic() < end, "the secret service does not come or go"
            time.sleep(0.02)

    def names(self):
        return self.ask("dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
                        "/", "org.freedesktop.DBus.ListNames")

    def secret(self, name):
        return self.ask("secret-tool", "lookup", "server", "Vorn", "user", name).strip()

    def ask(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True,
                              check=True).stdout


class Store:
    def __init__(self, data, environment):
        self.data, self.environment = data, environment

    def login(self, typed=None, bus=True):
        """What the program complains of, empty after a login."""
        environment = dict(self.environment)
        if not bus:
            del environment["DBUS_SESSION_BUS_ADDRESS"]
        options = ["--password-fd", "0"] if typed is not None else []
        done = subprocess.run([VORNCTL, "--data", self.data, *options, "list", "受信"],
                              input=(typed or "").encode(), capture_output=True, env=environment,
                              timeout=LIMIT)
        assert (done.returncode == 0) == (not done.stderr), done
        return done.stderr.decode()

    def key_file(self):
        return next(self.data.glob("_profile*/profile.key"))

    def files_with(self, text):
        return [path for path in self.data.rglob("*")
                if path.is_file() and text.encode() in path.read_bytes()]


def main():
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        desktop = Desktop(work)
        try:
            # Nobody who keeps secrets: a file, as on a computer without a desktop.
            plain = Store(work / "plain", desktop.environment)
            assert plain.login() == ""
            code = plain.key_file().read_text().strip()
            assert re.fullmatch(r"([0-9A-Z]{5}-){5}[0-9A-Z]{5}", code), code
            former = code

            # One that says yes and keeps nothing is not believed.
            desktop.run([LYING_SECRETS])
            lied = Store(work / "lied", desktop.environment)
            assert lied.login() == "" and lied.login() == ""
            assert re.fullmatch(r"([0-9A-Z]{5}-){5}[0-9A-Z]{5}", lied.key_file().read_text().strip())

            desktop.unlock()
            store = Store(work / "data", desktop.environment)
            assert store.login() == "" and store.login() == ""
            words = store.key_file().read_text().split()
            assert words[0] == "secret" and len(words) == 2, words
            code = desktop.secret(words[1])
            assert code and not store.files_with(code[:11]), code
            # A profile of before keeps its file.
            assert plain.login() == "" and plain.key_file().read_text().strip() == former

            for away in (desktop.lock, desktop.stop):
                away()
                refusal = store.login()
                assert "キーリング" in refusal and "回復コード" in refusal, refusal
                assert store.login(code) == ""
                assert not store.files_with(code[:11])
                assert store.key_file().read_text().split() == words
            desktop.unlock()
            desktop.service.send_signal(signal.SIGSTOP)
            begun = time.monotonic()
            assert "キーリング" in store.login()
            assert time.monotonic() - begun < 35, "ten seconds and a start, not the bus's own limits"
            desktop.service.send_signal(signal.SIGCONT)
            assert "キーリング" in store.login(bus=False)
            assert store.login(code, bus=False) == ""
            desktop.unlock()
            assert store.login() == ""
        finally:
            desktop.end()


if __name__ == "__main__":
    main()
