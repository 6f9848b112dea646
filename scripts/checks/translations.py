#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Finds the app's texts that a translation does not have. With --update it adds them to the translation, to be filled in.

usage: translations.py [--update]
One line a text; exit 1 when there is one.
"""

import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

LUPDATE = next((path for path in ("/usr/lib/qt6/bin/lupdate", "lupdate") if shutil.which(path)), None)


def update(root, translation):
    subprocess.run(
        [LUPDATE, "app", "-I", ".", "-source-language", "en", "-locations", "none", "-no-obsolete", "-ts", translation],
        cwd=root,
        check=True,
        timeout=120,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )


def missing(translation):
    for context in ElementTree.parse(translation).getroot().findall("context"):
        for message in context.findall("message"):
            if message.find("translation").get("type") == "unfinished":
                yield f'{context.findtext("name")}: {message.findtext("source")}'


def main():
    if not LUPDATE:
        sys.exit("lupdate is missing; scripts/setup installs it")
    root = Path(__file__).resolve().parents[2]
    found = False
    with tempfile.TemporaryDirectory() as scratch:
        for translation in sorted((root / "app/translations").glob("*.ts")):
            looked_at = translation
            if "--update" not in sys.argv[1:]:
                looked_at = Path(scratch, translation.name)
                shutil.copy(translation, looked_at)
            update(root, looked_at)
            for text in missing(looked_at):
                found = True
                print(f"{translation.relative_to(root)}: {text}")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
