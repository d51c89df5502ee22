"""vornctl over a data folder of a test's own, as its user calls it."""
import json
import os
import subprocess

LIMIT = 300  # seconds


class Store:
    def __init__(self, vornctl, work, data="data", config="config"):
        self.vornctl, self.work, self.data = vornctl, work, work / data
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(work / config))

    def start(self, *arguments, stdout=subprocess.PIPE):
        return subprocess.Popen([self.vornctl, "--data", str(self.data), *arguments], stdout=stdout,
                                stderr=subprocess.PIPE, env=self.environment)

    def run(self, *arguments, stdin=b"", codes=(0,)):
        """What ended with one of these codes."""
        done = subprocess.run([self.vornctl, "--data", str(self.data), *arguments], input=stdin,
                              capture_output=True, env=self.environment, timeout=LIMIT)
        assert done.returncode in codes, (arguments, done.returncode, done.stdout.decode(),
                                          done.stderr.decode())
        return done

    def ctl(self, *arguments, stdin=b"", code=0):
        """What it says on both outputs."""
        done = self.run(*arguments, stdin=stdin, codes=(code,))
        return (done.stdout + done.stderr).decode()

    def rows(self, *arguments, code=0):
        lines = self.run(*arguments, "--json", codes=(code,)).stdout.decode().splitlines()
        return [json.loads(line) for line in lines if line.startswith("{")]

    def add_account(self, name, *more, user="demo", password="demo"):
        """One of a@example.jp at servers of this machine, without encryption."""
        self.run("account", "add", "--in-security", "none", "--out-security", "none", "--name", name,
                 "--address", "a@example.jp", "--in-server", "127.0.0.1", "--in-user", user,
                 "--in-password-fd", "0", "--out-server", "127.0.0.1", *more,
                 stdin=password.encode() + b"\n")


def serve(server, *options):
    """The loopback server, and its ports for POP3 and SMTP."""
    process = subprocess.Popen([server, *options], stdout=subprocess.PIPE, text=True)
    words = process.stdout.readline().split()
    return process, words[1], words[3]
