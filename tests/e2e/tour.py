#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Walks through the real app on the real bridge and keeps a picture of each screen.

usage: tour.py --app VARNEL_APP --host VARNEL --pictures DIR

Once in light and once in dark colours, each with a bridge, a pairing and directories of its own. Ends with 0 only when
every step was seen to happen. Needs a display and a session bus: with_display.sh gives both.
"""

import argparse
import json
import os
import queue
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

from driver import Driver, NotSeen, end, run, wait_for

MESSAGE = "Please rename the parser and run the tests."
REPLY_SECONDS = 45
COMPLAINTS = ("qrc:/", "TypeError", "ReferenceError", "Binding loop")
PHONE = (390, 844)
SMALL_PHONE = (360, 640)
DESKTOP = (1280, 800)


class Lines:
    """The lines a program prints, each waited for with a limit."""

    def __init__(self, command, log):
        self.process = subprocess.Popen(
            command, stdout=subprocess.PIPE, stderr=log, stdin=subprocess.DEVNULL, text=True
        )
        self._lines = queue.Queue()
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            self._lines.put(line.rstrip("\n"))

    def next(self, what, seconds=15):
        try:
            return self._lines.get(timeout=seconds)
        except queue.Empty:
            raise NotSeen(f"{what} was not printed within {seconds} s") from None

    def close(self):
        end(self.process)


class Tour:
    """One walk, in one colour scheme."""

    def __init__(self, arguments, scheme, scratch, log):
        self.arguments = arguments
        self.scheme = scheme
        self.scratch = scratch
        self.log = log
        self.running = []
        self.app = None

    def say(self, text):
        print(f"  {self.scheme}: {text}", flush=True)

    def picture(self, name, size=PHONE):
        """Of the window at that size; the app is a phone again afterwards."""
        if size != PHONE:
            self.app.resize(*size)
        path = self.arguments.pictures / f"{name}-{self.scheme}.png"
        self.app.picture(path)
        self.judge_colours(path)
        if size != PHONE:
            self.app.resize(*PHONE)

    def judge_colours(self, path):
        brightness = float(run("identify", "-format", "%[fx:mean]", str(path)))
        if (brightness > 0.5) != (self.scheme == "light"):
            raise NotSeen(f"{path.name} is not {self.scheme}: brightness {brightness:.2f}")

    def walk(self):
        try:
            code, claims = self.start_bridge()
            self.start_app()
            self.pair(code, claims)
            self.read_list()
            self.open_conversation()
            self.send_and_wait()
            self.go_back()
        finally:
            self.end()

    def start_bridge(self):
        state = str(self.scratch / "bridge")
        serve = Lines(
            [self.arguments.host, "serve", "--agent", "demo", "--listen", "127.0.0.1:0", "--state-dir", state],
            self.log,
        )
        self.running.append(serve)
        line = serve.next("the bridge's address")
        if not line.startswith("listening on http://127.0.0.1:"):
            raise NotSeen(f"the bridge says: {line}")
        pair = Lines([self.arguments.host, "pair", "--json", "--state-dir", state], self.log)
        self.running.append(pair)
        code = json.loads(pair.next("the pairing code"))["payload"]
        self.say("the bridge listens and gave a pairing code")
        return code, pair

    def start_app(self):
        for kind in ("data", "config", "cache"):
            os.environ[f"XDG_{kind.upper()}_HOME"] = str(self.scratch / kind)
        self.app = Driver(
            [self.arguments.app, "--color-scheme", self.scheme], "varnel-app", "Varnel", self.log
        )
        self.running.append(self.app)
        self.app.resize(*PHONE)

    def pair(self, code, claims):
        app = self.app
        app.find("heading", "Pair with Codex")
        self.picture("1-pairing")
        app.click(app.find("push button", "Scan pairing code"))
        paste = app.find("push button", "Paste code")
        app.settled(paste)
        self.picture("2-pairing-code")
        app.copy(code)
        app.click(paste)
        claimed = json.loads(claims.next("who claimed the code"))
        if not claimed.get("claimedBy"):
            raise NotSeen(f"the claim reads {claimed}")
        app.find("list", "Conversations")
        app.gone("push button", "Scan pairing code")
        self.say("paired by pasting the code")

    def read_list(self):
        app = self.app
        wait_for(lambda: len(app.rows("Conversations")) >= 5, "five conversations")
        app.find("label", "Connected to your host")
        self.picture("3-list")
        self.picture("3-list-small", SMALL_PHONE)
        self.say(f"the list shows {len(app.rows('Conversations'))} conversations and the connection")

    def open_conversation(self):
        app = self.app
        conversations = app.find("list", "Conversations")
        row = wait_for(
            lambda: next((each for each in app.all("list item", conversations) if ", Done, " in each.name), None),
            "a conversation that is done",
        )
        project = row.name.split(", Done, ")[0]
        app.click(row)
        app.find("heading", project.removesuffix(", Pinned"))
        wait_for(lambda: any(each.startswith("Codex: ") for each in app.rows("Transcript")), "a message of the agent")
        app.settled(app.find("push button", "Back"))
        self.picture("4-conversation")
        self.say(f"the conversation {project} shows {len(app.rows('Transcript'))} entries")

    def send_and_wait(self):
        app = self.app
        app.type(app.find("text", "Message Codex"), MESSAGE)
        self.picture("5-message")
        app.click(app.find("push button", "Send message"))
        wait_for(lambda: f"You: {MESSAGE}" in app.rows("Transcript"), "the sent message")
        self.say("the message was sent")
        wait_for(self.reply_stands, "the reply", REPLY_SECONDS)
        self.picture("6-reply")
        self.picture("6-reply-wide", DESKTOP)
        self.say("the reply arrived by itself and stands")

    def reply_stands(self):
        """The turn is over and the last entry is the agent's."""
        rows = self.app.rows("Transcript")
        return rows[-1].startswith("Codex: ") and f"You: {MESSAGE}" in rows and self.app.shows(
            "push button", "Send message"
        )

    def go_back(self):
        app = self.app
        app.key("Escape")
        app.find("list", "Conversations")
        app.gone("text", "Message Codex")
        self.say("Escape leads back to the list")

    def end(self):
        for each in reversed(self.running):
            each.close()


def lines_of(path):
    return path.read_text(encoding="utf-8", errors="replace").splitlines()


def tail(path):
    return "\n".join(lines_of(path)[-30:])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--app", required=True)
    parser.add_argument("--host", required=True)
    parser.add_argument("--pictures", required=True, type=Path)
    arguments = parser.parse_args()
    arguments.pictures = arguments.pictures.resolve()
    arguments.pictures.mkdir(parents=True, exist_ok=True)
    for scheme in ("light", "dark"):
        with tempfile.TemporaryDirectory() as directory:
            scratch = Path(directory)
            log_path = scratch / "log"
            with log_path.open("w", encoding="utf-8") as log:
                tour = Tour(arguments, scheme, scratch, log)
                try:
                    tour.walk()
                except (NotSeen, OSError, subprocess.SubprocessError, ValueError, KeyError) as reason:
                    print(f"{scheme}: {reason}\n{tail(log_path)}", file=sys.stderr)
                    return 1
            complaints = [line for line in lines_of(log_path) if any(sign in line for sign in COMPLAINTS)]
            if complaints:
                print(f"{scheme}: the app complains about its own screens", *complaints, sep="\n", file=sys.stderr)
                return 1
    print(f"Every step was seen. The pictures are in {arguments.pictures}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
