#!/usr/bin/env python3
"""Writes the corpus of messages into a folder: each NAME.eml with what is expected, NAME.json.

Usage: generate.py FOLDER
"""
import hashlib
import json
import pathlib
import shutil
import sys

import codes
import forms

CLASSES = {**codes.CLASSES, **forms.CLASSES}


def expectation(case) -> dict:
    wanted = {"lost": case.lost} if case.lost else {}
    if case.subject is not None:
        wanted["subject"] = case.subject
    if case.sender is not None:
        wanted["from"] = {"name": case.sender[0], "address": case.sender[1]}
    if case.recipients is not None:
        wanted["to"] = case.recipients
    if case.text is not None:
        wanted["text"] = case.text
    if case.files is not None:
        wanted["files"] = [
            {"name": name} if content is None
            else {"name": name, "sha256": hashlib.sha256(content).hexdigest()}
            for name, content in case.files]
    return wanted


def main():
    folder = pathlib.Path(sys.argv[1])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for kind, cases in CLASSES.items():
        for case in cases():
            path = folder / f"{kind}.{case.name}.eml"
            if path.exists():
                sys.exit(f"{path.name} is there twice")
            path.write_bytes(case.source)
            path.with_suffix(".json").write_text(
                json.dumps(expectation(case), ensure_ascii=False), encoding="utf-8")


if __name__ == "__main__":
    main()
