// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/session_detail.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/json/record_codec.h"
#include "core/json/text.h"
#include "core/wire/catalogue_fields.h"
#include "core/wire/queue_fields.h"
#include "core/wire/request_fields.h"
#include "core/wire/session_fields.h"
#include "core/wire/transcript_fields.h"

namespace varnel::wire {

namespace {

// Comparing is the C library's work; it does not tell where texts part, which is found in ever smaller steps.
constexpr std::array<std::size_t, 3> kSteps = {16384, 256, 1};

std::size_t commonFront(std::string_view a, std::string_view b) {
  const std::size_t size = std::min(a.size(), b.size());
  std::size_t at = 0;
  for (const std::size_t step : kSteps) {
    while (size - at >= step && std::memcmp(a.data() + at, b.data() + at, step) == 0) at += step;
  }
  return at;
}

std::size_t commonBack(std::string_view a, std::string_view b) {
  const std::size_t size = std::min(a.size(), b.size());
  const char* endOfA = a.data() + a.size();
  const char* endOfB = b.data() + b.size();
  std::size_t at = 0;
  for (const std::size_t step : kSteps) {
    while (size - at >= step && std::memcmp(endOfA - at - step, endOfB - at - step, step) == 0) at += step;
  }
  return at;
}

/// Reads one answer, alone or beside a former one. Beside another it may give up on what the former way is no help
/// for, faults of the text among that.
class DetailReader {
 public:
  DetailReader(const std::shared_ptr<const std::string>& text, const SessionText* former)
      : m_all(*text),
        m_former(former),
        m_in(former == nullptr ? json::Reader(text) : json::Reader(json::Reader::TrustUtf8(), m_all)) {
    m_text.text = text;
  }

  std::expected<SessionDetail, json::DecodeError> read() {
    if (!readAnswer() || !checkUtf8()) return std::unexpected(std::move(m_in.error()));
    m_detail.whole = json::RawValue::share(m_text.text, m_all);
    if (m_detail.items && *m_detail.items) m_detail.text = std::make_shared<const SessionText>(std::move(m_text));
    return std::move(m_detail);
  }

 private:
  bool readAnswer() {
    json::Kind kind{};
    std::string_view ignored;
    if (!m_in.peek(kind)) return false;
    if (kind != json::Kind::Object) return m_in.skipValue(ignored) && m_in.finish();
    if (!m_in.enterObject()) return false;
    for (bool more = true;;) {
      std::string_view key;
      if (!m_in.nextMember(key, more)) return false;
      if (!more) return m_in.finish();
      if (!readAny(key)) return false;
    }
  }

  bool readAny(std::string_view key) {
    if (key == "items") {
      return readMember(key, m_detail.items, [this](auto& items) { return readItems(items); });
    }
    if (key == "pendingRequests") return readMember(key, m_detail.pendingRequests);
    if (key == "session") return readMember(key, m_detail.session);
    if (key == "queued") return readMember(key, m_detail.queued);
    std::string_view ignored;
    return m_in.skipValue(ignored);
  }

  template <class T>
  bool readMember(std::string_view name, SessionDetail::Member<T>& out) {
    return readMember(name, out, [this](T& value) { return json::Codec<T>::read(m_in, value); });
  }

  /// Reads one member strictly; where it does not fit, passes over it as plain JSON so that the rest can be read.
  template <class T>
  bool readMember(std::string_view name, SessionDetail::Member<T>& out, auto read) {
    const auto begin = m_in.mark();
    T value;
    if (read(value)) {
      out.emplace(std::move(value));
      return true;
    }
    json::DecodeError fault = std::move(m_in.error());
    fault.prependMember(name);
    m_in.rewind(begin);
    std::string_view ignored;
    if (!m_in.skipValue(ignored)) return false;
    out.emplace(std::unexpected(std::move(fault)));
    return true;
  }

  bool readItems(std::vector<TranscriptItem>& items) {
    // Of two lists the later one holds.
    m_text.itemEnds.clear();
    m_detail.keptFront = m_detail.keptBack = 0;
    if (!m_in.enterArray()) return false;
    m_text.itemsBegin = m_in.offset();
    if (m_former != nullptr) keepFront();
    for (bool more = true;;) {
      if (m_former != nullptr) keepBack();
      if (!m_in.nextElement(more)) return false;
      if (!more) return true;
      if (!json::Codec<TranscriptItem>::read(m_in, items.emplace_back())) {
        m_in.error().prependIndex(items.size() - 1);
        return false;
      }
      m_text.itemEnds.push_back(m_in.offset() - m_text.itemsBegin);
    }
  }

  /// Passes over the items before the first byte that differs. Up to there both texts are read alike.
  void keepFront() {
    const std::string_view former = std::string_view(*m_former->text).substr(m_former->itemsBegin);
    const std::string_view now = m_all.substr(m_text.itemsBegin);
    const std::size_t common = commonFront(former, now);
    const auto end = std::ranges::upper_bound(m_former->itemEnds, common);
    m_text.itemEnds.reserve(m_former->itemEnds.size() + 1);
    m_text.itemEnds.assign(m_former->itemEnds.begin(), end);
    m_detail.keptFront = m_text.itemEnds.size();
    const std::size_t kept = m_text.itemEnds.empty() ? 0 : m_text.itemEnds.back();
    m_frontEnd = m_text.itemsBegin + kept;
    m_backBegin = m_backEnd = m_all.size();
    m_commonBack = commonBack(former.substr(kept), now.substr(kept));
    if (kept > 0) m_in.moveBehindElement(m_frontEnd);
  }

  /// Behind an item, when the rest of the text is the one behind an item of the former answer: passes over the items in
  /// it. Both rests are read alike.
  void keepBack() {
    const std::size_t rest = m_all.size() - m_in.offset();
    if (m_text.itemEnds.empty() || rest > m_commonBack || m_detail.keptBack > 0) return;
    const std::size_t formerItems = m_former->text->size() - m_former->itemsBegin;
    const auto& ends = m_former->itemEnds;
    const auto same = std::ranges::lower_bound(ends, formerItems - rest);
    if (same == ends.end() || *same != formerItems - rest || same + 1 == ends.end()) return;
    m_backBegin = m_in.offset();
    const std::size_t shift = m_in.offset() - m_text.itemsBegin - *same;
    m_detail.keptBack = static_cast<std::size_t>(ends.end() - same) - 1;
    for (auto end = same + 1; end != ends.end(); ++end) m_text.itemEnds.push_back(*end + shift);
    m_backEnd = m_text.itemsBegin + m_text.itemEnds.back();
    m_in.moveBehindElement(m_backEnd);
  }

  /// What was kept was checked with the former answer; the borders are between ASCII characters.
  bool checkUtf8() {
    if (m_former == nullptr) return true;
    const auto isUtf8 = [this](std::size_t begin, std::size_t end) {
      return json::isUtf8(m_all.substr(begin, end - begin));
    };
    return isUtf8(0, m_text.itemsBegin) && isUtf8(m_frontEnd, m_backBegin) && isUtf8(m_backEnd, m_all.size());
  }

  std::string_view m_all;
  const SessionText* m_former;
  json::Reader m_in;
  SessionDetail m_detail;
  SessionText m_text;
  // The pieces that were kept.
  std::size_t m_frontEnd = 0;
  std::size_t m_backBegin = m_all.size();
  std::size_t m_backEnd = m_all.size();
  std::size_t m_commonBack = 0;  ///< how many bytes at the end are those of the former answer
};

}  // namespace

std::expected<SessionDetail, json::DecodeError> decodeSessionDetail(std::string text,
                                                                    const std::shared_ptr<const SessionText>& former) {
  const auto whole = std::make_shared<const std::string>(std::move(text));
  if (former != nullptr) {
    auto detail = DetailReader(whole, former.get()).read();
    if (detail && detail->text != nullptr) return detail;
  }
  return DetailReader(whole, nullptr).read();
}

}  // namespace varnel::wire
