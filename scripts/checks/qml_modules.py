#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Finds QML files of the app that belong to no module: no target would ever lint or load them.

usage: qml_modules.py BUILD_DIR
One line a finding; exit 1 when there is one.
"""

import sys
from pathlib import Path

import arrows


def main(build_dir):
    root = Path.cwd().resolve()
    linted = set()
    with open(Path(build_dir, "build.ninja"), encoding="utf-8") as rules:
        for line in rules:
            if line.startswith("build ") and "_qmllint: CUSTOM_COMMAND" in line:
                linted.update(line.split())
    files = [path for path in arrows.files_below(root, ["app"]) if path.endswith(".qml")]
    orphans = [path for path in files if str(root / path) not in linted]
    for path in orphans:
        print(f"{path}: belongs to no QML module")
    return 1 if orphans else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
