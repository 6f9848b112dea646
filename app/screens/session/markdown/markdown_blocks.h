// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtGui/QColor>
#include <QtQml/QQmlParserStatus>
#include <string>
#include <vector>

#include "app/lists/record_list_model.h"
#include "app/screens/session/markdown/rich_text.h"

namespace varnel::screens {

struct ListItemRow {
  QString marker;  ///< for the eye alone
  int indent = 0;  ///< 0 to 4
  QString html;
  QString plain;
  bool operator==(const ListItemRow&) const = default;
};

/// One block of a message, ready to be drawn. Which members are filled depends on the kind.
struct BlockRow {
  std::string id;    ///< its place and kind: what is drawn there is replaced when the kind changes
  std::string kind;  ///< paragraph, heading, list, code, quote, table or rule: the name of its delegate
  int level = 0;     ///< of a heading, 1 to 6
  QString language;  ///< of code, in upper case; empty for none
  QString html;      ///< of paragraph, heading, quote and table
  QString plain;     ///< of the same, and the text of code
  std::vector<ListItemRow> items;
  std::vector<QString> tableRows;  ///< what is read aloud of a table, a sentence a row

  [[nodiscard]] const std::string& identity() const { return id; }
  bool operator==(const BlockRow&) const = default;
};

std::vector<BlockRow> makeBlockRows(std::string_view source, const RichTextLook& look);

/// The blocks of one message on the screen, made again when its text or its look changes; blocks that stay the same
/// are not touched, so a message that grows keeps what is selected and scrolled in it.
class MarkdownBlocks : public lists::RecordListModel<BlockRow>, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  Q_PROPERTY(QString source READ source WRITE setSource NOTIFY sourceChanged)
  Q_PROPERTY(QColor linkColor READ linkColor WRITE setLinkColor NOTIFY lookChanged)
  Q_PROPERTY(QColor codeBackground READ codeBackground WRITE setCodeBackground NOTIFY lookChanged)
  Q_PROPERTY(QColor hairline READ hairline WRITE setHairline NOTIFY lookChanged)
  Q_PROPERTY(QString codeFamily READ codeFamily WRITE setCodeFamily NOTIFY lookChanged)
  /// As a factor on the font's own line height.
  Q_PROPERTY(qreal leading READ leading WRITE setLeading NOTIFY lookChanged)

 public:
  explicit MarkdownBlocks(QObject* parent = nullptr);

  [[nodiscard]] QString source() const { return m_source; }
  void setSource(const QString& source);
  [[nodiscard]] QColor linkColor() const { return QColor::fromString(m_look.linkColor); }
  void setLinkColor(const QColor& color) { set(m_look.linkColor, color.name()); }
  [[nodiscard]] QColor codeBackground() const { return QColor::fromString(m_look.codeBackground); }
  void setCodeBackground(const QColor& color) { set(m_look.codeBackground, color.name()); }
  [[nodiscard]] QColor hairline() const { return QColor::fromString(m_look.hairline); }
  void setHairline(const QColor& color) { set(m_look.hairline, color.name()); }
  [[nodiscard]] QString codeFamily() const { return m_look.codeFamily; }
  void setCodeFamily(const QString& family) { set(m_look.codeFamily, family); }
  [[nodiscard]] qreal leading() const;
  void setLeading(qreal leading);

  void classBegin() override {}
  /// Nothing is parsed before all properties have their first value.
  void componentComplete() override;

 signals:
  void sourceChanged();
  void lookChanged();

 private:
  template <class T>
  void set(T& field, const T& value) {
    if (field == value) return;
    field = value;
    emit lookChanged();
    update();
  }
  void update();

  QString m_source;
  RichTextLook m_look;
  bool m_complete = false;
};

}  // namespace varnel::screens
