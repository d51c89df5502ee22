"""Drives Vorn under a virtual display by keys alone.

Vorn is started with --announce and says on its standard output what has become true (the list of
lines is in src/frame/window/announcer.h). A driver waits for those lines and never for the clock,
never asks the window system for a window, and knows of each key that it arrived.
"""
import os
import pathlib
import re
import signal
import subprocess
import sys
import threading
import time

# A machine may be slow; after so long nothing is going to happen any more.
LIMIT = 600
# A probe goes nowhere while no window has the keyboard, so it is repeated.
PROBE_AGAIN = 1

WINDOW_MANAGER = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy><center>yes</center></placement>
  <theme><name>Clearlooks</name><titleLayout>NLIMC</titleLayout></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <keyboard></keyboard>
  <mouse><context name="Titlebar">
    <mousebind button="Left" action="DoubleClick"><action name="ToggleMaximize"/></mousebind>
  </context><context name="Close">
    <mousebind button="Left" action="Click"><action name="Close"/></mousebind>
  </context></mouse>
  <applications>
    <application class="*"><focus>yes</focus></application>
    <application title="Administrator - *">
      <position force="yes"><x>10</x><y>10</y></position>
      <size><width>%d</width><height>%d</height></size>
    </application>
  </applications>
</openbox_config>
"""


class DrivingError(Exception):
    """What was awaited, and what was the case instead."""


def end_on_signals():
    """Lets a script that is asked to end do so by way of its clean-up."""
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: sys.exit(128 + number))


def private_environment(work):
    """The environment of a user who has nothing but the folder `work`."""
    environment = dict(os.environ, HOME=str(work), LANG="C.UTF-8", QT_QPA_PLATFORM="xcb",
                       QT_IM_MODULE="compose")
    for name in ("CONFIG", "DATA", "CACHE", "STATE"):
        environment["XDG_%s_HOME" % name] = str(work / name.lower())
    runtime = work / "runtime"
    runtime.mkdir(mode=0o700, exist_ok=True)
    environment["XDG_RUNTIME_DIR"] = str(runtime)
    for name in ("LC_ALL", "LANGUAGE", "WAYLAND_DISPLAY", "XMODIFIERS", "DBUS_SESSION_BUS_ADDRESS"):
        environment.pop(name, None)
    if os.geteuid() == 0:
        environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"  # the browser engine refuses it to root
    return environment


def stop(process):
    """Ends a program and waits until it has gone."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            process.kill()
    process.wait()


class Display:
    """A virtual display with a window manager of its own settings."""

    def __init__(self, work, environment, pictures, size=(1000, 720), main=(960, 660)):
        self.environment = environment
        self.pictures = pathlib.Path(pictures)
        self.pictures.mkdir(parents=True, exist_ok=True)
        self.taken = []
        read, write = os.pipe()
        # Keys do not repeat: on a slow machine much time lies between press and release.
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "%dx%dx24" % size, "-nolisten",
             "tcp", "-noreset", "-r"], pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        self.manager = None
        with os.fdopen(read) as told:
            number = told.readline().strip()  # when it is ready
        if not number:
            raise DrivingError("Xvfb does not start (exit code %s)" % self.server.wait())
        environment["DISPLAY"] = ":" + number
        settings = work / "openbox.xml"
        settings.write_text(WINDOW_MANAGER % main)
        self.manager = subprocess.Popen(
            ["openbox", "--config-file", str(settings), "--startup", "echo ready"],
            # In a locale that is not installed it says so before anything else.
            env=dict(environment, LANG="C.UTF-8"), stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True)
        if self.manager.stdout.readline().strip() != "ready":
            stop(self.server)
            raise DrivingError("openbox does not start (exit code %s)" % self.manager.wait())

    def stop(self):
        stop(self.manager)
        stop(self.server)

    def xdotool(self, *words):
        subprocess.run(["xdotool", *words], env=self.environment, check=True)

    def shoot(self, name):
        path = self.pictures / (name + ".png")
        subprocess.run(["import", "-window", "root", str(path)], env=self.environment, check=True)
        self.taken.append(path)
        print(path, flush=True)


class Vorn:
    """The program, and what it has announced."""

    def __init__(self, program, data, display):
        self.display = display
        self.log = pathlib.Path(str(data) + ".messages")
        self.lines = []
        self.mark = 0  # lines before it were there when the last key was pressed
        self.probe = 0
        self.changed = threading.Condition()
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen([str(program), "--data", str(data), "--announce"],
                                            env=display.environment, stdin=subprocess.DEVNULL,
                                            cwd=pathlib.Path(data).parent,
                                            stdout=subprocess.PIPE, stderr=log, text=True)
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()

    def read(self):
        for line in self.process.stdout:
            with self.changed:
                self.lines.append(line.rstrip("\n"))
                self.changed.notify_all()
        with self.changed:
            self.changed.notify_all()

    def await_state(self, holds, what, seconds=LIMIT):
        """Waits until `holds` gives something for the lines so far, and gives it. None after
        `seconds` where those are named; after the general limit, or when the program has ended, it
        fails."""
        end = time.monotonic() + seconds
        with self.changed:
            while True:
                ended = not self.reader.is_alive()
                found = holds()
                if found:
                    return found
                if ended:
                    self.fail(what, "the program ended with code %s" % self.process.wait())
                rest = end - time.monotonic()
                if rest <= 0:
                    break
                self.changed.wait(min(rest, 5))
        if seconds < LIMIT:
            return None
        self.fail(what, "it did not come in %d seconds" % seconds)

    def fail(self, what, reason):
        try:
            self.display.shoot("failure")
        except (OSError, subprocess.SubprocessError) as error:
            reason += "; no picture (%s)" % error
        said = self.log.read_text(errors="replace").splitlines()[-5:]
        raise DrivingError("awaited: %s; %s; active window: %s; announced last:\n  %s%s" % (
            what, reason, self.active(), "\n  ".join(self.lines[-12:]),
            "\nand on the error output:\n  " + "\n  ".join(said) if said else ""))

    def active(self):
        """The name of the window that has the keyboard, "-" for none."""
        named = [line[7:] for line in self.lines if line.startswith("active ")]
        return named[-1] if named else "-"

    def expect(self, *patterns):
        """Waits until each of the lines has come since the last key, whatever their order."""
        for pattern in patterns:
            whole = re.compile(pattern)
            self.await_state(lambda: any(whole.fullmatch(line) for line in self.lines[self.mark:]),
                             pattern)

    def expect_active(self, name):
        self.await_state(lambda: self.active() == name, "active " + name)

    def settle(self):
        """Waits until all keys so far have done their work and it can be seen. Gives the number of
        key presses that have reached the program."""
        self.probe = 1 - self.probe  # a late answer to an earlier probe is none to this one
        before = len(self.lines)
        answer = re.compile("settled %d ([0-9]+)" % self.probe)

        def answered():
            return next(filter(None, map(answer.fullmatch, self.lines[before:])), None)

        for _ in range(LIMIT // PROBE_AGAIN):
            self.display.xdotool("key", "shift+Pause" if self.probe == 1 else "Pause")
            found = self.await_state(answered, "an answer to the key Pause", PROBE_AGAIN)
            if found:
                return int(found.group(1))
        self.fail("an answer to the key Pause", "no window of the program takes keys")

    def key(self, *keys):
        """Presses one key after the other, each of which arrives once."""
        for key in keys:
            before = self.settle()
            with self.changed:
                self.mark = len(self.lines)
            while True:
                self.display.xdotool("key", "--clearmodifiers", key)
                if self.settle() > before:
                    break
                print("the key %s was lost and is pressed again" % key, file=sys.stderr)

    def type(self, text):
        """Types characters of the plain keyboard into the control that has the focus."""
        before = self.settle()
        self.display.xdotool("type", "--delay", "0", text)
        arrived = self.settle() - before
        if arrived != len(text):
            self.fail("%d typed characters" % len(text), "%d arrived" % arrived)

    def shoot(self, name):
        self.settle()
        self.display.shoot(name)

    def quit(self, key):
        """Presses the key that ends the program, which has to end well."""
        self.settle()
        self.display.xdotool("key", "--clearmodifiers", key)
        try:
            code = self.process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            self.fail("the end of the program", "it did not come in %d seconds" % LIMIT)
        if code != 0:
            self.fail("the end of the program", "its exit code is %d" % code)
