#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""An MCP server on standard input and output with one tool, "form", that asks the user for a name."""
import json
import sys


def send(message):
    print(json.dumps({"jsonrpc": "2.0", **message}), flush=True)


def main():
    waiting = None
    for line in sys.stdin:
        message = json.loads(line)
        method, number = message.get("method"), message.get("id")
        if method == "initialize":
            send({"id": number, "result": {"protocolVersion": message["params"]["protocolVersion"],
                                           "capabilities": {"tools": {}},
                                           "serverInfo": {"name": "form", "version": "1"}}})
        elif method == "tools/list":
            send({"id": number, "result": {"tools": [
                {"name": "form", "description": "Asks for a name.", "annotations": {"readOnlyHint": True},
                 "inputSchema": {"type": "object", "properties": {}}}]}})
        elif method == "tools/call":
            waiting = number
            send({"id": "asked", "method": "elicitation/create", "params": {
                "message": "Your name?",
                "requestedSchema": {"type": "object", "properties": {"name": {"type": "string"}}}}})
        elif number == "asked":
            action = message.get("result", {}).get("action", "none")
            send({"id": waiting, "result": {"content": [{"type": "text", "text": f"The user said {action}."}]}})
        elif number is not None and method:
            send({"id": number, "result": {}})


if __name__ == "__main__":
    main()
