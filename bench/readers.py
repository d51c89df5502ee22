#!/usr/bin/env python3
"""How many messages of the corpus each reader reads as they are meant, class by class: this
program, Python's email package, GMime and Perl's Email::MIME.

Usage: bench/readers.py [--vornctl build/release/src/vornctl] [--show CLASS]

Blanks are not compared. The referees' HTML is freed of its tags by Python's parser, since none of
them makes text of it. Ends with the messages that a referee reads and this program does not.
"""
import argparse
import collections
import email
import email.policy
import hashlib
import html.parser
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import peers

ROOT = pathlib.Path(__file__).resolve().parent.parent


class Tags(html.parser.HTMLParser):
    """The text of a page without what is not shown."""

    def __init__(self):
        super().__init__()
        self.text, self.unseen = "", 0

    def handle_starttag(self, tag, attrs):
        self.unseen += tag in ("script", "style", "title")

    def handle_endtag(self, tag):
        self.unseen -= tag in ("script", "style", "title") and self.unseen > 0

    def handle_data(self, data):
        if not self.unseen:
            self.text += data


def text_of(parts) -> str:
    """What is shown of `parts`, pairs of subtype and text: the plain ones, or else the HTML."""
    plain = "".join(text for kind, text in parts if kind == "plain")
    if plain.strip():
        return plain
    tags = Tags()
    tags.feed("".join(text for kind, text in parts if kind == "html"))
    return tags.text


def read_by_vorn(path, vornctl) -> dict:
    read = json.loads(subprocess.run([vornctl, "inspect", "--json", path], check=True,
                                     capture_output=True).stdout)
    of_kind = collections.defaultdict(list)
    for entry in read["addresses"]:
        of_kind[entry["kind"].upper()].append(entry)
    return {"subject": read["subject"], "from": (of_kind["FROM"] or [{}])[0],
            "to": [entry["address"] for entry in of_kind["TO"]], "text": read["text"],
            "files": [{"name": file["name"], "sha256": file["sha256"]}
                      for file in read["attachments"]]}


def read_by_python(path) -> dict:
    message = email.message_from_bytes(path.read_bytes(), policy=email.policy.default)
    sender = message["from"].addresses[0] if message["from"] else None
    texts, files = [], []
    for part in message.walk():
        name = part.get_filename()
        if name is not None:
            content = part.get_payload(decode=True) or b""
            files.append({"name": name, "sha256": hashlib.sha256(content).hexdigest()})
        elif part.get_content_maintype() == "text":
            texts.append((part.get_content_subtype(), part.get_content()))
    return {"subject": str(message["subject"] or ""),
            "from": {"name": sender.display_name, "address": sender.addr_spec} if sender else {},
            "to": [one.addr_spec for one in message["to"].addresses] if message["to"] else [],
            "text": text_of(texts), "files": files}


def read_by_program(command, path) -> dict:
    read = json.loads(subprocess.run([*command, path], check=True, capture_output=True,
                                     timeout=60).stdout.decode("utf-8", "replace"))
    read["text"] = text_of(read.pop("texts"))
    return read


def plain(text) -> str:
    return re.sub(r"\s+", "", text or "")


def missing(wanted: str, got: str) -> int:
    """How many characters are neither before nor behind what is wrong."""
    before = 0
    while before < min(len(wanted), len(got)) and wanted[before] == got[before]:
        before += 1
    behind = 0
    while (behind < min(len(wanted), len(got)) - before
           and wanted[-1 - behind] == got[-1 - behind]):
        behind += 1
    return len(wanted) - before - behind


def faults(wanted: dict, read: dict) -> list[str]:
    """What of the message is read otherwise than it is meant."""
    lost = wanted.get("lost", 0)

    def differs(one, other):
        one, other = plain(one), plain(other)
        return one != other and (not lost or missing(one, other) > lost)

    found = [key for key in ("subject", "text") if key in wanted and differs(wanted[key], read[key])]
    if "from" in wanted and any(differs(wanted["from"][key], read["from"].get(key))
                                for key in ("name", "address")):
        found.append("from")
    if "to" in wanted and wanted["to"] != read["to"]:
        found.append("to")
    if "files" in wanted:
        same = len(wanted["files"]) == len(read["files"]) and all(
            one["name"] == other["name"] and one.get("sha256") in (None, other["sha256"])
            for one, other in zip(wanted["files"], read["files"]))
        if not same:
            found.append("files")
    return found


def readers(vornctl):
    def program(name):
        return [sys.executable if name.endswith(".py") else "perl", ROOT / "bench" / name]

    peers.install("/usr/share/perl5/Email/MIME.pm", "libemail-mime-perl")
    gmime = ROOT / "build/release/bench/gmime-reader"
    return {"Vorn": lambda path: read_by_vorn(path, vornctl), "Python": read_by_python,
            "GMime": lambda path: read_by_program([gmime], path),
            "Perl": lambda path: read_by_program(program("email_mime_reader.pl"), path)}


def judge(reader, path, wanted):
    try:
        return faults(wanted, reader(path))
    except (subprocess.SubprocessError, ValueError, LookupError, TypeError, AttributeError) as error:
        return [f"error: {type(error).__name__}"]


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--vornctl", default=ROOT / "build/release/src/vornctl")
    parser.add_argument("--show", metavar="CLASS", help="what each reader got wrong there")
    options = parser.parse_args()
    who = readers(options.vornctl)
    right = collections.defaultdict(collections.Counter)
    worse = []
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([sys.executable, ROOT / "tests/corpus/generate.py", folder], check=True)
        for path in sorted(pathlib.Path(folder).glob("*.eml")):
            wanted = json.loads(path.with_suffix(".json").read_text(encoding="utf-8"))
            kind = path.name.split(".")[0]
            found = {name: judge(reader, path, wanted) for name, reader in who.items()}
            right[kind]["messages"] += 1
            right[kind].update(name for name in who if not found[name])
            if options.show == kind:
                print(path.stem, {name: what for name, what in found.items() if what})
            better = [name for name in who if not found[name]]
            if found["Vorn"] and better:
                worse.append(f"{path.stem}: {', '.join(found['Vorn'])} (read by {', '.join(better)})")
    columns = ["messages", *who]
    print("| class | " + " | ".join(columns) + " |\n|---" + "|--:" * len(columns) + "|")
    total = sum(right.values(), collections.Counter())
    for kind, row in [*right.items(), ("all", total)]:
        print(f"| {kind} | " + " | ".join(str(row[column]) for column in columns) + " |")
    print(f"\nRead by a referee and not by Vorn: {len(worse)}")
    print("\n".join(worse))


if __name__ == "__main__":
    main()
