"""What another user of the machine gets at: he tries every path, process and socket of a program, by
whatever way he learned of them."""
import json
import os
import stat
import subprocess

NOBODY = 65534

# Runs as the other user; gives what he succeeded in.
TRY = r"""
import json, os, socket, stat, sys
found = []
def attempt(what, path, act):
    try:
        act()
    except OSError:
        return
    found.append("%s %s" % (what, path))
def connect(address):
    with socket.socket(socket.AF_UNIX) as talk:
        talk.connect(address)
asked = json.load(sys.stdin)
for path, mode in asked["paths"]:
    if stat.S_ISSOCK(mode):
        attempt("connect", path, lambda: connect(path))
    elif stat.S_ISDIR(mode):
        attempt("list", path, lambda: os.listdir(path))
        attempt("make", path, lambda: os.close(os.open(path + "/mine", os.O_CREAT | os.O_WRONLY)))
    else:
        attempt("read", path, lambda: open(path, "rb").read(1))
        attempt("write", path, lambda: os.close(os.open(path, os.O_WRONLY | os.O_APPEND)))
        attempt("remove", path, lambda: os.remove(path))
for name in asked["sockets"]:
    attempt("connect", name, lambda: connect("\0" + name))
for process in asked["processes"]:
    for file in ("environ", "mem", "maps", "auxv", "stack"):
        attempt("read", "/proc/%d/%s" % (process, file),
                lambda: open("/proc/%d/%s" % (process, file), "rb").read(1))
    attempt("list", "/proc/%d/fd" % process, lambda: os.listdir("/proc/%d/fd" % process))
    attempt("enter", "/proc/%d/cwd" % process, lambda: os.listdir("/proc/%d/cwd" % process))
    attempt("signal", str(process), lambda: os.kill(process, 0))
json.dump(found, sys.stdout)
"""


def family(process):
    """The process and all that it has started."""
    found, parents = [process], {}
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open("/proc/%s/stat" % name) as words:
                parents[int(name)] = int(words.read().rpartition(")")[2].split()[1])
        except OSError:
            continue  # it has just ended
    for one in found:
        found += [child for child, parent in parents.items() if parent == one]
    return found


def descriptors(processes):
    """What the processes have open: the inodes of their sockets, and paths."""
    sockets, paths = set(), set()
    for process in processes:
        try:
            for number in os.listdir("/proc/%d/fd" % process):
                target = os.readlink("/proc/%d/fd/%s" % (process, number))
                if target.startswith("socket:["):
                    sockets.add(target[8:-1])
                elif target.startswith(("/dev/shm/", "/tmp/", "/run/", "/var/tmp/")):
                    paths.add(target.removesuffix(" (deleted)"))
        except OSError:
            continue
    return sockets, paths


def listening(sockets):
    """The ports and names at which a program waits that has these sockets."""
    ports, names = [], []
    for table in ("tcp", "tcp6", "udp", "udp6"):
        with open("/proc/net/" + table) as lines:
            for words in map(str.split, list(lines)[1:]):
                waits = words[3] == "0A" or table.startswith("udp")
                if words[9] in sockets and waits:
                    ports.append("%s %s" % (table, words[1]))
    with open("/proc/net/unix") as lines:
        for words in map(str.split, list(lines)[1:]):
            accepts = int(words[3], 16) & 0x10000
            if words[6] in sockets and accepts and len(words) > 7:
                names.append(words[7])
    return ports, names


def gains(folders, process=None, others=()):
    """What he gets at in the folders, and of a process and its children; `others` are files that
    they have open and that are not theirs."""
    paths = {}
    for folder in folders:
        for place, _, files in os.walk(folder):
            for path in [place] + [os.path.join(place, name) for name in files]:
                paths[path] = os.lstat(path).st_mode
    processes = family(process) if process else []
    sockets, opened = descriptors(processes)
    ports, names = listening(sockets)
    for path in list(opened) + [name for name in names if name.startswith("/")]:
        if os.path.lexists(path) and path not in others:
            paths[path] = os.lstat(path).st_mode
    asked = {"paths": [(path, mode) for path, mode in paths.items() if not stat.S_ISLNK(mode)],
             "sockets": [name[1:] for name in names if name.startswith("@")],
             "processes": processes}
    tried = subprocess.run(["/usr/bin/python3", "-c", TRY], input=json.dumps(asked), text=True, check=True,
                           stdout=subprocess.PIPE, cwd="/", user=NOBODY, group=NOBODY, extra_groups=[])
    return json.loads(tried.stdout) + ports
