#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Does everything that can be done in a conversation, as somebody who does not see the screen would.

usage: conversation.py --app VARNEL_APP --host VARNEL --pictures DIR

Reads by the accessibility tree alone and touches by pointer and keys. Ends with 0 only when every step was seen to
happen. Needs a display and a session bus: with_display.sh gives both.
"""

import argparse
import subprocess
import sys
import tempfile
from pathlib import Path

from driver import NotSeen, run, wait_for
from stage import COMPLAINTS, Stage

REPLY_SECONDS = 60
FIELD = "Message Codex"
FOUR_VALUES = {"mode", "model", "reasoningEffort", "serviceTier"}
# Who asks for what: the conversation, what its card says, and what is pressed.
APPROVALS = (
    ("Ship the preview build", "commandExecution/requestApproval", "Approve"),
    ("One settings file instead of three", "fileChange/requestApproval", "Approve"),
    ("Sort the bug reports", "mcpServer/elicitation/request", "Decline"),
    ("Map tiles for the alpine region", "permissions/requestApproval", "Approve"),
)


class Conversation:
    """One walk through everything."""

    def __init__(self, stage, pictures):
        self.stage = stage
        self.app = stage.app
        self.pictures = pictures

    def walk(self):
        self.read_and_write()
        for approval in APPROVALS:
            self.answer_approval(*approval)
        self.answer_question()
        self.change_settings()
        self.attach_and_send_as_goal()
        self.stop()
        self.rename_and_pin()
        self.archive()

    # ---- steps ------------------------------------------------------------------------------------------------------

    def read_and_write(self):
        self.open("Fix the flaky retry test")
        app = self.app
        rows = wait_for(lambda: app.rows("Transcript"), "the transcript")
        wait_for(lambda: app.rows("Transcript")[-1].startswith("Codex: "), "the last reply, last")
        if not any("Three places" in row for row in rows):
            raise NotSeen(f"the last reply is not among {len(rows)} rows")
        self.say("the last reply is read")
        app.type(app.find("text", FIELD), "Please explain the parser.")
        app.click(app.find("push button", "Send message"))
        wait_for(lambda: "You: Please explain the parser." in app.rows("Transcript"), "the sent message")
        wait_for(lambda: not app.shows("push button", "Stop current task"), "the end of the turn", REPLY_SECONDS)
        wait_for(lambda: app.rows("Transcript")[-1].startswith("Codex: "), "the answer")
        self.picture("answer")
        self.say("a message was sent and its answer read")
        self.leave()

    def answer_approval(self, name, method, decision):
        self.open(name)
        app = self.app
        self.bring_card(method)
        button = app.find("push button", decision)
        before = len(self.stage.tap.requests("POST", "/resolve"))
        app.click(button)
        app.click(app.find("push button", "Full request details"))
        self.picture(method.split("/", maxsplit=1)[0])
        button = self.reach(decision)
        wait_for(lambda: self.press_until_sent(button, before), f"{decision} being sent")
        wait_for(lambda: not app.shows("label", method), f"the end of the card {method}", REPLY_SECONDS)
        if len(self.stage.tap.requests("POST", "/resolve")) != before + 1:
            raise NotSeen(f"{method} was not answered exactly once")
        self.say(f"{method}: {decision}, and nothing before it was unfolded")
        self.leave()

    def answer_question(self):
        self.open("Design the sharing feature")
        app = self.app
        self.bring_card("tool/requestUserInput")
        options = wait_for(lambda: app.all("radio button"), "the options")
        app.click(options[0])
        chosen = options[0].name.split(",")[0]
        app.click(app.find("push button", "Full request details"))
        self.picture("question")
        before = len(self.stage.tap.requests("POST", "/resolve"))
        button = self.reach("Send answer")
        wait_for(lambda: self.press_until_sent(button, before), "the answer being sent")
        answers = self.stage.tap.requests("POST", "/resolve")[-1]["result"]["answers"]
        if not any(chosen.startswith(each["answers"][0][:8]) for each in answers.values()):
            raise NotSeen(f"the answer {answers} is not {chosen}")
        wait_for(lambda: not app.shows("label", "tool/requestUserInput"), "the end of the question", REPLY_SECONDS)
        self.say("a question was answered by one of its options")
        self.leave()

    def change_settings(self):
        self.open("Fix the flaky retry test")
        self.choose("Model · ", 1)
        self.choose("Thinking · ", 0)
        self.choose("Mode · ", "Plan")
        self.choose(None, "Fast")
        self.say("model, effort, mode and Fast were changed, one request with four values each")

    def attach_and_send_as_goal(self):
        app = self.app
        image = self.stage.scratch / "image.png"
        run("convert", "-size", "64x48", "xc:teal", str(image))
        for count in (1, 2):
            self.copy_image(image)
            app.click(app.find("text", FIELD))
            app.key("ctrl+v")
            wait_for(lambda: len(self.capsules()) == count, f"{count} attachments")
        self.choose("Mode · ", "Goal", tells=False)
        self.picture("attachments")
        app.click(app.find("push button", "Send message"))
        goal = wait_for(lambda: self.stage.tap.requests("POST", "/goal"), "the goal")[-1]
        if len(goal["attachments"]) != 2:
            raise NotSeen(f"the goal carries {len(goal['attachments'])} attachments")
        wait_for(lambda: not self.capsules(), "the end of the attachments")
        self.say("two images went out as a goal")

    def stop(self):
        app = self.app
        stop = app.find("push button", "Stop current task", REPLY_SECONDS)
        app.click(stop)
        app.find("push button", "Send message", REPLY_SECONDS)
        self.say("the turn was stopped")

    def rename_and_pin(self):
        app = self.app
        app.click(app.find("push button", "Conversation actions"))
        app.click(app.find("menu item", "Rename"))
        name = app.find("text", "Name")
        app.settled(name)
        app.key("ctrl+a")
        app.key("BackSpace")
        run("xdotool", "type", "--delay", "8", "A better name")
        app.click(app.find("push button", "Save"))
        app.gone("push button", "Save")
        app.click(app.find("push button", "Pin conversation"))
        app.find("push button", "Unpin conversation")
        self.say("renamed and pinned")

    def archive(self):
        app = self.app
        app.click(app.find("push button", "Conversation actions"))
        app.click(app.find("menu item", "Archive"))
        conversations = app.find("list", "Conversations")
        wait_for(
            lambda: not any(each.name.startswith("A better name") for each in app.all("list item", conversations)),
            "the end of the archived conversation",
        )
        self.say("archived, which leads back to the list")

    # ---- means ------------------------------------------------------------------------------------------------------

    def say(self, text):
        print(f"  {text}", flush=True)

    def picture(self, name):
        self.app.picture(self.pictures / f"{name}.png")

    def open(self, name):
        app = self.app
        wait_for(lambda: app.rows("Conversations"), "the conversations")
        row = app.scroll_to("Conversations", lambda each: each.startswith(name))
        app.click(row)
        app.find("heading", name)
        app.find("text", FIELD)
        app.settled(app.find("push button", "Conversation actions"))

    def leave(self):
        self.app.key("Escape")
        self.app.gone("text", FIELD)

    def bring_card(self, method):
        """Into view, by the bar that leads there when it is not seen."""
        app = self.app
        wait_for(
            lambda: app.shows("label", method) or app.shows("push button", "Codex needs input"), "that input is needed"
        )
        bar = next((each for each in app.all("push button") if each.name == "Codex needs input"), None)
        if bar:
            app.click(bar)
        app.settled(app.find("label", method))

    def reach(self, name):
        """The button, scrolled to when the card is higher than the screen."""
        app = self.app
        transcript = app.place(app.find("list", "Transcript"))

        def look():
            button = next((each for each in app.all("push button") if each.name == name), None)
            place = app.place(button) if button else None
            if place and place.y + place.height <= transcript.y + transcript.height:
                return button
            run("xdotool", "mousemove", str(transcript.x + 200), str(transcript.y + 60), "click", "5")
            return None

        return wait_for(look, f"{name} in view")

    def press_until_sent(self, button, before):
        """A card that has just moved takes no press for a moment; people press again."""
        if len(self.stage.tap.requests("POST", "/resolve")) > before:
            return True
        self.app.click(button)
        return len(self.stage.tap.requests("POST", "/resolve")) > before

    def choose(self, menu, entry, tells=True):
        """An entry of the settings menu by its name or its place; it must not be the one that is chosen already."""
        app = self.app
        before = len(self.stage.tap.requests("POST", "/settings"))
        app.click(app.find("push button", "Conversation settings"))
        if menu is not None:
            app.click(self.menu_item(lambda name: name.startswith(menu)))
            app.gone("menu item", "Fast")
        if isinstance(entry, str):
            item = self.menu_item(lambda name: name == entry)
        else:
            wait_for(lambda: len(self.items()) > entry, f"entries of {menu}")
            item = self.items()[entry]
        app.click(item)
        wait_for(lambda: not self.items(), "the end of the menu")
        if tells:
            told = wait_for(
                lambda: self.stage.tap.requests("POST", "/settings")[before:], f"a settings request for {entry}"
            )
            if len(told) != 1 or set(told[0]) < FOUR_VALUES:
                raise NotSeen(f"the settings requests for {entry} are {told}")

    def items(self):
        return [each for role in ("menu item", "check menu item", "radio menu item") for each in self.app.all(role)]

    def menu_item(self, matches):
        return wait_for(
            lambda: next((each for each in self.items() if matches(each.name)), None), "an entry of the menu"
        )

    def capsules(self):
        return [each for each in self.app.all("push button") if each.name.startswith("Remove Image")]

    def copy_image(self, path):
        subprocess.run(
            ["xclip", "-selection", "clipboard", "-t", "image/png", "-i", str(path)],
            check=True,
            timeout=10,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--app", required=True)
    parser.add_argument("--host", required=True)
    parser.add_argument("--pictures", required=True, type=Path)
    arguments = parser.parse_args()
    pictures = arguments.pictures.resolve()
    pictures.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as directory:
        scratch = Path(directory)
        log_path = scratch / "log"
        with log_path.open("w", encoding="utf-8") as log:
            stage = Stage(arguments.host, arguments.app, scratch, log)
            conversation = Conversation(stage, pictures)
            try:
                conversation.walk()
            except (NotSeen, OSError, subprocess.SubprocessError, ValueError, KeyError) as reason:
                conversation.picture("failed")
                print(f"{reason}\n{log_path.read_text(encoding='utf-8', errors='replace')[-3000:]}", file=sys.stderr)
                return 1
            finally:
                stage.close()
        complaints = [
            line
            for line in log_path.read_text(encoding="utf-8", errors="replace").splitlines()
            if any(sign in line for sign in COMPLAINTS)
        ]
        if complaints:
            print("the app complains about its own screens", *complaints, sep="\n", file=sys.stderr)
            return 1
    print(f"Every step was seen. The pictures are in {pictures}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
