// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/events.h"

#include <cstdio>

#include "app/client/api_client.h"
#include "core/wire/codec.h"
#include "core/wire/event.h"
#include "tools/inspect/call.h"
#include "tools/inspect/subject.h"

namespace varnel::inspect {

namespace {

/// One event as a line, or why the stream goes no further.
client::Task<Outcome> nextLine(client::EventStream* stream) {
  const auto message = co_await stream->next();
  if (!message) co_return std::unexpected(client::userText(message.error()));
  const auto event = wire::decode<wire::LiveEvent>(message->bytes);
  if (!event) co_return std::unexpected(event.error().message());
  auto line = wire::encode(*event);
  if (!line) co_return std::unexpected(line.error().message());
  co_return Outcome(*line + "\n");
}

}  // namespace

int runEvents(const CommandLine& command) {
  if (!command.parameters.empty()) return kExitUsage;
  auto credentials = credentialsFrom(command);
  if (!credentials) return kExitUsage;
  const client::APIClient api(std::move(credentials));
  const auto stream = api.eventStream(command.after);
  if (!stream) {
    std::fprintf(stderr, "%s\n", client::userText(stream.error()).c_str());
    return kExitRefused;
  }
  (*stream)->open();
  for (std::int64_t printed = 0; printed != command.count; ++printed) {
    const Outcome line = QCoro::waitFor(nextLine(stream->get()));
    if (!line) {
      std::fprintf(stderr, "%s\n", line.error().c_str());
      return kExitRefused;
    }
    std::fwrite(line->data(), 1, line->size(), stdout);
    std::fflush(stdout);
  }
  return kExitOk;
}

}  // namespace varnel::inspect
