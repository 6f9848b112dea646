#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Follows a real bridge with the application's model: start, events, a bridge that is killed and comes back, a token
that is revoked, an unpairing."""

import argparse
import json
import queue
import signal
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

from every_operation import PREFERENCES, SECONDS, Bridge, Caller, Failed, expect, first_line


class Followed:
    """A running `varnel-inspect follow`: every line it printed, and the values they leave."""

    def __init__(self, inspect, access, opened):
        self.process = subprocess.Popen([inspect, "follow", *access, "--open", opened],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.lines = []
        self.fresh = queue.Queue()
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()

    def read(self):
        for line in self.process.stdout:
            self.fresh.put(json.loads(line))
        self.fresh.put(None)

    def until(self, holds, what):
        """Takes lines until one is right, and gives it."""
        while True:
            try:
                line = self.fresh.get(timeout=SECONDS)
            except queue.Empty:
                line = None
            if line is None:
                raise Failed(f"{what}: not within {SECONDS} s, after {self.lines[-3:]}")
            self.lines.append(line)
            if holds(line):
                return line

    def until_field(self, name, value):
        return self.until(lambda line: line.get(name) == value and name in line, f"{name} {value}")

    def call(self, verb, **arguments):
        """What a verb returned."""
        self.process.stdin.write(json.dumps({"call": verb, "args": arguments}) + "\n")
        self.process.stdin.flush()
        return self.until(lambda line: line.get("result", {}).get("call") == verb, verb)["result"]["value"]

    def drain(self):
        while not self.fresh.empty():
            self.until(lambda line: True, "a line")

    def values(self, name):
        return [line[name] for line in self.lines if name in line]

    def end(self):
        self.process.kill()
        self.process.wait()


class MortalBridge(Bridge):
    """One that can be killed, and come back with the same state on the same address."""

    def __init__(self, host, state):
        super().__init__(host, state)
        self.host, self.state = host, state

    def kill(self):
        self.processes[0].kill()
        self.processes[0].wait()

    def come_back(self):
        serve = self.start(self.host, "serve", "--agent", "demo", "--listen", self.address.split("//")[1],
                           "--state-dir", self.state)
        self.processes[0] = self.processes.pop()
        expect(first_line(serve, "the address").endswith(self.address), "the bridge came back elsewhere")

    def revoke(self, name):
        subprocess.run([self.host, "devices", "revoke", name, "--state-dir", self.state], check=True,
                       stdout=subprocess.DEVNULL, timeout=SECONDS)


def send(caller_or_followed, session, text):
    return caller_or_followed("sendMessage", sessionId=session, text=text, preferences=PREFERENCES, attachments=[])


def follow_events(followed, call, session):
    """What one's own message and somebody else's change."""
    followed.until_field("connected", True)
    followed.until_field("refreshed", True)
    expect(session in followed.values("sessions")[-1], "the conversation is not listed")
    expect(send(followed.call, session, "From here.") is True, "sendMessage: not taken")

    def is_echoed(line):
        items = line.get("transcript", {}).get(session)
        return items is not None and not any(each.startswith("optimistic-") for each in items)

    shown = [each.get(session, []) for each in followed.values("transcript")]
    expect(any(each and each[-1].startswith("optimistic-") for each in shown), "the message did not show at once")
    followed.until(is_echoed, "the echo")
    call("rename", sessionId=session, name="Named elsewhere")


def check_return(followed, bridge, call, session):
    """A bridge that is away a while, and goes on without the phone once it is back."""
    followed.drain()
    bridge.kill()
    lost = followed.until_field("connected", False)["at"]
    bridge.come_back()
    found = followed.until_field("connected", True)["at"]
    expect(found - lost >= 1, f"connected again after {found - lost:.3f} s: not a second's wait")
    expect(found - lost < SECONDS, "connected much too late")

    # Stopped, it misses the end of its stream and everything after it.
    followed.process.send_signal(signal.SIGSTOP)
    bridge.kill()
    bridge.come_back()
    send(call, session, "While you were away.")
    followed.process.send_signal(signal.SIGCONT)
    lost = followed.until_field("connected", False)["at"]
    found = followed.until_field("connected", True)["at"]
    expect(1 <= found - lost < 1.5, f"connected again after {found - lost:.3f} s, not after one second")


def check_equal(followed, call, session):
    """Once nothing moves any more, the phone knows what the bridge knows."""
    call("interrupt", sessionId=session)
    call("rename", sessionId=session, name="The end")
    for _ in range(SECONDS * 10):
        followed.call("preferences", sessionId=session)
        items = [each["id"] for each in call("session", sessionId=session)["items"]]
        shown = [each[session] for each in followed.values("transcript") if session in each]
        if shown[-1] == items:
            break
    expect(shown[-1] == items, f"the phone shows {shown[-1]}, the bridge has {items}")
    expect(len(set(items)) == len(items), "an item stands twice")
    # The bridge numbers its events without a gap, so that one that was missed would show.
    sequences = followed.values("lastSequence")
    expect(sequences == list(range(sequences[0], sequences[-1] + 1)), f"not one after the other: {sequences}")
    return sequences


def check_revoked_and_unpaired(followed, bridge):
    bridge.revoke("Follower")
    followed.until_field("connected", False)
    followed.until_field("tokenRefused", True)
    followed.call("refresh", includeRateLimit=False)
    expect(followed.values("errorMessage") == [], f"reported: {followed.values('errorMessage')}")
    followed.call("unpair")
    emptied = {name: followed.values(name)[-1] for name in ("credentials", "sessions", "usage", "tokenRefused")}
    expect(emptied == {"credentials": False, "sessions": [], "usage": None, "tokenRefused": False}, f"kept: {emptied}")
    expect(not any(followed.values("transcript")[-1].values()), "a transcript stayed")
    followed.process.stdin.close()
    status = followed.process.wait(SECONDS)
    expect(status == 0, f"exit {status}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--host", required=True)
    parser.add_argument("--inspect", required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        bridge = followed = None
        try:
            bridge = MortalBridge(options.host, str(Path(scratch) / "bridge"))
            stranger = Caller(options.inspect, bridge.address, "none")
            claimed = stranger("claim", baseURL=bridge.address, secret=bridge.secret, deviceName="Follower")
            call = Caller(options.inspect, bridge.address, claimed["token"])
            session = next(each["id"] for each in call("sessions") if each["state"] == "done")
            followed = Followed(options.inspect, call.access, session)
            follow_events(followed, call, session)
            check_return(followed, bridge, call, session)
            sequences = check_equal(followed, call, session)
            check_revoked_and_unpaired(followed, bridge)
            print(f"{len(followed.lines)} changes, events {sequences[0]} to {sequences[-1]}")
            return 0
        except (Failed, subprocess.SubprocessError, json.JSONDecodeError, KeyError, StopIteration) as reason:
            print(f"{type(reason).__name__}: {reason}", file=sys.stderr)
            return 1
        finally:
            if followed:
                followed.end()
            if bridge:
                bridge.end()


if __name__ == "__main__":
    sys.exit(main())
