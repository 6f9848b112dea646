// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/inline.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "core/markdown/emphasis.h"
#include "core/markdown/inline_scan.h"

namespace varnel::markdown {

namespace {

/// What a text is made of, in its order. What may yet turn out to begin something stands as text until it does.
struct Piece {
  enum class Kind {
    Text,
    Escaped,  ///< text with escapes and references in it
    Code,
    Delimiter,   ///< `number` on the delimiter stack
    LinkBegin,   ///< `number` of the link
    ImageBegin,  ///< what follows up to its end is its alternative text
    LinkEnd,
    ImageEnd,
  };
  Kind kind = Kind::Text;
  std::string_view text;
  std::size_t number = 0;
};

/// A "[" or "![" that has not met its "]".
struct Bracket {
  std::size_t piece = 0;
  std::size_t delimiters = 0;  ///< how many stood before it
  bool image = false;
};

using Link = std::shared_ptr<const std::string>;

struct Pieces {
  std::vector<Piece> pieces;
  DelimiterStack delimiters;
  std::vector<Link> links;
};

constexpr auto kSpecial = [] {
  std::array<bool, 256> special{};
  for (const char c : std::string_view("\\`*_~[]!<&")) special.at(static_cast<unsigned char>(c)) = true;
  return special;
}();

class Splitter {
 public:
  explicit Splitter(std::string_view text) : m_text(text), m_html(text) {}

  Pieces split() {
    while (m_at < m_text.size()) {
      const std::size_t length = takeSpecial();
      if (length == 0) {
        takeText();
      } else {
        m_at += length;
      }
    }
    m_result.delimiters.resolve(0);
    return std::move(m_result);
  }

 private:
  [[nodiscard]] std::string_view rest() const { return m_text.substr(m_at); }
  [[nodiscard]] char ahead(std::size_t by) const { return m_at + by < m_text.size() ? m_text[m_at + by] : '\0'; }

  std::size_t add(Piece::Kind kind, std::string_view text, std::size_t number = 0) {
    m_result.pieces.push_back({.kind = kind, .text = text, .number = number});
    return text.size();
  }
  std::size_t addText(std::size_t length) { return add(Piece::Kind::Text, m_text.substr(m_at, length)); }

  /// The special character that nothing came of, and what is not special after it.
  void takeText() {
    std::size_t end = m_at + 1;
    while (end < m_text.size() && !kSpecial[static_cast<unsigned char>(m_text[end])]) ++end;
    m_at += addText(end - m_at);
  }

  /// How much the construct at hand takes, 0 when there is none.
  std::size_t takeSpecial() {
    switch (m_text[m_at]) {
      case '\\':
        return takeEscape();
      case '`':
        return takeCode();
      case '*':
      case '_':
      case '~':
        return takeDelimiter();
      case '[':
        return openBracket(false);
      case '!':
        return ahead(1) == '[' ? openBracket(true) : 0;
      case ']':
        return closeBracket();
      case '<':
        return takeAngle();
      case '&': {
        const auto reference = characterReference(rest());
        return reference ? add(Piece::Kind::Escaped, rest().substr(0, reference->length)) : 0;
      }
      default:
        return 0;
    }
  }

  std::size_t takeEscape() {
    if (isEscapable(ahead(1))) return add(Piece::Kind::Escaped, rest().substr(0, 2));
    // Before a line end it is a hard line break, of which the line end stays.
    return ahead(1) == '\n' || ahead(1) == '\r' ? 1 : 0;
  }

  std::size_t takeCode() {
    const std::size_t marks = std::min(rest().find_first_not_of('`'), rest().size());
    if (!m_backticks) m_backticks.emplace(m_text);
    const auto end = m_backticks->find(marks, m_at + marks);
    if (!end) return addText(marks);
    std::string_view code = m_text.substr(m_at + marks, *end - m_at - marks);
    // One space at each end is for keeping a backtick in the code apart from the marks.
    const bool padded = code.starts_with(' ') && code.ends_with(' ');
    if (padded && code.find_first_not_of(' ') != std::string_view::npos) code = code.substr(1, code.size() - 2);
    add(Piece::Kind::Code, code);
    return *end + marks - m_at;
  }

  std::size_t takeDelimiter() {
    const Delimiter delimiter = delimiterAt(m_text, m_at);
    return add(Piece::Kind::Delimiter, rest().substr(0, delimiter.length), m_result.delimiters.push(delimiter));
  }

  std::size_t openBracket(bool image) {
    m_brackets.push_back({.piece = m_result.pieces.size(), .delimiters = m_result.delimiters.size(), .image = image});
    return addText(image ? 2 : 1);
  }

  std::size_t closeBracket() {
    if (m_brackets.empty()) return 0;
    const Bracket bracket = m_brackets.back();
    m_brackets.pop_back();
    const bool insideLink = !bracket.image && m_brackets.size() < m_linkless;
    m_linkless = std::min(m_linkless, m_brackets.size());
    const auto target = insideLink ? std::nullopt : linkTarget(rest().substr(1));
    if (!target) return 0;
    m_result.delimiters.resolve(bracket.delimiters);
    m_result.pieces[bracket.piece] = {.kind = bracket.image ? Piece::Kind::ImageBegin : Piece::Kind::LinkBegin,
                                      .number = m_result.links.size()};
    if (!bracket.image) {
      m_result.links.push_back(std::make_shared<const std::string>(resolved(target->destination)));
      m_linkless = m_brackets.size();
    }
    add(bracket.image ? Piece::Kind::ImageEnd : Piece::Kind::LinkEnd, {});
    return 1 + target->length;
  }

  std::size_t takeAngle() {
    const std::size_t uri = uriAutolinkLength(rest());
    const std::size_t email = uri == 0 ? emailAutolinkLength(rest()) : 0;
    const std::size_t length = uri + email;
    if (length == 0) {
      const std::size_t html = m_html.length(m_at);
      return html == 0 ? 0 : addText(html);
    }
    const std::string_view address = rest().substr(1, length - 2);
    add(Piece::Kind::LinkBegin, {}, m_result.links.size());
    m_result.links.push_back(std::make_shared<const std::string>((email > 0 ? "mailto:" : "") + std::string(address)));
    add(Piece::Kind::Text, address);
    add(Piece::Kind::LinkEnd, {});
    return length;
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  HtmlScanner m_html;
  std::optional<BacktickRuns> m_backticks;
  std::vector<Bracket> m_brackets;
  std::size_t m_linkless = 0;  ///< of that many first brackets only images can come: they have a link inside
  Pieces m_result;
};

class RunBuilder {
 public:
  explicit RunBuilder(Pieces pieces) : m_pieces(std::move(pieces)) {}

  std::vector<InlineRun> build() {
    for (const Piece& piece : m_pieces.pieces) take(piece);
    return std::move(m_runs);
  }

 private:
  void take(const Piece& piece) {
    switch (piece.kind) {
      case Piece::Kind::Text:
        append(piece.text, false);
        break;
      case Piece::Kind::Escaped:
        append(resolved(piece.text), false);
        break;
      case Piece::Kind::Code:
        append(piece.text, true);
        break;
      case Piece::Kind::Delimiter:
        takeDelimiter(m_pieces.delimiters[piece.number], piece.text);
        break;
      case Piece::Kind::LinkBegin:
        if (m_images == 0) m_link = m_pieces.links[piece.number];
        break;
      case Piece::Kind::LinkEnd:
        if (m_images == 0) m_link.reset();
        break;
      case Piece::Kind::ImageBegin:
        ++m_images;
        break;
      case Piece::Kind::ImageEnd:
        --m_images;
        break;
    }
  }

  void takeDelimiter(const Delimiter& delimiter, std::string_view text) {
    change(delimiter.ends, [](std::size_t& depth, std::size_t by) { depth -= by; });
    append(text.substr(0, delimiter.left), false);
    change(delimiter.begins, [](std::size_t& depth, std::size_t by) { depth += by; });
  }

  /// The text of an image is plain; what begins in it ends in it.
  void change(const StyleCounts& by, auto how) {
    if (m_images > 0) return;
    how(m_depth.emphasis, by.emphasis);
    how(m_depth.strong, by.strong);
    how(m_depth.strikethrough, by.strikethrough);
  }

  void append(std::string_view text, bool code) {
    if (text.empty()) return;
    const InlineStyles styles = {.emphasis = m_depth.emphasis > 0,
                                 .strong = m_depth.strong > 0,
                                 .code = code && m_images == 0,
                                 .strikethrough = m_depth.strikethrough > 0};
    if (m_runs.empty() || m_runs.back().styles != styles || !isSame(m_runs.back().link, m_link)) {
      m_runs.push_back({.text = {}, .styles = styles, .link = m_link});
    }
    m_runs.back().text += text;
  }

  static bool isSame(const Link& a, const Link& b) { return a == b || (a && b && *a == *b); }

  Pieces m_pieces;
  StyleCounts m_depth;
  Link m_link;
  std::size_t m_images = 0;
  std::vector<InlineRun> m_runs;
};

}  // namespace

bool InlineRun::operator==(const InlineRun& other) const {
  const bool sameLink = link == other.link || (link && other.link && *link == *other.link);
  return sameLink && text == other.text && styles == other.styles;
}

std::vector<InlineRun> inlineMarkdown(std::string_view text) {
  return RunBuilder(Splitter(text).split()).build();
}

}  // namespace varnel::markdown
