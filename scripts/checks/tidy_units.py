#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Turns changed files into the translation units that show clang-tidy what is in them.

usage: tidy_units.py BUILD_DIR, paths on standard input, units on standard output in the same order, NUL between them.
A source stands for itself when the build compiles it. A header is seen through the source beside it, else through the
first unit that includes it. Exit 1 when a changed source is not compiled by this build, so that none is passed over.
"""

import json
import re
import sys
from pathlib import Path

# Built by presets of their own, with libraries that preset dev does not look for.
NOT_IN_THIS_BUILD = ("bench/", "fuzz/")
# Sources in such a folder are there to be refused by the compiler.
REFUSED = "/refused/"


def compiled_units(build_dir, root):
    commands = json.loads((build_dir / "compile_commands.json").read_text(encoding="utf-8"))
    units = set()
    for command in commands:
        path = Path(command["directory"], command["file"]).resolve()
        if path.is_relative_to(root) and not path.is_relative_to(build_dir):
            units.add(path.relative_to(root).as_posix())
    return units


def unit_for_header(header, units, texts):
    beside = re.sub(r"\.h$", ".cpp", header)
    if beside in units:
        return beside
    return next((unit for unit in sorted(units) if f'#include "{header}"' in texts[unit]), None)


def main(build_dir, changed):
    root = Path.cwd().resolve()
    units = compiled_units(Path(build_dir).resolve(), root)
    texts = {unit: (root / unit).read_text(encoding="utf-8") for unit in units}
    chosen, uncompiled = {}, []
    for path in changed:
        if path.startswith(NOT_IN_THIS_BUILD) or REFUSED in path:
            continue
        if path.endswith(".cpp"):
            if path in units:
                chosen[path] = None
            else:
                uncompiled.append(path)
        elif path.endswith(".h"):
            unit = unit_for_header(path, units, texts)
            if unit:
                chosen[unit] = None
    for path in uncompiled:
        print(f"{path}: no target compiles it", file=sys.stderr)
    sys.stdout.write("".join(f"{unit}\0" for unit in chosen))
    return 1 if uncompiled else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], [path for path in sys.stdin.read().split("\0") if path]))
