// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/device/draft_store.h"

#include <optional>
#include <utility>

#include "core/base/text.h"
#include "core/json/text.h"
#include "core/json/value.h"
#include "core/wire/codec.h"

namespace varnel::device {
namespace {

using json::JSONValue;

std::string textOf(const JSONValue& object, std::string_view member) {
  const JSONValue* value = object.member(member);
  return value != nullptr && value->string() != nullptr ? *value->string() : std::string();
}

Draft decoded(const JSONValue& value) {
  Draft draft{.text = textOf(value, "text")};
  const JSONValue* goal = value.member("goal");
  draft.goal = goal != nullptr && goal->boolean() != nullptr && *goal->boolean();
  const JSONValue* attachments = value.member("attachments");
  if (attachments == nullptr || attachments->array() == nullptr) return draft;
  for (const JSONValue& each : *attachments->array()) {
    const auto text = json::write(each);
    auto attachment = text ? wire::decode<wire::UploadedAttachment>(*text) : std::unexpected(text.error());
    if (attachment) draft.attachments.push_back(*std::move(attachment));
  }
  return draft;
}

}  // namespace

bool Draft::isEmpty() const {
  return base::trim(text).empty() && attachments.empty();
}

DraftStore::DraftStore(platform::DefaultsStore& defaults, QObject* parent) : QObject(parent), m_defaults(defaults) {
  const auto stored = m_defaults.get<platform::Data>(kKey);
  if (!stored) return;
  const auto drafts = json::parse(stored->bytes);
  if (!drafts || drafts->object() == nullptr) return;
  for (const auto& [sessionId, draft] : *drafts->object()) m_drafts.emplace(sessionId, decoded(draft));
}

Draft DraftStore::draft(std::string_view sessionId) const {
  const auto found = m_drafts.find(sessionId);
  return found == m_drafts.end() ? Draft() : found->second;
}

void DraftStore::set(const std::string& sessionId, Draft draft) {
  if (draft.isEmpty()) {
    if (m_drafts.erase(sessionId) == 0) return;
  } else {
    Draft& kept = m_drafts[sessionId];
    if (kept == draft) return;
    kept = std::move(draft);
  }
  save();
  emit draftChanged(sessionId);
}

void DraftStore::clear() {
  const auto drafts = std::exchange(m_drafts, {});
  save();
  for (const auto& [sessionId, draft] : drafts) emit draftChanged(sessionId);
}

void DraftStore::save() {
  JSONValue::Object drafts;
  for (const auto& [sessionId, draft] : m_drafts) {
    JSONValue::Array attachments;
    for (const auto& each : draft.attachments) {
      const auto text = wire::encode(each);
      if (text) attachments.push_back(json::parse(*text).value_or(JSONValue()));
    }
    drafts.emplace(sessionId, JSONValue::Object{
                                  {"text", draft.text}, {"goal", draft.goal}, {"attachments", std::move(attachments)}});
  }
  const auto bytes = json::write(JSONValue(std::move(drafts)));
  // What cannot be written stays in memory; there is nothing the user could do about it.
  if (bytes) std::ignore = m_defaults.set(kKey, platform::Data{*bytes});
}

}  // namespace varnel::device
