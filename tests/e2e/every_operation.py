#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Calls every operation of the client on a real bridge: first as a paired device, then with a token nobody gave out."""

import argparse
import itertools
import json
import select
import subprocess
import sys
import tempfile
from pathlib import Path

SECONDS = 20
NOT_PAIRED = "This device is not paired with the bridge."
PREFERENCES = {"mode": "default", "model": "gpt-5.6-sol", "reasoningEffort": "medium", "serviceTier": "default"}


class Failed(AssertionError):
    """An operation did not answer as it has to."""


def first_line(process, what):
    ready, _, _ = select.select([process.stdout], [], [], SECONDS)
    line = process.stdout.readline().strip() if ready else ""
    if not line:
        raise Failed(f"{what} was not printed within {SECONDS} s")
    return line


class Bridge:
    """`varnel serve` with its demo agent, and one code for pairing."""

    def __init__(self, host, state):
        self.processes = []
        serve = self.start(host, "serve", "--agent", "demo", "--listen", "127.0.0.1:0", "--state-dir", state)
        self.address = first_line(serve, "the bridge's address").removeprefix("listening on ")
        pair = self.start(host, "pair", "--json", "--state-dir", state)
        self.secret = json.loads(json.loads(first_line(pair, "the pairing code"))["payload"])["secret"]

    def start(self, *command):
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, text=True)
        self.processes.append(process)
        return process

    def end(self):
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(SECONDS)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


class Caller:
    """One device's calls through `varnel-inspect`."""

    def __init__(self, inspect, address, token):
        self.access = ["--base-url", address, "--token", token]
        self.inspect = inspect

    def run(self, *words):
        return subprocess.run([self.inspect, *words], capture_output=True, text=True, timeout=SECONDS, check=False)

    def __call__(self, operation, **arguments):
        done = self.run("call", operation, json.dumps(arguments), *([] if operation == "claim" else self.access))
        if done.returncode != 0:
            raise Failed(f"{operation}: exit {done.returncode}, {done.stderr.strip()}")
        return json.loads(done.stdout)

    def refused(self, operation, arguments):
        """The user's text of a call that has to be refused."""
        done = self.run("call", operation, json.dumps(arguments), *self.access)
        if done.returncode != 1 or done.stdout:
            raise Failed(f"{operation}: exit {done.returncode} with a wrong token, {done.stdout}")
        return done.stderr.strip()


def expect(holds, what):
    if not holds:
        raise Failed(what)


def operations(caller):
    """The names the tool lists when it is asked for one it does not know."""
    help_text = caller.run("--help")
    lines = (help_text.stdout + help_text.stderr).splitlines()
    start = next(index for index, line in enumerate(lines) if line.strip().startswith("claim baseURL"))
    listed = itertools.takewhile(lambda line: line.startswith("  "), lines[start:])
    return {line.split()[0] for line in listed}


def waiting_requests(call, sessions):
    for each in sessions:
        for request in call("session", sessionId=each["id"])["pendingRequests"]:
            yield each["id"], request


def call_everything(call, picture):
    """As a paired device; gives the operations called, each with its arguments."""
    called = {}

    def answer(operation, **arguments):
        called[operation] = arguments
        return call(operation, **arguments)

    sessions = answer("sessions")
    expect(len(sessions) >= 8, f"sessions: only {len(sessions)}")
    idle, other = [each["id"] for each in sessions if each["state"] == "done"][:2]
    expect(answer("session", sessionId=idle)["items"], "session: no items")

    safe = next(each for each in answer("projects") if not each["highRisk"])
    expect(answer("models"), "models: empty")
    expect(answer("rateLimit")["rateLimit"] is not None, "rateLimit: none")
    expect(answer("usage")["primary"] is not None, "usage: no primary window")
    call("usage", sessionId=idle)
    page = answer("archivedSessions")
    expect(page["data"] and page["nextCursor"], "archivedSessions: no second page")
    more = call("archivedSessions", cursor=page["nextCursor"])["data"]
    expect(more and {each["id"] for each in more}.isdisjoint(each["id"] for each in page["data"]),
           "archivedSessions: the second page repeats the first")
    expect(answer("search", query="parser")["data"], "search: nothing found")

    nothing = {
        "rename": {"sessionId": idle, "name": "A name of our own"},
        "updateSettings": {"sessionId": idle, "preferences": PREFERENCES},
        "track": {"sessionId": idle, "pin": True},
    }
    for operation, arguments in nothing.items():
        expect(answer(operation, **arguments) is None, f"{operation}: an answer where none is returned")
    renamed = next(each for each in call("sessions") if each["id"] == idle)
    expect(renamed["name"] == "A name of our own", f"rename: the name is {renamed['name']}")
    expect(renamed["pinned"], "track: not pinned")

    attachment = answer("upload", sessionId=idle, file=str(picture), mimeType="image/png", fileName="a picture.png")
    expect(attachment["name"] == "a picture.png", f"upload: {attachment}")
    expect(answer("sendMessage", sessionId=idle, text="Please look.", preferences=PREFERENCES,
                  attachments=[attachment]) is None, "sendMessage: an answer")
    expect(answer("interrupt", sessionId=idle) is None, "interrupt: an answer")
    items = call("session", sessionId=idle)["items"]
    expect(any("Please look." in json.dumps(item) for item in items), "sendMessage: the message is not in the transcript")

    answer("startGoal", sessionId=other, objective="Keep the tests green", preferences=PREFERENCES, attachments=[])
    call("interrupt", sessionId=other)

    blocked, command = next(found for found in waiting_requests(call, sessions) if "commandExecution" in found[1]["method"])
    answer("resolve", requestId=command["id"], result={"decision": "decline"})
    left = [each["id"] for each in call("session", sessionId=blocked)["pendingRequests"]]
    expect(command["id"] not in left, "resolve: the request still waits")

    fresh = answer("createSession", cwd=safe["path"], mode="plan", sandbox="workspace-write",
                   approvalPolicy="on-request", prompt="Say hello.")
    expect(call("session", sessionId=fresh)["items"], "createSession: the new session is empty")
    call("interrupt", sessionId=fresh)
    expect(answer("archive", sessionId=idle) is None, "archive: an answer")
    expect(idle not in [each["id"] for each in call("sessions")], "archive: still in the list")
    call("archive", sessionId=idle, unarchive=True)
    expect(idle in [each["id"] for each in call("sessions")], "unarchive: not in the list")
    return called


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--host", required=True)
    parser.add_argument("--inspect", required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        bridge = None
        try:
            picture = Path(scratch) / "picture.png"
            picture.write_bytes(b"\x89PNG\r\n\x1a\n" + bytes(100))
            bridge = Bridge(options.host, str(Path(scratch) / "bridge"))
            stranger = Caller(options.inspect, bridge.address, "nobody-gave-this-token-out-0123456789")
            claimed = stranger("claim", baseURL=bridge.address, secret=bridge.secret, deviceName="Test phone")
            call = Caller(options.inspect, bridge.address, claimed["token"])
            called = call_everything(call, picture)

            expect({"claim", *called} == operations(stranger), f"called {sorted(called)}, listed {sorted(operations(stranger))}")
            for operation, arguments in called.items():
                text = stranger.refused(operation, arguments)
                expect(text == NOT_PAIRED, f"{operation} with a wrong token says: {text}")
            done = stranger.run("events", *stranger.access, "--after", "0", "--count", "1")
            # The toolkit's socket keeps the body of a refused upgrade to itself.
            refused = done.returncode == 1 and done.stderr.strip() in (NOT_PAIRED, "Bridge error")
            expect(refused, f"events with a wrong token: {done.stderr}")
            done = call.run("events", *call.access, "--after", "0", "--count", "1")
            expect(json.loads(done.stdout)["type"] == "snapshot.required", f"events: {done.stdout}{done.stderr}")
            print(f"{len(called) + 2} operations answered; {len(called) + 1} refused a wrong token in the bridge's words")
            return 0
        except (Failed, subprocess.TimeoutExpired, json.JSONDecodeError, KeyError, StopIteration) as reason:
            print(f"{type(reason).__name__}: {reason}", file=sys.stderr)
            return 1
        finally:
            if bridge:
                bridge.end()


if __name__ == "__main__":
    sys.exit(main())
