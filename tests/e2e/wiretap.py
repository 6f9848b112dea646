# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Stands between the app and the bridge and remembers what the app asks for."""

import json
import socket
import threading


class Wiretap:
    """A port of its own that leads to the bridge's. Every request of the app comes on a connection of its own."""

    def __init__(self, bridge_port):
        self.bridge_port = bridge_port
        self._heard = []
        self._lock = threading.Lock()
        self._server = socket.create_server(("127.0.0.1", 0))
        self.port = self._server.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def requests(self, method, end):
        """The JSON bodies of all such requests that have come so far, oldest first."""
        with self._lock:
            texts = [bytes(text) for text in self._heard]
        found = []
        for text in texts:
            head, _, body = text.partition(b"\r\n\r\n")
            words = head.split(b"\r\n")[0].decode().split(" ")
            if len(words) == 3 and words[0] == method and words[1].endswith(end) and body:
                try:
                    found.append(json.loads(body))
                except ValueError:
                    continue  # the rest of it is still on its way
        return found

    def close(self):
        self._server.close()

    def _accept(self):
        while True:
            try:
                client, _ = self._server.accept()
            except OSError:
                return
            heard = bytearray()
            with self._lock:
                self._heard.append(heard)
            bridge = socket.create_connection(("127.0.0.1", self.bridge_port))
            threading.Thread(target=self._pass_on, args=(client, bridge, heard), daemon=True).start()
            threading.Thread(target=self._pass_on, args=(bridge, client, None), daemon=True).start()

    def _pass_on(self, source, target, heard):
        try:
            while data := source.recv(65536):
                if heard is not None:
                    with self._lock:
                        heard += data
                target.sendall(data)
        except OSError:
            pass
        for end in (source, target):
            try:
                end.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
