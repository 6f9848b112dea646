// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/emphasis.h"

#include <algorithm>

#include "core/base/text.h"

namespace varnel::markdown {

namespace {

constexpr std::size_t kLongestStrikethrough = 2;
constexpr std::size_t kStrongLength = 2;

enum class Neighbour { Space, Punctuation, Other };

Neighbour kindOf(char32_t c) {
  const bool space = base::isHorizontalSpace(c) || c == U'\n' || c == U'\r' || c == U'\f';
  if (space) return Neighbour::Space;
  return base::isPunctuation(c) ? Neighbour::Punctuation : Neighbour::Other;
}

/// Everything about a closing run that decides which runs can open it.
std::size_t kindOf(const Delimiter& closer) {
  constexpr std::size_t kStrikethroughs = 12;
  if (closer.marker == '~') return kStrikethroughs + closer.length - 1;
  return (closer.marker == '*' ? 0U : 6U) + (closer.canOpen ? 3U : 0U) + closer.length % 3;
}

bool canPair(const Delimiter& opener, const Delimiter& closer) {
  if (opener.marker != closer.marker) return false;
  if (opener.marker == '~') return opener.length == closer.length;
  const bool ambiguous = opener.canClose || closer.canOpen;
  return !ambiguous || (opener.length + closer.length) % 3 != 0 || closer.length % 3 == 0;
}

}  // namespace

Delimiter delimiterAt(std::string_view text, std::size_t at) {
  const char marker = text[at];
  const std::size_t end = std::min(text.find_first_not_of(marker, at), text.size());
  const std::size_t length = end - at;
  std::string_view front = text.substr(0, at);
  std::string_view back = text.substr(end);
  if (marker != '~') {
    // Marks of strikethrough between these and a word do not part them.
    front = front.substr(0, front.find_last_not_of('~') + 1);
    back.remove_prefix(std::min(back.find_first_not_of('~'), back.size()));
  }
  const auto before = front.empty() ? Neighbour::Space : kindOf(base::lastCodePoint(front).value);
  const auto after = back.empty() ? Neighbour::Space : kindOf(base::firstCodePoint(back).value);
  const bool leftFlanking =
      after == Neighbour::Other || (after == Neighbour::Punctuation && before != Neighbour::Other);
  const bool rightFlanking =
      before == Neighbour::Other || (before == Neighbour::Punctuation && after != Neighbour::Other);
  const bool insideWord = marker == '_' && leftFlanking && rightFlanking;
  const bool none = marker == '~' && length > kLongestStrikethrough;
  return {.marker = marker,
          .length = length,
          .canOpen = !none && leftFlanking && (!insideWord || before == Neighbour::Punctuation),
          .canClose = !none && rightFlanking && (!insideWord || after == Neighbour::Punctuation),
          .left = length};
}

std::size_t DelimiterStack::push(const Delimiter& delimiter) {
  if (delimiter.canOpen || delimiter.canClose) m_unresolved.push_back(m_delimiters.size());
  m_delimiters.push_back(delimiter);
  return m_delimiters.size() - 1;
}

void DelimiterStack::resolve(std::size_t bottom) {
  const auto first = std::ranges::lower_bound(m_unresolved, bottom);
  m_bottoms.fill(bottom);
  m_openers.clear();
  std::for_each(first, m_unresolved.end(), [this](std::size_t number) {
    if (m_delimiters[number].canClose) close(number);
    if (m_delimiters[number].canOpen && m_delimiters[number].left > 0) m_openers.push_back(number);
  });
  m_unresolved.erase(first, m_unresolved.end());
}

void DelimiterStack::close(std::size_t closer) {
  Delimiter& closing = m_delimiters[closer];
  std::size_t& least = m_bottoms.at(kindOf(closing));
  while (closing.left > 0) {
    auto opener = m_openers.end();
    while (opener != m_openers.begin() && *(opener - 1) >= least && !canPair(m_delimiters[*(opener - 1)], closing)) {
      --opener;
    }
    if (opener == m_openers.begin() || *(opener - 1) < least) {
      least = closer;
      return;
    }
    m_openers.erase(opener, m_openers.end());
    Delimiter& opening = m_delimiters[m_openers.back()];
    pair(opening, closing);
    if (opening.left == 0) m_openers.pop_back();
  }
}

void DelimiterStack::pair(Delimiter& opener, Delimiter& closer) {
  std::size_t used = std::min({opener.left, closer.left, kStrongLength});
  if (opener.marker == '~') {
    used = opener.length;
    ++opener.begins.strikethrough;
    ++closer.ends.strikethrough;
  } else if (used == kStrongLength) {
    ++opener.begins.strong;
    ++closer.ends.strong;
  } else {
    ++opener.begins.emphasis;
    ++closer.ends.emphasis;
  }
  opener.left -= used;
  closer.left -= used;
}

}  // namespace varnel::markdown
