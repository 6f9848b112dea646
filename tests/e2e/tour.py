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
# Black in either scheme.
VIEWFINDER = "02-"
EVERY_SIZE = (PHONE, SMALL_PHONE, DESKTOP)
PROMPT = "Tidy the release notes."


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
        self.bridge = None
        self.project = None

    def say(self, text):
        print(f"  {self.scheme}: {text}", flush=True)

    def picture(self, name, *sizes):
        """Of the window at a phone's size or at those; the app is a phone again afterwards."""
        for size in sizes or (PHONE,):
            if size != PHONE or len(sizes) > 1:
                self.app.resize(*size)
            path = self.arguments.pictures / f"{name}-{size[0]}x{size[1]}-{self.scheme}.png"
            self.app.picture(path)
            if not name.startswith(VIEWFINDER):
                self.judge_colours(path)
        if sizes:
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
            self.search()
            self.read_usage()
            self.use_row()
            self.read_archive()
            self.start_session()
            self.use_keys()
            self.read_settings()
            self.lose_bridge()
            self.forget_host()
        except NotSeen:
            if self.app:
                self.app.picture(self.arguments.pictures / f"failed-{self.scheme}.png")
            raise
        finally:
            self.end()

    def start_bridge(self):
        state = str(self.scratch / "bridge")
        serve = Lines(
            [self.arguments.host, "serve", "--agent", "demo", "--listen", "127.0.0.1:0", "--state-dir", state],
            self.log,
        )
        self.running.append(serve)
        self.bridge = serve
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
        os.environ["LC_ALL"] = "en_US.UTF-8"
        self.app = Driver(
            [self.arguments.app, "--color-scheme", self.scheme], "varnel-app", "Varnel", self.log
        )
        self.running.append(self.app)
        self.app.resize(*PHONE)

    def pair(self, code, claims):
        app = self.app
        app.find("heading", "Pair with Codex")
        self.picture("01-pairing", *EVERY_SIZE)
        app.click(app.find("push button", "Scan pairing code"))
        paste = app.find("push button", "Paste code")
        app.settled(paste)
        self.picture("02-pairing-code", *EVERY_SIZE)
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
        app.find("label", "Connected to your computer")
        wait_for(lambda: any("limit, " in node.name for node in app.all("push button")), "the token limits")
        self.picture("03-list", *EVERY_SIZE)
        self.say(f"the list shows {len(app.rows('Conversations'))} conversations and the connection")

    def open_conversation(self):
        app = self.app
        row = app.scroll_to("Conversations", lambda name: ", Done, " in name)
        self.project = row.name.split(", Done, ")[0].removesuffix(", Pinned")
        app.click(row)
        app.find("heading", self.project)
        wait_for(lambda: any(each.startswith("Codex: ") for each in app.rows("Transcript")), "a message of the agent")
        app.settled(app.find("push button", "Back"))
        self.picture("04-conversation")
        self.say(f"the conversation {self.project} shows {len(app.rows('Transcript'))} entries")

    def send_and_wait(self):
        app = self.app
        app.type(app.find("text", "Message Codex"), MESSAGE)
        self.picture("05-message")
        app.click(app.find("push button", "Send message"))
        wait_for(lambda: f"You: {MESSAGE}" in app.rows("Transcript"), "the sent message")
        self.say("the message was sent")
        wait_for(self.reply_stands, "the reply", REPLY_SECONDS)
        self.picture("06-reply", PHONE, DESKTOP)
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

    def search(self):
        app = self.app
        app.key("ctrl+f")
        field = app.find("text", "Search")
        app.type(field, "the")
        found = wait_for(lambda: app.rows("Search results"), "results of the search")
        self.picture("07-search")
        app.key("ctrl+a")
        run("xdotool", "type", "--delay", "8", "zzzz")
        app.find("heading", "No results for \u201czzzz\u201d")
        wait_for(lambda: not app.shows("animation", "Searching"), "the end of the search")
        self.picture("08-search-empty")
        app.key("Escape")
        app.find("list", "Conversations")
        self.say(f"a search finds {len(found)} conversations, another none")

    def read_usage(self):
        app = self.app
        app.scroll(app.find("list", "Conversations"), -60)
        limits = wait_for(
            lambda: next((node for node in app.all("push button") if "limit, " in node.name), None), "the token limits"
        )
        app.click(limits)
        app.find("chart", "Daily token usage chart")
        days = wait_for(lambda: app.rows("Days"), "the days of the chart")
        if not days or not all(day.startswith("Day ") and ", Tokens " in day for day in days):
            raise NotSeen(f"the days of the chart read {days}")
        app.settled(app.find("push button", "Done"))
        self.picture("09-usage", *EVERY_SIZE)
        app.key("Escape")
        app.gone("chart", "Daily token usage chart")
        self.say(f"the usage shows {len(days)} days, each with its tokens")

    def use_row(self):
        app = self.app
        row = app.scroll_to("Conversations", lambda name: name.startswith(self.project) and ", Done, " in name)
        app.swipe(row, -140)
        archive = app.find("push button", "Archive")
        app.settled(archive)
        self.picture("10-swipe")
        app.swipe(row, 200)
        app.gone("push button", "Archive")

        app.click_right(row)
        app.settled(app.find("menu item", "Rename"))
        self.picture("11-menu")
        app.click(app.find("menu item", "Rename"))
        app.find("text", "Name")
        app.settled(app.find("push button", "Save"))
        self.picture("12-rename")
        app.key("ctrl+a")
        run("xdotool", "type", "--delay", "8", "Renamed by the tour")
        app.click(app.find("push button", "Save"))
        row = app.scroll_to("Conversations", lambda name: name.startswith("Renamed by the tour"))
        self.say("a conversation was renamed from its menu")

        app.swipe(row, 300)
        row = app.scroll_to("Conversations", lambda name: name.startswith("Renamed by the tour, Done, Pinned"))
        self.say("a full swipe pins it")
        app.click_right(row)
        app.click(app.find("menu item", "Archive"))
        undo = app.find("push button", "Undo")
        self.picture("13-archived-undo")
        app.click(undo)
        app.gone("push button", "Undo")
        app.scroll_to("Conversations", lambda name: name.startswith("Renamed by the tour"))
        self.say("it was archived, and Undo brought it back")

    def read_archive(self):
        app = self.app
        app.click(app.find("push button", "Archived conversations"))
        field = wait_for(
            lambda: next((node for node in reversed(app.all("text")) if node.name == "Search"), None), "the search field"
        )
        count = len(wait_for(lambda: app.rows("Archived conversations"), "archived conversations"))
        app.settled(app.find("push button", "Done"))
        self.picture("14-archive", *EVERY_SIZE)
        app.type(field, "zzzz")
        app.find("heading", "No archived conversations")
        self.picture("15-archive-empty")
        app.key("Escape")
        wait_for(lambda: app.rows("Archived conversations"), "the whole list again")
        app.click(app.find("push button", "Done"))
        app.gone("push button", "Done")
        self.say(f"the archive shows {count} conversations and can be searched")

    def start_session(self):
        app = self.app
        app.click(app.find("page tab", "New"))
        app.find("heading", "New Session")
        model = wait_for(
            lambda: next((n for n in app.all("push button") if n.name.startswith("Model: ") and "Select" not in n.name), None),
            "the default model",
        )
        app.click(app.find("push button", "Project: Select a Git worktree"))
        rows = wait_for(lambda: app.rows("Project"), "the projects")
        app.settled(app.all("list item", app.find("list", "Project"))[0])
        self.picture("16-projects", PHONE, DESKTOP)
        risky = next(name for name in rows if name.startswith("/root"))
        app.click(app.find("list item", risky))
        app.find("check box", "I understand the risk")
        self.picture("17-new-risk", *EVERY_SIZE)
        app.click(app.find("push button", f"Project: {risky}"))
        app.click(app.find("list item", next(name for name in rows if name.startswith("/home"))))
        app.gone("list", "Project")
        app.type(app.scroll_page_to("text", "What should Codex do?"), PROMPT)
        self.picture("18-new")
        app.key("Tab")
        create = app.find("push button", "Start Codex session")
        app.click(create)
        app.find("push button", "Back", 30)
        wait_for(lambda: f"You: {PROMPT}" in app.rows("Transcript"), "the first prompt", 30)
        app.settled(app.find("push button", "Back"))
        self.picture("19-new-conversation")
        app.key("Escape")
        app.find("list", "Conversations")
        self.say(f"a session was started ({model.name}) and opened by itself")

    def use_keys(self):
        app = self.app
        app.resize(*DESKTOP)
        app.key("ctrl+k")
        app.find("list", "Go to conversation")
        run("xdotool", "type", "--delay", "8", "renam")
        wait_for(lambda: len(app.rows("Go to conversation")) == 1, "the one conversation of that name")
        app.settled(app.find("list", "Go to conversation"))
        self.picture("20-switcher", DESKTOP)
        app.resize(*DESKTOP)
        app.key("Return")
        app.find("heading", "Renamed by the tour")
        app.gone("list", "Go to conversation")
        self.say("the quick switcher opens a conversation by a few letters")
        app.key("ctrl+question")
        app.settled(app.find("push button", "Done"))
        self.picture("21-shortcuts", DESKTOP)
        app.key("Escape")
        app.gone("push button", "Done")
        app.key("Escape")
        app.find("list", "Conversations")

    def read_settings(self):
        app = self.app
        app.key("ctrl+comma")
        app.find("heading", "Settings")
        for name in ("Host: 127.0.0.1", "Status: Connected", "Codex CLI contract: 0.149.1", "Phone API: v1"):
            app.find("label", name)
        self.picture("22-settings", *EVERY_SIZE)
        app.scroll_page_to("push button", "Quit Varnel")
        self.picture("23-settings-end")
        app.click(app.find("page tab", "Sessions"))
        self.say("the settings name the host and this build")

    def lose_bridge(self):
        app = self.app
        self.bridge.close()
        app.scroll(app.find("list", "Conversations"), -60)
        app.find("label", "Reconnecting\u2026")
        self.picture("24-offline")
        app.click(app.find("page tab", "New"))
        app.type(app.scroll_page_to("text", "What should Codex do?"), PROMPT)
        app.key("Tab")
        app.click(app.find("push button", "Start Codex session"))
        app.settled(app.find("push button", "OK"))
        self.picture("25-error")
        app.click(app.find("push button", "OK"))
        restore = app.find("push button", "Restore prompt")
        self.picture("26-restore-prompt")
        app.click(restore)
        wait_for(lambda: app.text(app.find("text", "What should Codex do?")) == PROMPT, "the restored prompt")
        self.say("without the bridge an error is told and the prompt is kept")

    def forget_host(self):
        app = self.app
        app.key("ctrl+comma")
        app.find("heading", "Settings")
        app.click(app.scroll_page_to("push button", "Forget this host"))
        app.find("heading", "Pair with Codex")
        self.say("the host is forgotten at once")

    def end(self):
        for each in reversed(self.running):
            each.close()


def make_contact_sheet(folder):
    """All pictures of the walk on one sheet, small."""
    pictures = sorted(str(path) for path in folder.glob("[0-9][0-9]-*.png"))
    subprocess.run(
        ["montage", *pictures, "-label", "%t", "-geometry", "260x480>+8+8", "-tile", "8x", "-background", "#888888",
         str(folder / "contact-sheet.png")],
        check=True,
        timeout=120,
    )


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
    make_contact_sheet(arguments.pictures)
    print(f"Every step was seen. The pictures are in {arguments.pictures}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
