#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""The model service of a real agent, on loopback: it says what the last message asks it to say.

  #say TEXT          says that
  #list N            N lines
  #slow N            N words, five a second
  #run COMMAND       runs a command in the sandbox
  #sudo COMMAND      asks to run a command outside the sandbox
  #patch FILE TEXT   adds a file with apply_patch
  #steps             moves a plan of three steps to its end
  #propose           proposes a plan
  #ask               asks the user a question
  #permit PATH       asks for write access
  #tool SERVER NAME  calls a tool of an MCP server
  #pictures          says how many pictures came
  #fail CODE         answers with that HTTP status
  #limits P S        says that so many percent are used

Anything else is answered in markdown. A turn of a goal ends the goal, or goes on slowly when "keep-slow" is in it.

usage: scripted_model.py --home DIR [--signed-in] [--lines TEXT]
Writes DIR/config.toml, which makes the agent use it, prints its port, and ends with its standard input.
"""
import argparse
import base64
import json
import os
import re
import sys
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

MARKDOWN = "# Result\n\nThe change is **done**. See `src/main.cpp`:\n\n1. first\n2. second\n\n```cpp\nint main() {}\n```\n"

CONFIG = """model = "gpt-5.5"
model_provider = "scripted"
chatgpt_base_url = "http://127.0.0.1:{port}/backend-api"
cli_auth_credentials_store = "file"

[features]
default_mode_request_user_input = true
request_permissions_tool = true

[model_providers.scripted]
name = "Scripted"
base_url = "http://127.0.0.1:{port}/v1"
wire_api = "responses"
request_max_retries = 0
stream_max_retries = 0
requires_openai_auth = {auth}
"""


def says(text, phase="final_answer", pieces=r"[^\n]*\n|[^\n]+"):
    item = {"type": "message", "role": "assistant", "phase": phase, "content": [{"type": "output_text", "text": text}]}
    return item, re.findall(pieces, text)


def calls(name, namespace=None, **arguments):
    item = {"type": "function_call", "name": name, "arguments": json.dumps(arguments)}
    return ({**item, "namespace": namespace} if namespace else item), []


def plan(*states):
    steps = [{"step": step, "status": state} for step, state in zip(("Read", "Write", "Check"), states)]
    return [calls("update_plan", explanation="Three steps.", plan=steps)]


def script(keyword, argument, pictures):
    """What is answered, response by response; after the last one nothing follows. None: what the tool returned."""
    word, _, rest = argument.partition(" ")
    done = [says("Done.")]
    count = int(word) if word.isdigit() else 50
    runs = {"cmd": argument or "echo hello"}
    asks = {"id": "colour", "header": "Colour", "question": "Which colour?",
            "options": [{"label": "Red", "description": "Warm."}, {"label": "Blue", "description": "Cool."}]}
    patch = f"*** Begin Patch\n*** Add File: {word}\n+{rest}\n*** End Patch\n"
    scripts = {
        "say": [[says(argument)]],
        "list": [[says("".join(f"- line {i + 1}\n" for i in range(count)))]],
        "slow": [[says(" ".join(f"word{i}" for i in range(count)), pieces=r"\S+\s*")]],
        "run": [[says("Running it.", "commentary"), calls("exec_command", **runs)], done],
        "sudo": [[says("May I?", "commentary"),
                  calls("exec_command", sandbox_permissions="require_escalated", justification="May I?", **runs)], done],
        "patch": [[({"type": "custom_tool_call", "name": "apply_patch", "input": patch}, [])], done],
        "steps": [plan("in_progress", "pending", "pending"), plan("completed", "completed", "completed"), done],
        "propose": [[says("<proposed_plan>\n# Plan\n\n1. Read\n2. Write\n</proposed_plan>\n")]],
        "ask": [[calls("request_user_input", questions=[asks])], None],
        "permit": [[calls("request_permissions", reason="Needs it.", permissions={"file_system": {"write": [word]}})],
                   None],
        "tool": [[calls(rest, "mcp__" + word)], None],
        "pictures": [[says(f"Received {pictures} picture(s).")]],
        "finish-goal": [[calls("update_goal", status="complete")], [says("Goal reached.")]],
    }
    return scripts.get(keyword, [[says(MARKDOWN)]])


def text_of(item):
    parts = [part for part in item.get("content") or [] if isinstance(part, dict)]
    return " ".join(part.get("text") or "" for part in parts)


def understand(items):
    """The keyword and argument of the last message, the tools' results since, and how many pictures it has."""
    start, said = 0, ""
    # Later versions say a goal's objective as a tool's output of that name, not in the message.
    goal = " ".join(str(item.get("output")) for item in items if item.get("name") == "goal_objective")
    for index, item in enumerate(items):
        if item.get("type", "message") != "message":
            continue
        text = text_of(item)
        if "Continue working toward the active thread goal" in text:
            start, said = index, "#slow 60" if "keep-slow" in text + goal else "#finish-goal"
        elif item.get("role") == "user" and not text.startswith("<"):
            start, said = index, text
    results = [item.get("output") for item in items[start:] if item.get("type", "").endswith("_call_output")]
    parts = items[start].get("content") if items else []
    pictures = sum(part.get("type") == "input_image" for part in parts or [])
    found = re.search(r"#([a-z-]+) *([^\n]*)", said)
    keyword, argument = found.groups() if found else ("", "")
    return keyword, argument.strip(), results, pictures


def window(percent, minutes):
    return {"used_percent": percent, "limit_window_seconds": minutes * 60, "reset_after_seconds": minutes * 30,
            "reset_at": int(time.time()) + minutes * 30}


def account(path, body):
    if path.endswith("/wham/usage"):
        return {"plan_type": "plus", "rate_limit": {"allowed": True, "limit_reached": False,
                                                    "primary_window": window(42, 300),
                                                    "secondary_window": window(17, 10080)}}
    if path.endswith("/rate-limit-reset-credits"):
        return {"available_count": 2, "credits": []}
    if path.endswith("/profiles/me"):
        return {"stats": {"lifetime_tokens": 123456, "peak_daily_tokens": 5000, "longest_running_turn_sec": 321,
                          "current_streak_days": 3, "longest_streak_days": 9,
                          "daily_usage_buckets": [{"start_date": "2026-01-01", "tokens": 4000}]}}
    if path.endswith("/thread_usage/query"):
        group = {"model": "gpt-5.5", "reasoning_effort": "medium", "speed": None, "input_tokens": 1200,
                 "estimated_usage_credits_micros": 1500000, "net_new_input_tokens": 1000, "cached_input_tokens": 200,
                 "output_tokens": 80, "total_tokens": 1280}
        return {"threads": [{"thread_id": thread, "estimated_usage_credits_micros": 1500000,
                             "estimated_usage_usd_micros": 60000, "groups": [group]}
                            for thread in json.loads(body)["thread_ids"]]}
    return None


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    count = 0

    def do_GET(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        self.close_connection = True
        if self.path.endswith("/responses"):
            return self.respond(json.loads(body))
        answer = account(self.path, body)
        return self.reply(200 if answer else 404, answer or {"error": {"message": "no such operation"}})

    do_POST = do_GET

    def respond(self, request):
        keyword, argument, results, pictures = understand(request["input"])
        if keyword == "fail":
            return self.reply(int(argument[:3] or 500), {"error": {"message": "scripted failure",
                                                                   "type": "server_error"}})
        self.begin(argument.split() if keyword == "limits" else [])
        steps = script(keyword, argument, pictures)
        blocks = steps[min(len(results), len(steps) - 1)]
        if blocks is None:
            blocks = [says("You answered: " + json.dumps(results[-1]))]
        try:
            self.play(blocks, 0.2 if keyword == "slow" else 0)
        except (BrokenPipeError, ConnectionResetError):
            pass
        return None

    def play(self, blocks, pause):
        Handler.count += 1
        number = Handler.count
        self.event("response.created", response={"id": f"response_{number}"})
        for index, (item, deltas) in enumerate(blocks):
            item = dict(item, id=f"item_{number}_{index}")
            if item["type"].endswith("_call"):
                item["call_id"] = f"call_{number}_{index}"
            empty = dict(item, content=[]) if item["type"] == "message" else item
            self.event("response.output_item.added", output_index=index, item=empty)
            for delta in deltas:
                self.event("response.output_text.delta", item_id=item["id"], output_index=index, content_index=0,
                           delta=delta)
                time.sleep(pause)
            self.event("response.output_item.done", output_index=index, item=item)
        usage = {"input_tokens": 1200, "input_tokens_details": {"cached_tokens": 200}, "output_tokens": 80,
                 "output_tokens_details": {"reasoning_tokens": 30}, "total_tokens": 1280}
        self.event("response.completed", response={"id": f"response_{number}", "usage": usage})

    def begin(self, limits):
        self.send_response(200)
        self.send_header("Content-Type", "text/event-stream")
        self.send_header("Connection", "close")
        for name, minutes, used in zip(("primary", "secondary"), (300, 10080), limits):
            self.send_header(f"x-codex-{name}-used-percent", used)
            self.send_header(f"x-codex-{name}-window-minutes", str(minutes))
            self.send_header(f"x-codex-{name}-reset-at", str(int(time.time()) + minutes * 60))
        self.end_headers()

    def event(self, kind, **fields):
        self.wfile.write(f"event: {kind}\ndata: {json.dumps({**fields, 'type': kind})}\n\n".encode())
        self.wfile.flush()

    def reply(self, status, body):
        data = json.dumps(body).encode()
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def log_message(self, *_):
        pass


def sign_in(home):
    def part(value):
        return base64.urlsafe_b64encode(json.dumps(value).encode()).rstrip(b"=").decode()

    claims = {"email": "test@example.org", "exp": int(time.time()) + 86400,
              "https://api.openai.com/auth": {"chatgpt_plan_type": "plus", "chatgpt_account_id": "test"}}
    token = ".".join((part({"alg": "none"}), part(claims), part("signature")))
    tokens = {"id_token": token, "access_token": token, "refresh_token": "test", "account_id": "test"}
    with open(os.path.join(home, "auth.json"), "w", encoding="utf-8") as file:
        json.dump({"auth_mode": "chatgpt", "OPENAI_API_KEY": None, "tokens": tokens,
                   "last_refresh": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime())}, file)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--home", required=True, help="the agent's folder")
    parser.add_argument("--signed-in", action="store_true", help="with a made-up account")
    parser.add_argument("--lines", default="", help="more lines of the configuration")
    options = parser.parse_args()
    server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    os.makedirs(options.home, exist_ok=True)
    with open(os.path.join(options.home, "config.toml"), "w", encoding="utf-8") as file:
        file.write(CONFIG.format(port=server.server_port, auth=str(options.signed_in).lower()) + options.lines)
    if options.signed_in:
        sign_in(options.home)
    print(server.server_port, flush=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    sys.stdin.read()


if __name__ == "__main__":
    main()
