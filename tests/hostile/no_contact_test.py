#!/usr/bin/env python3
"""Nobody learns that a mail was opened, and nothing of it stays in clear: the program shows every
mail that `vectors.py` makes, in a network of its own in which each look-up of a name and each
connection is written down; another user tries all that it has, and the files that it leaves are
searched.

usage: no_contact_test.py VORN VORNCTL [VECTORS-IN-A-MAIL]      (default 1)

Needs root, for the network of its own (otherwise it ends with 77 and has tested nothing), and what
scripts/setup installs.
"""
import ctypes
import fcntl
import json
import os
import pathlib
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import threading

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import driving  # noqa: E402
import neighbour  # noqa: E402
import vectors  # noqa: E402

VORN, VORNCTL = sys.argv[1:3]
TOGETHER = int(sys.argv[3]) if len(sys.argv) > 3 else 1
INBOX = "01_folder_1_INBOX0000000"
ROWS = 100  # of a page
# What the server of a picture sends instead of one: it would lead the engine to other hosts.
ANSWER = (b"HTTP/1.1 200 OK\r\nContent-Type: image/svg+xml\r\nSet-Cookie: reader=1\r\n"
          b"Link: <http://preload.spy.test/x.gif>; rel=preload; as=image\r\n"
          b"Link: <http://connect.spy.test>; rel=preconnect\r\nConnection: close\r\n\r\n"
          b'<svg xmlns="http://www.w3.org/2000/svg"><image href="http://drawn.spy.test/"/></svg>')
# Where all hosts are: pictures come from public addresses alone (this one is of RFC 5737).
ELSEWHERE = "203.0.113.1"
MARKER = "xyzzy-ひみつの言葉"


def enter_own_network(work):
    """A network with nothing but the loopback device, where names are asked for there."""
    libc = ctypes.CDLL(None, use_errno=True)
    new_mounts, new_network, private, bind = 0x00020000, 0x40000000, 0x40000 | 0x4000, 0x1000
    if libc.unshare(new_mounts | new_network) != 0:
        raise OSError(ctypes.get_errno(), "no network of its own; root is needed")
    libc.mount(b"none", b"/", None, private, None)
    resolver = work / "resolv.conf"
    resolver.write_text("nameserver 127.0.0.1\noptions timeout:1 attempts:1\n")
    target = os.path.realpath("/etc/resolv.conf").encode()
    if libc.mount(str(resolver).encode(), target, None, bind, None) != 0:
        raise OSError(ctypes.get_errno(), "the resolver cannot be replaced")
    with socket.socket() as probe:
        up, set_flags, set_address = 1, 0x8914, 0x8916
        fcntl.ioctl(probe, set_flags, struct.pack("16sh", b"lo", up))
        address = struct.pack("16sHH4s8x", b"lo:1", socket.AF_INET, 0, socket.inet_aton(ELSEWHERE))
        fcntl.ioctl(probe, set_address, address)


class Listeners:
    """Whoever is asked for a name, or connected to, says so; every name is of the one host elsewhere."""

    def __init__(self):
        self.heard = []
        self.names = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.names.bind(("127.0.0.1", 53))
        threading.Thread(target=self.answer_names, daemon=True).start()
        for port in (21, 80, 81, 443, 445):
            listener = socket.create_server(("", port))
            threading.Thread(target=self.accept, args=(listener, port), daemon=True).start()

    def answer_names(self):
        while True:
            query, sender = self.names.recvfrom(4096)
            labels, at = [], 12
            while query[at]:
                labels.append(query[at + 1:at + 1 + query[at]].decode(errors="replace"))
                at += 1 + query[at]
            self.heard.append(("name", ".".join(labels)))
            kind = query[at + 1:at + 3]
            question = query[12:at + 5]
            found = kind == b"\0\1"
            header = query[:2] + b"\x81\x80\0\1" + (b"\0\1" if found else b"\0\0") + b"\0\0\0\0"
            address = b"\xc0\x0c\0\1\0\1\0\0\0\x3c\0\4" + socket.inet_aton(ELSEWHERE)
            answer = address if found else b""
            self.names.sendto(header + question + answer, sender)

    def accept(self, listener, port):
        while True:
            connection, _ = listener.accept()
            with connection:
                connection.settimeout(5)
                try:
                    request = connection.recv(4096)
                    connection.sendall(ANSWER)
                except OSError:
                    request = b""
            self.heard.append((port, request.decode(errors="replace")))


class Store:
    def __init__(self, work, environment):
        self.data = work / "vorn"
        self.environment = environment

    def run(self, *words):
        return subprocess.run([VORNCTL, "--data", str(self.data), *words], env=self.environment,
                              check=True, stdout=subprocess.PIPE).stdout.decode()

    def subjects(self):
        lines = self.run("list", INBOX, "--json").splitlines()
        return [json.loads(line)["subject"] for line in lines]


def write_mails(folder):
    folder.mkdir()
    pieces = vectors.HTML
    groups = [pieces[at:at + TOGETHER] for at in range(0, len(pieces), TOGETHER)]
    for number, group in enumerate(groups):
        source = vectors.mail(number, "m%d.spy.test" % number, group, MARKER)
        (folder / ("%03d.eml" % number)).write_bytes(source)
    (folder / "control.eml").write_bytes(vectors.control("control.spy.test"))
    return len(groups)


def show_html(vorn):
    """A message that has nothing else is shown as HTML at once."""
    vorn.expect("loaded wbHtml")


def to_end(vorn, count, key):
    """Goes to the first or the last page, if there are several."""
    if count > ROWS and vorn.at != key:
        vorn.key("shift+F6", "alt+" + key)
        vorn.expect("page %s %d" % (INBOX, ROWS if key == "Home" else (count - 1) % ROWS + 1))
    vorn.at = key
    vorn.key("shift+F6", key)


def show_all(vorn, subjects):
    """Opens every mail but the control in one window, each as HTML."""
    to_end(vorn, len(subjects), "Home")
    vorn.key(*["Down"] * (subjects[0] == "control"), "Return")
    vorn.expect("shown Mail")
    vorn.expect_active("Mail")
    show_html(vorn)
    for _ in range(len(subjects) - 2):
        vorn.key("ctrl+Next")
        show_html(vorn)
    vorn.at = "End"  # the list has come along
    vorn.key("Escape")
    vorn.expect("closed Mail")
    vorn.expect_active("parent")


def show_control(vorn, subjects, listeners):
    """After the user's word the picture is asked for, and nothing but it."""
    to_end(vorn, len(subjects), "Home" if subjects[0] == "control" else "End")
    vorn.key("Return")
    vorn.expect_active("Mail")
    show_html(vorn)
    assert not listeners.heard, listeners.heard
    vorn.key("alt+r")
    vorn.expect("loaded wbHtml")
    vorn.await_state(lambda: any(port == 80 for port, _ in listeners.heard), "the picture's request")
    names = {name for port, name in listeners.heard if port == "name"}
    assert names == {"control.spy.test"}, names
    requests = [request for port, request in listeners.heard if port != "name"]
    for request in requests:
        assert request.startswith("GET /seen.gif "), request
        for word in ("Chrome", "QtWebEngine", "Linux", "Referer", "Cookie", "avif", "svg", "ja"):
            assert word.lower() not in request.lower(), request
    vorn.key("Escape")
    vorn.expect("closed Mail")


def clear_text(work):
    """The files with words of a mail in them, in any of the codes they may be in."""
    words = [MARKER.encode(code) for code in ("utf-8", "utf-16-le", "cp932", "euc-jp")]
    words += [b"xyzzy-", "xyzzy-".encode("utf-16-le")]
    found = []
    for path in work.rglob("*"):
        if path.is_file() and not path.is_symlink() and "mails" not in path.parts:
            content = path.read_bytes()
            found += [path] if any(word in content for word in words) else []
    return found


def go(work):
    environment = driving.private_environment(work)
    environment["TMPDIR"] = str(work / "tmp")
    (work / "tmp").mkdir()
    listeners = Listeners()
    count = write_mails(work / "mails")
    store = Store(work, environment)
    store.run("import", str(work / "mails"))
    subjects = store.subjects()
    assert len(subjects) == count + 1 and "control" in (subjects[0], subjects[-1]), subjects
    display = driving.Display(work, environment, work / "pictures")
    started = []

    def start():
        vorn = driving.Vorn(VORN, store.data, display)
        started.append(vorn.process)
        vorn.expect_active("login")
        vorn.key("Return")
        vorn.expect("page %s %d" % (INBOX, count % ROWS + 1))
        vorn.at = "End"  # where a folder opens
        vorn.expect_active("parent")
        return vorn

    def own_folders():
        """All that the program has made; the toolkit's caches of shaders know nothing of mails."""
        places = map(work.joinpath, ("vorn", "runtime", "config", "data", "state"))
        return [*filter(pathlib.Path.exists, places), *(work / "tmp").iterdir()]

    try:
        vorn = start()
        show_all(vorn, subjects)
        assert not listeners.heard, listeners.heard
        show_control(vorn, subjects, listeners)
        vorn.quit("ctrl+q")
        assert not clear_text(work), clear_text(work)
        # Whatever ends it, nothing stays, or nothing longer than until the next start.
        for number in (signal.SIGTERM, signal.SIGKILL):
            vorn = start()
            vorn.key("shift+F6", "Home", "Down", "Return")
            vorn.expect_active("Mail")
            show_html(vorn)
            gained = neighbour.gains(own_folders(), vorn.process.pid, [str(vorn.log)])
            assert not gained, gained
            vorn.process.send_signal(number)
            vorn.process.wait()
            gained = neighbour.gains(own_folders())
            assert not gained, gained
            left = [path for path in clear_text(work)
                    if number == signal.SIGTERM or store.data / "temp" not in path.parents]
            assert not left, (number, left)
        vorn = start()
        assert not clear_text(work / "tmp"), clear_text(work / "tmp")
        vorn.quit("ctrl+q")
        assert not clear_text(work), clear_text(work)
    finally:
        for process in started:
            driving.stop(process)
        display.stop()
    print("%d mails with %d ways to be noticed: nothing was asked for, nothing stays in clear" %
          (count, len(vectors.HTML)))


def main():
    driving.end_on_signals()
    if os.geteuid() != 0:
        print("not tested: a network of its own needs root")
        sys.exit(77)
    with tempfile.TemporaryDirectory() as name:
        work = pathlib.Path(name)
        work.chmod(0o755)  # what is in it is protected by the program alone
        enter_own_network(work)
        go(work)


main()
