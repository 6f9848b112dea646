# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""The real app on the real bridge with the demo agent, paired and ready to be used."""

import json
import os
import queue
import subprocess
import threading

from driver import Driver, NotSeen, end
from wiretap import Wiretap

COMPLAINTS = ("qrc:/", "TypeError", "ReferenceError", "Binding loop")


class Lines:
    """The lines a program prints, each waited for with a limit."""

    def __init__(self, command, log):
        self.process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=log, stdin=subprocess.DEVNULL, text=True)
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


class Stage:
    """A bridge with directories of its own, and an app that is paired with it. Closing ends both."""

    def __init__(self, host, app, scratch, log, scheme="light", size=(390, 844)):
        self.running = []
        self.log = log
        self.scratch = scratch
        try:
            self._start(host, app, scheme)
            self.app.resize(*size)
        except BaseException:
            self.close()
            raise

    def _start(self, host, app, scheme):
        self.state = str(self.scratch / "bridge")
        serve = self._lines([host, "serve", "--agent", "demo", "--listen", "127.0.0.1:0", "--state-dir", self.state])
        line = serve.next("the bridge's address")
        if not line.startswith("listening on http://127.0.0.1:"):
            raise NotSeen(f"the bridge says: {line}")
        self.tap = Wiretap(int(line.rsplit(":", 1)[1]))
        self.running.append(self.tap)
        offer = self._lines([host, "pair", "--json", "--state-dir", self.state])
        # The code lets whoever reads it first in, so it goes through a file that only we can read.
        code = self.scratch / "code"
        payload = json.loads(json.loads(offer.next("the pairing code"))["payload"])
        payload["baseURL"] = f"http://127.0.0.1:{self.tap.port}"
        with open(os.open(code, os.O_WRONLY | os.O_CREAT, 0o600), "w", encoding="utf-8") as file:
            json.dump(payload, file)
        for kind in ("data", "config", "cache"):
            os.environ[f"XDG_{kind.upper()}_HOME"] = str(self.scratch / kind)
        command = [app, "--color-scheme", scheme, "--pair-from", str(code)]
        self.app = Driver(command, "varnel-app", "Varnel", self.log)
        self.running.append(self.app)

    def _lines(self, command):
        lines = Lines(command, self.log)
        self.running.append(lines)
        return lines

    def close(self):
        for each in reversed(self.running):
            each.close()
        self.running = []
