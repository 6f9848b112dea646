#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Opens links in the app: before there is a pairing, while it runs, for a conversation that is none, on a cold start."""

import argparse
import json
import os
import subprocess
import sys
import tempfile
import urllib.request
from pathlib import Path

from driver import Driver, NotSeen
from every_operation import Bridge, first_line

SECONDS = 20


def ask(address, path, token=None, body=None):
    """The JSON that the bridge answers."""
    headers = {"Content-Type": "application/json"}
    if token:
        headers["Authorization"] = f"Bearer {token}"
    request = urllib.request.Request(
        address + path, data=None if body is None else json.dumps(body).encode(), headers=headers
    )
    with urllib.request.urlopen(request, timeout=SECONDS) as answer:
        return json.load(answer)


def conversations(bridge):
    """Two conversations as another device of the same owner sees them."""
    claim = ask(bridge.address, "/v1/pair/claim", body={"secret": bridge.secret, "deviceName": "the test"})
    return ask(bridge.address, "/v1/sessions", claim["token"])["sessions"][:2]


def code_for_app(bridge, host, state):
    pair = bridge.start(host, "pair", "--json", "--state-dir", state)
    return json.loads(first_line(pair, "the pairing code"))["payload"]


def link(session_id):
    return f"varnel://session/{session_id}"


class Links:
    def __init__(self, app, log):
        self.command = [app, "--color-scheme", "light"]
        self.log = log
        self.driver = None

    def start(self, *links):
        self.driver = Driver([*self.command, *links], "varnel-app", ".*Varnel", self.log)
        self.driver.resize(390, 844)

    def pass_on(self, text):
        """What the desktop does with a link: starts the app once more, which hands it over and ends."""
        second = subprocess.run([*self.command, text], timeout=SECONDS, stdout=self.log, stderr=self.log, check=False)
        if second.returncode != 0:
            raise NotSeen(f"the second instance ended with {second.returncode}")

    def expect_open(self, title, how):
        self.driver.find("heading", title)
        self.driver.find("push button", "Back")
        if self.driver.shows("push button", "OK"):
            raise NotSeen(f"{how}: an alert is shown")
        print(f"  {how}: \u201c{title}\u201d is open", flush=True)

    def pair(self, code):
        app = self.driver
        app.find("heading", "Pair with Codex")
        app.click(app.find("push button", "Scan pairing code"))
        paste = app.find("push button", "Paste code")
        app.copy(code)
        app.click(paste)

    def walk(self, bridge, host, state):
        first, other = conversations(bridge)
        self.start(link(first["id"]))
        self.pair(code_for_app(bridge, host, state))
        self.expect_open(first["project"], "from before the pairing")

        self.driver.key("ctrl+comma")
        self.driver.find("heading", "Settings")
        self.pass_on(link(other["id"]))
        self.expect_open(other["project"], "while running, from another tab")
        self.pass_on(link(first["id"]).replace("varnel", "Varnel"))
        self.pass_on("https://session/" + first["id"])
        self.expect_open(other["project"], "after links of other schemes")
        self.pass_on(link("no-such-conversation"))
        self.expect_open("Session", "an unknown conversation")

        self.driver.close()
        self.start(link(first["id"]))
        self.expect_open(first["project"], "on a cold start")

    def end(self):
        if self.driver:
            self.driver.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--app", required=True)
    parser.add_argument("--host", required=True)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as directory:
        scratch = Path(directory)
        for kind in ("data", "config", "cache"):
            os.environ[f"XDG_{kind.upper()}_HOME"] = str(scratch / kind)
        log_path = scratch / "log"
        state = str(scratch / "bridge")
        with log_path.open("w", encoding="utf-8") as log:
            bridge = Bridge(arguments.host, state)
            links = Links(arguments.app, log)
            try:
                links.walk(bridge, arguments.host, state)
            except (NotSeen, OSError, subprocess.SubprocessError, ValueError, KeyError) as reason:
                print(reason, log_path.read_text(encoding="utf-8", errors="replace")[-2000:], sep="\n", file=sys.stderr)
                return 1
            finally:
                links.end()
                bridge.end()
    print("Every link was opened.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
