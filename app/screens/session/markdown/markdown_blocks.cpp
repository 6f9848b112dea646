// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/markdown/markdown_blocks.h"

#include <algorithm>
#include <boost/describe/class.hpp>
#include <utility>

#include "app/lists/record_roles.h"
#include "core/markdown/parse_blocks.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(ListItemRow, (), (marker, indent, html, plain))
BOOST_DESCRIBE_STRUCT(BlockRow, (), (id, kind, level, language, html, plain, items, tableRows))

namespace {

constexpr int kPercent = 100;

/// Makes the row of each kind of block.
class RowMaker {
 public:
  explicit RowMaker(const RichTextLook& look) : m_look(look) {}

  BlockRow operator()(const markdown::Paragraph& block) const { return words("paragraph", block.text); }

  BlockRow operator()(const markdown::Heading& block) const {
    BlockRow row = words("heading", block.text);
    row.level = static_cast<int>(block.level);
    return row;
  }

  BlockRow operator()(const markdown::Quote& block) const { return words("quote", block.text); }
  BlockRow operator()(const markdown::UnorderedList& block) const { return list(block.items, false); }
  BlockRow operator()(const markdown::OrderedList& block) const { return list(block.items, true); }
  BlockRow operator()(const markdown::Rule&) const { return {.kind = "rule"}; }

  BlockRow operator()(const markdown::Code& block) const {
    BlockRow row{.kind = "code"};
    row.language = QString::fromStdString(block.language.value_or("")).toUpper();
    row.plain = QString::fromStdString(block.text);
    return row;
  }

  BlockRow operator()(const markdown::Table& block) const {
    BlockRow row{.kind = "table"};
    std::vector<QString> titles;
    titles.reserve(block.header.size());
    for (const std::string& cell : block.header) titles.push_back(styledText(cell, m_look).plain);
    row.html = QStringLiteral("<table cellspacing=\"0\">");
    addCells(row, block.header, nullptr);
    addDivider(row, block);
    for (const auto& cells : block.rows) addCells(row, cells, &titles);
    row.html += QLatin1String("</table>");
    for (const QString& each : row.tableRows) row.plain += (row.plain.isEmpty() ? "" : "\n") + each;
    return row;
  }

 private:
  [[nodiscard]] BlockRow words(std::string kind, const std::string& text) const {
    StyledText styled = styledText(text, m_look);
    BlockRow row{.kind = std::move(kind)};
    row.html = paragraph(styled.html, m_look);
    row.plain = std::move(styled.plain);
    return row;
  }

  [[nodiscard]] BlockRow list(const std::vector<markdown::TranscriptListItem>& items, bool ordered) const {
    BlockRow row{.kind = "list"};
    for (const auto& item : items) {
      StyledText styled = styledText(item.text, m_look);
      row.items.push_back(
          {.marker = ordered ? QString::number(item.number.value_or(1)) + QLatin1Char('.') : QStringLiteral("•"),
           .indent = static_cast<int>(item.indent),
           .html = paragraph(styled.html, m_look),
           .plain = std::move(styled.plain)});
    }
    return row;
  }

  /// `titles` is null for the header itself.
  void addCells(BlockRow& row, const std::vector<std::string>& cells, const std::vector<QString>* titles) const {
    const bool header = titles == nullptr;
    const QString style =
        header ? QStringLiteral("font-weight:600;padding:0 14px 7px 0") : QStringLiteral("padding:7px 14px 0 0");
    QString spoken;
    row.html += QLatin1String("<tr>");
    for (std::size_t column = 0; column < cells.size(); ++column) {
      const StyledText styled = styledText(cells[column], m_look);
      row.html += QStringLiteral("<td align=\"left\" style=\"white-space:pre;%1\">%2</td>").arg(style, styled.html);
      if (!spoken.isEmpty()) spoken += QLatin1String(", ");
      if (!header && column < titles->size()) spoken += (*titles)[column] + QLatin1String(": ");
      spoken += styled.plain;
    }
    row.html += QLatin1String("</tr>");
    row.tableRows.push_back(spoken);
  }

  /// A row that is nothing but its ground: cells have no borders that could be drawn on one side alone.
  void addDivider(BlockRow& row, const markdown::Table& block) const {
    std::size_t columns = block.header.size();
    for (const auto& cells : block.rows) columns = std::max(columns, cells.size());
    row.html +=
        QStringLiteral("<tr><td colspan=\"%1\" style=\"padding:0;font-size:1px;background-color:%2\"></td></tr>")
            .arg(QString::number(columns), m_look.hairline);
  }

  const RichTextLook& m_look;
};

}  // namespace

std::vector<BlockRow> makeBlockRows(std::string_view source, const RichTextLook& look) {
  std::vector<BlockRow> rows;
  const RowMaker maker(look);
  for (const auto& block : markdown::parseTranscriptMarkdown(source)) {
    BlockRow row = std::visit(maker, block);
    row.id = std::to_string(rows.size()) + row.kind;
    rows.push_back(std::move(row));
  }
  return rows;
}

MarkdownBlocks::MarkdownBlocks(QObject* parent) : RecordListModel(parent) {}

void MarkdownBlocks::setSource(const QString& source) {
  if (m_source == source) return;
  m_source = source;
  emit sourceChanged();
  update();
}

qreal MarkdownBlocks::leading() const {
  return static_cast<qreal>(m_look.lineHeight) / kPercent;
}

void MarkdownBlocks::setLeading(qreal leading) {
  set(m_look.lineHeight, qRound(leading * kPercent));
}

void MarkdownBlocks::componentComplete() {
  m_complete = true;
  update();
}

void MarkdownBlocks::update() {
  if (m_complete) assign(makeBlockRows(m_source.toStdString(), m_look));
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::BlockRow>>&
varnel::lists::rolesOf<varnel::screens::BlockRow>();
