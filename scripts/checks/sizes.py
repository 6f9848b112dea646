#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Finds files over their cap; what a function may hold is checked by clang-tidy.

usage: sizes.py [ROOT]
One line a finding; exit 1 when there is one, 2 when there is nothing to look at.
"""

import sys
from pathlib import Path

import arrows
import house

GUEST_CAP = 600
CPP_CAPS = {"core": 400, "app": 500, "host": 500, "tools": 500}
HEADER_CAP = 250
QML_CAP = 300


def cap_of(path):
    """The most lines this file may have, or None when no cap is set for its kind."""
    top = house.top_of(path)
    if path.endswith((".cpp", ".h", ".py", ".qml")) and top in ("tests", "bench", "fuzz"):
        return GUEST_CAP
    if path.endswith(".h"):
        return HEADER_CAP
    if path.endswith(".qml"):
        return QML_CAP
    return CPP_CAPS.get(top) if path.endswith(".cpp") else None


def main(arguments):
    root = Path(arguments[0] if arguments else ".").resolve()
    looked_at = over = 0
    for path in arrows.files_below(root, [*house.LAYERS, *house.GUESTS]):
        cap = cap_of(path)
        if cap is None:
            continue
        looked_at += 1
        lines = len((root / path).read_text(encoding="utf-8").splitlines())
        if lines > cap:
            over += 1
            print(f"{path}: {lines} lines, {cap} at most")
    if not looked_at:
        print(f"there are no sources under {root}", file=sys.stderr)
        return 2
    return 1 if over else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
