#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Finds what the guides name and the tree does not hold: paths in backticks, and targets of links and pictures.

usage: documents.py [ROOT]
One line a finding; exit 1 when there is one or a guide is missing.
"""

import re
import sys
from pathlib import Path

GUIDES = ("README.md", "ARCHITECTURE.md", "CONTRIBUTING.md")
FENCE = re.compile(r"^```.*?^```", re.M | re.S)
IN_BACKTICKS = re.compile(r"`([^`\n]+)`")
LINK = re.compile(r"\]\(([^)\s]+)\)")
# A path from the top of the tree, and only that: "core/wire/", "scripts/test", ".clang-tidy"; the first word of a
# command counts as well ("scripts/check --all").
PATH = re.compile(r"(\.?[\w-]+(?:/[\w.*-]+)+/?|[\w-]+/|\.[a-z][\w-]+|[\w-]+\.(?:md|json|txt))(?: .*)?")
BUILT = ("build/",)


def missing_paths(root, text):
    """(line, path) of every path that is not there. Fenced blocks hold sketches, not paths."""
    text = FENCE.sub(lambda m: "\n" * m.group(0).count("\n"), text)
    for number, line in enumerate(text.splitlines(), 1):
        named = [m.group(1) for m in map(PATH.fullmatch, IN_BACKTICKS.findall(line)) if m]
        linked = [target.split("#")[0] for target in LINK.findall(line) if not re.match(r"\w+:|#", target)]
        for path in named + linked:
            if path.startswith(BUILT):
                continue
            if not any(root.glob(path.rstrip("/"))):
                yield number, path


def main(arguments):
    root = Path(arguments[0] if arguments else ".").resolve()
    found = 0
    for guide in GUIDES:
        if not (root / guide).is_file():
            print(f"{guide}: missing")
            found += 1
            continue
        for number, path in missing_paths(root, (root / guide).read_text(encoding="utf-8")):
            print(f"{guide}:{number}: there is no {path}")
            found += 1
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
