// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/decode.h"

#include <array>

#include "core/live/catalogue.h"
#include "core/wire/activity.h"
#include "core/wire/bodies.h"
#include "core/wire/catalogue.h"
#include "core/wire/event.h"
#include "core/wire/pairing.h"
#include "core/wire/request.h"
#include "core/wire/search.h"
#include "core/wire/session.h"
#include "core/wire/transcript.h"
#include "core/wire/usage.h"
#include "tools/inspect/json_of.h"

namespace varnel::inspect {

namespace {

template <class Record>
Outcome again(std::string_view input) {
  const auto record = wire::decode<Record>(input);
  if (!record) return std::unexpected(record.error().message());
  return jsonOf(*record);
}

Outcome anyAgain(std::string_view input) {
  const auto value = json::parse(input);
  if (!value) return std::unexpected(value.error().message());
  return jsonOf(*value);
}

struct Record {
  std::string_view name;
  Outcome (*again)(std::string_view input);
};

#define VARNEL_INSPECT_RECORD(R) {#R, again<wire::R>}
constexpr auto kRecords = std::to_array<Record>({
    {"JSONValue", anyAgain},
    VARNEL_INSPECT_RECORD(EmptyBody),
    VARNEL_INSPECT_RECORD(ServerError),
    VARNEL_INSPECT_RECORD(ConversationPreferences),
    VARNEL_INSPECT_RECORD(ConversationPlan),
    VARNEL_INSPECT_RECORD(ConversationPlanStep),
    VARNEL_INSPECT_RECORD(ConversationTokenUsage),
    VARNEL_INSPECT_RECORD(SessionSummary),
    VARNEL_INSPECT_RECORD(SessionsEnvelope),
    VARNEL_INSPECT_RECORD(TranscriptItem),
    VARNEL_INSPECT_RECORD(PendingRequest),
    VARNEL_INSPECT_RECORD(UploadedAttachment),
    VARNEL_INSPECT_RECORD(ProjectRecord),
    VARNEL_INSPECT_RECORD(ProjectsEnvelope),
    VARNEL_INSPECT_RECORD(ServiceTierOption),
    VARNEL_INSPECT_RECORD(ModelOption),
    VARNEL_INSPECT_RECORD(LiveEvent),
    VARNEL_INSPECT_RECORD(RateLimitWindow),
    VARNEL_INSPECT_RECORD(RateLimitEnvelope),
    VARNEL_INSPECT_RECORD(UsageEnvelope),
    VARNEL_INSPECT_RECORD(UsageSummary),
    VARNEL_INSPECT_RECORD(DailyUsageBucket),
    VARNEL_INSPECT_RECORD(ThreadUsageSummary),
    VARNEL_INSPECT_RECORD(ThreadUsageGroup),
    VARNEL_INSPECT_RECORD(ResetCreditsSummary),
    VARNEL_INSPECT_RECORD(ArchivedSession),
    VARNEL_INSPECT_RECORD(ArchivedSessionsEnvelope),
    VARNEL_INSPECT_RECORD(SearchThread),
    VARNEL_INSPECT_RECORD(SearchOccurrence),
    VARNEL_INSPECT_RECORD(ConversationSearchResult),
    VARNEL_INSPECT_RECORD(SearchEnvelope),
    VARNEL_INSPECT_RECORD(PairPayload),
    VARNEL_INSPECT_RECORD(PairingCredentials),
    VARNEL_INSPECT_RECORD(CodexTurnAttributes),
    {"CodexTurnAttributes.ContentState", again<wire::CodexTurnAttributes::ContentState>},
    {"ContentState", again<wire::CodexTurnAttributes::ContentState>},
    VARNEL_INSPECT_RECORD(ClaimBody),
    VARNEL_INSPECT_RECORD(ClaimResult),
    VARNEL_INSPECT_RECORD(RenameBody),
    VARNEL_INSPECT_RECORD(MessageBody),
    VARNEL_INSPECT_RECORD(GoalBody),
    VARNEL_INSPECT_RECORD(SettingsBody),
    VARNEL_INSPECT_RECORD(NewSessionBody),
    VARNEL_INSPECT_RECORD(NewSessionResult),
    VARNEL_INSPECT_RECORD(ResolveBody),
    VARNEL_INSPECT_RECORD(TrackingBody),
});
#undef VARNEL_INSPECT_RECORD

Outcome pretty(std::string_view input) {
  const auto value = json::parse(input);
  if (!value) return std::unexpected(value.error().message());
  return jsonOf(json::JSONValue(value->prettyPrinted()));
}

Outcome models(std::string_view input) {
  const auto catalogue = json::parse(input);
  if (!catalogue) return std::unexpected(catalogue.error().message());
  return jsonOf(live::parseModels(*catalogue));
}

}  // namespace

std::optional<Converter> decodeConverter(const std::vector<std::string>& parameters) {
  if (parameters.size() != 1) return std::nullopt;
  for (const Record& record : kRecords) {
    if (record.name == parameters.front()) return record.again;
  }
  return std::nullopt;
}

std::optional<Converter> prettyConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return pretty;
}

std::optional<Converter> modelsConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return models;
}

std::string recordNames() {
  std::string names;
  for (const Record& record : kRecords) names.append(" ").append(record.name);
  return names;
}

}  // namespace varnel::inspect
