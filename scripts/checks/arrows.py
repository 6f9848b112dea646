#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Finds every use that runs against the arrows of the house: includes, QML imports and forbidden libraries.

usage: arrows.py [ROOT]
One line a finding, "FILE:LINE: reason"; exit 1 when there is one, 2 when there is nothing to look at.
"""

import os
import re
import sys
from pathlib import Path

import house

INCLUDE = re.compile(r'^\s*#\s*(?:include|include_next|import)\s*(?:"([^"]+)"|<([^>]+)>)')
QML_IMPORT = re.compile(r'^\s*import\s+(?:"([^"]+)"|([\w.]+))')
QML_MODULE = re.compile(r"qt_add_qml_module\s*\([^)]*?\bURI\s+\"?([\w.]+)", re.S)
COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/|("(?:\\.|[^"\\\n])*")', re.S)

QT = re.compile(r"Q[A-Z]\w*(/\w+)?$|Qt\w*/|q[a-z]+\.h$|qcoro|QCoro")
ASIO = re.compile(r"boost/asio\b|asio\b")
BEAST = re.compile(r"boost/beast\b")
OUTSIDE_WORLD = re.compile(
    r"(thread|mutex|shared_mutex|condition_variable|future|semaphore|latch|barrier|stop_token|iostream|fstream|"
    r"filesystem|random|pthread\.h|unistd\.h|sys/.*)$"
)
CLOCKS = re.compile(
    r"\b(system_clock|steady_clock|high_resolution_clock|clock_gettime|gettimeofday|std::time\s*\(|random_device|"
    r"std::(?:cout|cerr|clog)\b|f?printf\s*\(|std::abort\b|std::jthread|std::thread)"
)

# top folder -> (pattern of an angle include, why it is refused)
REFUSED_LIBRARIES = {
    "core": [
        (QT, "core knows no Qt"),
        (ASIO, "core knows no Asio"),
        (BEAST, "core knows no Asio, and Beast stands on it"),
        (OUTSIDE_WORLD, "core has no threads, no I/O, no clock and no randomness"),
    ],
    "app": [(ASIO, "the app waits in Qt's event loop, not in Asio's")],
    "host": [(QT, "the host has no Qt")],
}


def files_below(root, tops):
    for top in tops:
        for folder, folders, names in os.walk(root / top):
            folders.sort()
            for name in sorted(names):
                yield Path(folder, name).relative_to(root).as_posix()


def without_comments(text):
    """Comments blanked, lines kept, so that line numbers stay true."""
    return COMMENT.sub(lambda m: m.group(1) or "\n" * m.group(0).count("\n"), text)


def quoted_refusal(path, included):
    user = house.folder_of(path) or house.top_of(path)
    if included.endswith(".moc") or included.startswith("moc_"):
        return None
    top = house.top_of(included)
    if "/" not in included or (top not in house.LAYERS and top not in house.GUESTS):
        return "a quoted include names its path from the top of the tree"
    if ".." in included.split("/") or "." in included.split("/"):
        return "a quoted include names its path from the top of the tree"
    if top in house.GUESTS:
        return house.refusal(user, top)
    used = house.folder_of(included)
    if used is None:
        return "that is no folder of the house"
    return house.refusal(user, used)


def angle_refusal(path, included):
    if "/" in included and (house.top_of(included) in house.LAYERS or house.top_of(included) in house.GUESTS):
        return "our own headers are included in quotes"
    for pattern, reason in REFUSED_LIBRARIES.get(house.top_of(path), []):
        if pattern.match(included):
            return reason
    return None


def cpp_findings(path, text):
    for number, line in enumerate(without_comments(text).splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            quoted, angle = match.groups()
            reason = quoted_refusal(path, quoted) if quoted else angle_refusal(path, angle)
            if reason:
                yield number, f"includes {quoted or angle}: {reason}"
        elif house.top_of(path) == "core" and CLOCKS.search(line):
            yield number, f"uses {CLOCKS.search(line).group(1)}: core never prints, aborts, reads a clock or starts a thread"


def qml_modules(root):
    """URI -> folder, from the CMake files that declare the modules."""
    modules = {}
    for path in files_below(root, ["app"]):
        if path.endswith("/CMakeLists.txt"):
            for uri in QML_MODULE.findall((root / path).read_text(encoding="utf-8")):
                modules[uri] = house.folder_of(path) or house.top_of(path)
    return modules


def qml_refusal(path, directory, uri, modules):
    if directory is not None:
        used_path = os.path.normpath(os.path.join(os.path.dirname(path), directory)) + "/"
    elif uri in modules:
        used_path = modules[uri] + "/"
    else:
        return None
    used = house.folder_of(used_path)
    return house.refusal(house.folder_of(path) or "app", used) if used else "that is no folder of the house"


def qml_findings(path, text, modules):
    for number, line in enumerate(without_comments(text).splitlines(), 1):
        match = QML_IMPORT.match(line)
        if match:
            reason = qml_refusal(path, *match.groups(), modules)
            if reason:
                yield number, f"imports {match.group(1) or match.group(2)}: {reason}"


def findings(root):
    modules = qml_modules(root)
    looked_at = 0
    for path in files_below(root, [*house.LAYERS, *house.GUESTS]):
        is_cpp = path.endswith(house.SOURCE_SUFFIXES)
        if not is_cpp and not (path.endswith(".qml") and path.startswith("app/")):
            continue
        looked_at += 1
        if house.top_of(path) in house.LAYERS and house.folder_of(path) is None:
            yield f"{path}:1: {os.path.dirname(path)} is no folder of the house"
            continue
        text = (root / path).read_text(encoding="utf-8")
        for number, reason in cpp_findings(path, text) if is_cpp else qml_findings(path, text, modules):
            yield f"{path}:{number}: {reason}"
    if not looked_at:
        print(f"there are no sources under {root}", file=sys.stderr)
        sys.exit(2)


def main(arguments):
    found = list(findings(Path(arguments[0] if arguments else ".").resolve()))
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
