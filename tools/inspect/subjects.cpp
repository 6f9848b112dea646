// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <array>

#include "tools/inspect/call.h"
#include "tools/inspect/card.h"
#include "tools/inspect/decode.h"
#include "tools/inspect/events.h"
#include "tools/inspect/follow.h"
#include "tools/inspect/markdown.h"
#include "tools/inspect/subject.h"
#include "tools/inspect/transcript.h"
#include "tools/inspect/verbs.h"

namespace varnel::inspect {

namespace {

constexpr auto kSubjects = std::to_array<Subject>({
    {"decode", "RECORD", "JSON as that record, encoded again", Subject::Input::JSON, decodeConverter},
    {"pretty", "", "JSON as the application shows it, in a JSON string", Subject::Input::JSON, prettyConverter},
    {"blocks", "", "the blocks of a message", Subject::Input::Text, blocksConverter},
    {"inline", "", "the runs of a text within a block", Subject::Input::Text, inlineConverter},
    {"rows", "", "the rows that a list of transcript items shows", Subject::Input::JSON, rowsConverter},
    {"unread", "", R"(the first reply in "items", "after" an id or not among "knownItemIDs")", Subject::Input::JSON,
     unreadConverter},
    {"models", "", "a catalogue's models as the application reads them", Subject::Input::JSON, modelsConverter},
    {"reconcile", "", "{\"serverItems\", \"optimisticItems\"}: what is shown, and what was not echoed yet",
     Subject::Input::JSON, reconcileConverter},
    {"card", "", R"(how a "request" is shown, and what "decision" or "answer" sends back)", Subject::Input::JSON,
     cardConverter},
    {"call", "OPERATION [ARGS]", "one operation of a bridge; ARGS is a JSON object", Subject::Input::None, nullptr,
     runCall},
    {"events", "", "a bridge's events after --after N, one a line, --count K of them", Subject::Input::None, nullptr,
     runEvents},
    {"follow", "", "the application's model without a window, a line a change; commands on standard input",
     Subject::Input::None, nullptr, runFollow},
});

}  // namespace

std::span<const Subject> subjects() {
  return kSubjects;
}

std::string usage() {
  std::string text =
      "usage: varnel-inspect [--lines] SUBJECT ...\n"
      "Reads standard input, writes JSON. With --lines each line of input gives {\"ok\": ...} or {\"error\": ...}.\n\n";
  for (const Subject& subject : kSubjects) {
    std::string head = "  " + std::string(subject.name) + " " + std::string(subject.parameters);
    head.resize(std::max<std::size_t>(head.size() + 1, 26), ' ');
    text += head + std::string(subject.purpose) + "\n";
  }
  text +=
      "\nThe bridge: --base-url URL, --token TOKEN or --token-file FILE, --device-id ID\n"
      "follow: --state-dir DIR, --open ID, --for SECONDS; a command is {\"call\": VERB, \"args\": {...}}\n\nRECORD is "
      "one of";
  text += recordNames() + "\n\nOPERATION is one of (\"?\" marks what may be left out):\n" + operationList() +
          "\nVERB is one of these, or an OPERATION:\n" + verbList();
  return text;
}

}  // namespace varnel::inspect
