#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Writes what the benchmarks read; the same arguments give the same bytes.

usage: corpus.py detail N OUT.json   the answer about a conversation of N items
       corpus.py events N OUT.jsonl  N messages of the event stream, one a line
       corpus.py markdown N OUT.md   N bytes or a little more of replies, a NUL after each

Only Random.random() and Random.choices() are used: they are stable over versions of Python. JSON is compact UTF-8 with
"/" and everything beyond ASCII unescaped. The benchmarks know the SHA-256 of what they measure, so a change here is a
change there.
"""

import json
import math
import random
import sys

EN = ("the a build test parser bridge session token cache file line branch commit value error timeout "
      "retry queue socket stream decode encode field record list window model state change update render "
      "because when after before which should now still only every first last next returns fails passes "
      "keeps reads writes moves checks handles updates replaces removes adds between without through "
      "configuration implementation directory dependency allocation boundary iterator callback "
      "asynchronous deterministic regression serialisation").split()
FR = ("le la les un une des de du et ou mais donc car fichier échoue réussi après dépôt défaut été où "
      "déjà vérifié modifié réécrit corrigé paramètre mémoire mise à jour branche œuvre tâche requête "
      "réponse élément sélection côté créé supprimé façon ça là très même").split()
ZH = "构建测试解析会话令牌缓存文件提交错误超时重试队列套接字编码解码字段记录列表窗口模型状态更新渲染函数返回失败通过读取写入".strip()
JA = "この変更ではテストが通るようにファイルを修正しましたエラー処理とキャッシュの更新も含みます".strip()
EMOJI = ["✅", "🚀", "⚠️", "🎉", "🔧", "👩‍💻", "🇫🇷", "❌"]
PATHS = ["src/net/http_client.cpp", "src/model/app_model.cpp", "tests/test_markdown.py", "include/core/json.hpp",
         "lib/util/strings.ts", "cmd/server/main.go", "docs/README.md", "crates/core/src/lib.rs", "ui/Session.qml"]
IDENT = ["parseItems", "load_session", "m_buffer", "retryCount", "std::vector<int>", "await fetch()", "git rebase -i",
         "--dry-run", "SELECT *", "x == nullptr", "HTTP/1.1", "kMaxDepth", "self.state", "{key: value}"]
CODE = {
    "cpp": ["for (size_t i = 0; i < items.size(); ++i) {", "    if (items[i].role == \"user\") continue;",
            "    out.push_back(std::move(items[i]));", "}", "", "auto it = std::find(begin(v), end(v), key);",
            "template <class T> T&& fwd(T& t) { return static_cast<T&&>(t); }", "// see \\ and | and * here"],
    "python": ["def load(path: str) -> dict:", "    with open(path, encoding=\"utf-8\") as f:",
               "        return json.load(f)", "", "for k, v in sorted(d.items()):", "    print(f\"{k}: {v!r}\")", "# note"],
    "bash": ["set -euo pipefail", "cmake -S . -B build -DCMAKE_BUILD_TYPE=Release", "ctest --test-dir build -j2",
             "grep -rn \"TODO\" src | wc -l", "tar czf out.tgz -C build bin"],
    "json": ["{", "  \"version\": 1,", "  \"items\": [1, 2.5, null, true],", "  \"path\": \"C:\\\\tmp\"", "}"],
    "": ["$ make", "cc -O2 -o main main.c", "ok", "        indented", "a | b | c"],
}


class Gen:
    def __init__(self, seed):
        self.r = random.Random(seed)
        self.t = 1760000000.0
        self.n = 0

    def rnd(self, a, b):
        return a + int(self.r.random() * (b - a + 1))

    def pick(self, xs):
        return xs[int(self.r.random() * len(xs))]

    def p(self, x):
        return self.r.random() < x

    def lang(self):
        x = self.r.random()
        return "fr" if x < 0.12 else "zh" if x < 0.16 else "ja" if x < 0.18 else "en"

    def sentence(self, lang, rich):
        k = self.rnd(6, 22)
        if lang in ("zh", "ja"):
            s = "".join(self.r.choices(ZH if lang == "zh" else JA, k=k * 2))
            if rich and self.p(0.4):
                s += "`" + self.pick(IDENT) + "`"
            return s + "。"
        w = self.r.choices(FR if lang == "fr" else EN, k=k)
        w[0] = w[0].capitalize()
        if rich:
            for _ in range(self.rnd(0, 3)):
                i, x = self.rnd(0, k - 1), self.r.random()
                w[i] = ("`%s`" % self.pick(IDENT) if x < .5 else "**%s**" % w[i] if x < .75 else "*%s*" % w[i]
                        if x < .82 else "[%s](%s#L%d)" % (w[i], self.pick(PATHS), self.rnd(1, 900)))
        if self.p(0.04):
            w.append(self.pick(EMOJI))
        return " ".join(w) + "."

    def para(self, lang, rich=True):
        sep = "" if lang in ("zh", "ja") else " "
        return sep.join(self.sentence(lang, rich) for _ in range(self.rnd(1, 4)))

    def block(self, lang):
        x = self.r.random()
        if x < 0.40:
            s = self.para(lang)
            return s if self.p(.8) else s.replace(". ", ".\n")
        if x < 0.58:
            return "\n".join("%s- %s" % ("  " if self.p(.2) else "", self.sentence(lang, True)) for _ in range(self.rnd(2, 7)))
        if x < 0.68:
            return "\n".join("%d. %s" % (i + 1, self.sentence(lang, True)) for i in range(self.rnd(2, 6)))
        if x < 0.84:
            tag = self.pick(list(CODE))
            return "```%s\n%s\n```" % (tag, "\n".join(self.r.choices(CODE[tag], k=self.rnd(3, 24))))
        if x < 0.91:
            c = self.rnd(2, 4)
            row = lambda: "| " + " | ".join(" ".join(self.r.choices(EN, k=self.rnd(1, 3))) for _ in range(c)) + " |"
            return "\n".join([row(), "|" + "---|" * c] + [row() for _ in range(self.rnd(2, 8))])
        if x < 0.95:
            return "\n".join("> " + self.sentence(lang, True) for _ in range(self.rnd(1, 3)))
        return "---" if x < 0.96 else "#" * self.rnd(2, 3) + " " + " ".join(self.r.choices(EN, k=self.rnd(2, 6)))

    def reply(self):
        """200 B to 8 KB of Markdown, sizes spread evenly over their logarithm (mean about 2.1 KB)."""
        want, lang, out, size = math.exp(math.log(200) + self.r.random() * math.log(8000 / 200)), self.lang(), [], 0
        while size < want:
            b = self.block(lang)
            size += len(b.encode()) + 2
            out.append(b)
        s = "\n\n".join(out)
        if len(s.encode()) > 8192:
            s = s.encode()[:8192].decode("utf-8", "ignore")
        return s + "\n" if self.p(.1) else s

    def output(self):
        """Command output, 0 to 8 KB, most of it short; ANSI colours, tabs, quotes, back-slashes."""
        want = int(math.exp(self.r.random() * math.log(8000)))
        out, size = [], 0
        while size < want:
            x = self.r.random()
            s = ("%s:%d:\t%s" % (self.pick(PATHS), self.rnd(1, 2000), self.pick(self.pick(list(CODE.values())))) if x < .5
                 else "\x1b[32m[%3d%%]\x1b[0m Building CXX object %s.o" % (self.rnd(0, 100), self.pick(PATHS)) if x < .65
                 else "-rw-r--r-- 1 user user %7d Oct %2d 12:%02d %s" % (self.rnd(0, 9999999), self.rnd(1, 28), self.rnd(0, 59), self.pick(PATHS))
                 if x < .8 else self.sentence("fr" if self.p(.1) else "en", False))
            out.append(s)
            size += len(s) + 1
        return "\n".join(out)[:8000]

    def item(self):
        self.n += 1
        self.t = round(self.t + self.r.random() * 20, 3)
        it = {"id": "item_%08x%06d" % (self.rnd(0, 2**32 - 1), self.n), "type": "", "timestamp": self.t}
        x = self.r.random()
        if x < 0.08:
            lang = self.lang()
            it.update(type="userMessage", role="user", text=self.para(lang, False))
        elif x < 0.25:
            it.update(type="agentMessage", role="assistant", phase=self.pick(["commentary", "final"]), text=self.reply())
        elif x < 0.32:
            it.update(type="reasoning", text=self.para("en"))
        elif x < 0.34:
            it.update(type="plan", text="", detail={"steps": [{"step": self.sentence("en", False), "status": self.pick(
                ["pending", "inProgress", "completed"])} for _ in range(self.rnd(3, 8))], "explanation": None})
        elif x < 0.80:
            cmd, out, code = self.pick(CODE["bash"]), self.output(), 0 if self.p(.9) else self.rnd(1, 127)
            it.update(type="commandExecution", title=cmd, text=out[:400], status="completed" if code == 0 else "failed",
                      detail={"type": "commandExecution", "id": it["id"], "command": "/bin/bash -lc '%s'" % cmd,
                              "cwd": "/home/user/projects/varnel", "processId": str(self.rnd(1000, 99999)) if self.p(.5) else None,
                              "source": "agent", "status": "completed",
                              "commandActions": [{"type": self.pick(["read", "search", "unknown"]), "command": cmd,
                                                  "path": self.pick(PATHS) if self.p(.5) else None} for _ in range(self.rnd(1, 3))],
                              "aggregatedOutput": out, "exitCode": code, "durationMs": self.rnd(1, 60000)})
        elif x < 0.90:
            ch = [{"path": "/home/user/projects/varnel/" + self.pick(PATHS), "kind": {"type": "update", "movePath": None},
                   "diff": "@@ -%d,7 +%d,9 @@\n" % (self.rnd(1, 900), self.rnd(1, 900)) + "\n".join(
                       self.pick(["+", "-", " "]) + l for l in self.r.choices(CODE["cpp"], k=self.rnd(4, 40)))}
                  for _ in range(self.rnd(1, 3))]
            it.update(type="fileChange", title="Edit %d files" % len(ch), status="completed",
                      detail={"type": "fileChange", "id": it["id"], "status": "completed", "changes": ch})
        else:
            it.update(type="mcpToolCall", title="docs.search", status="completed",
                      detail={"type": "mcpToolCall", "id": it["id"], "server": "docs", "tool": "search",
                              "arguments": {"query": self.sentence("en", False), "limit": self.rnd(1, 50), "exact": self.p(.5)},
                              "result": {"content": [{"type": "text", "text": self.para(self.lang(), False)} for _ in range(self.rnd(1, 4))],
                                         "structuredContent": {"scores": [round(self.r.random(), 6) for _ in range(self.rnd(1, 12))]}},
                              "error": None, "durationMs": self.rnd(1, 5000)})
        if self.p(.02):
            it["futureField"] = {"a": [1, 2, {"b": "unknown keys are ignored"}]}
        return it


def detail(n):
    g = Gen(1)
    items = [g.item() for _ in range(n)]
    session = {"id": "0199a213-81c0-7800-8aa1-bbab2a035a53", "name": "Corriger l’analyseur", "cwd": "/home/user/projects/varnel",
               "project": "varnel", "active": True, "state": "working", "currentTurnId": "turn_42",
               "latestCommentary": "Running the tests now.", "updatedAt": g.t, "pinned": False, "tracked": True,
               "tokenUsage": {"contextTokens": 81234, "contextWindow": 272000, "inputTokens": 1203344, "outputTokens": 40021, "reasoningTokens": 20133},
               "turnPreferences": {"mode": "default", "model": "m-large", "reasoningEffort": "medium", "serviceTier": None},
               "plan": {"turnId": "turn_42", "explanation": None, "steps": [{"step": "Read", "status": "completed"},
                        {"step": "Fix", "status": "inProgress"}], "completed": False, "updatedAt": g.t}}
    return {"items": items, "pendingRequests": [], "session": session}


def events(n):
    """Mostly the news of one item, as while an agent works; about 200 bytes each."""
    g = Gen(3)
    for sequence in range(1, n + 1):
        g.t = round(g.t + g.r.random(), 3)
        event = {"sequence": sequence, "type": "", "timestamp": g.t}
        x = g.r.random()
        if x < 0.05:
            event.update(type="usage.updated", payload={})
        else:
            event.update(sessionId="0199a213-81c0-7800-8aa1-%012x" % g.rnd(0, 11), turnId="turn_%d" % g.rnd(1, 400))
            if x < 0.70:
                event.update(type=g.pick(["item.started", "item.updated", "item.completed"]),
                             payload={"itemId": "item_%08x%06d" % (g.rnd(0, 2**32 - 1), sequence),
                                      "itemType": g.pick(["commandExecution", "agentMessage", "fileChange"])})
            elif x < 0.75:
                event.update(type="session.updated", payload={"state": g.pick(["working", "needsInput", "done"])})
            else:
                event.update(type="activity.updated",
                             payload={"tracked": g.p(.5), "project": "varnel",
                                      "content": {"state": "working", "message": g.sentence(g.lang(), False)[:60],
                                                  "updatedAt": g.t, "sequence": sequence}})
        yield event


def replies(size):
    g, n = Gen(2), 0
    while n < size:
        reply = g.reply().encode() + b"\0"
        n += len(reply)
        yield reply


def compact(value):
    return json.dumps(value, ensure_ascii=False, separators=(",", ":")).encode()


def main(arguments):
    if len(arguments) != 3 or arguments[0] not in ("detail", "events", "markdown"):
        print(__doc__, file=sys.stderr)
        return 2
    kind, count, path = arguments[0], int(arguments[1]), arguments[2]
    with open(path, "wb") as out:
        if kind == "detail":
            out.write(compact(detail(count)))
        elif kind == "events":
            out.writelines(compact(event) + b"\n" for event in events(count))
        else:
            out.writelines(replies(count))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
