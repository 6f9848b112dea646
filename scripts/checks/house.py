# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""The folders of the house, bottom up, and which of them may use which."""

LAYERS = {
    "core": ["core/base", "core/json", "core/wire", "core/transcript", "core/markdown", "core/live"],
    "app": [
        "app/platform",
        "app/client",
        "app/device",
        "app/model",
        "app/lists",
        "app/ui",
        "app/screens",
    ],
    "host": [
        "host/store",
        "host/agent",
        "host/agent/codex",
        "host/agent/demo",
        "host/service",
        "host/http",
        "host/cli",
    ],
}

# Agents know the interface, not each other.
STRANGERS = {frozenset(("host/agent/codex", "host/agent/demo"))}

# These may use everything; nothing of the house may use them.
GUESTS = ("tools", "tests", "bench", "fuzz")

SOURCE_SUFFIXES = (".cpp", ".h", ".mm", ".hpp", ".cc")


def top_of(path):
    return path.split("/", 1)[0]


def folder_of(path):
    """The folder of the house a file belongs to; `app` or `host` itself for their composition root; else None."""
    top = top_of(path)
    if top not in LAYERS:
        return None
    inside = [folder for folder in LAYERS[top] if path.startswith(folder + "/")]
    if inside:
        return max(inside, key=len)
    return top if top != "core" and path.count("/") == 1 else None


def refusal(user, used):
    """Why folder `user` may not use folder `used`, or None when it may."""
    user_top, used_top = top_of(user), top_of(used)
    if user_top in GUESTS:
        return None
    if used_top in GUESTS:
        return f"{used_top} uses the house; nothing in the house uses {used_top}"
    if user_top != used_top:
        return None if used_top == "core" else f"{user_top} never uses {used_top}"
    if user == used or user == user_top:
        return None
    if used == used_top:
        return f"{used} itself is the composition root; nothing uses it"
    if frozenset((user, used)) in STRANGERS:
        return f"{user} and {used} do not know each other"
    layers = LAYERS[user_top]
    if layers.index(used) > layers.index(user):
        return f"{used} stands above {user} in the house"
    return None
