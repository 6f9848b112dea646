// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/symbols.h"

#include <QtCore/QHash>
#include <QtGui/QFontDatabase>

namespace varnel::ui {
namespace {

constexpr char16_t kUnknownSymbol = 0xE8FD;

const QHash<QString, char16_t>& glyphs() {
  static const QHash<QString, char16_t> kTable{
      {QStringLiteral("archivebox"), 0xE149},
      {QStringLiteral("arrow.clockwise"), 0xE5D5},
      {QStringLiteral("arrow.up"), 0xE5D8},
      {QStringLiteral("arrow.uturn.backward"), 0xE166},
      {QStringLiteral("bolt.fill"), 0xEA0B},
      {QStringLiteral("brain"), 0xEA4A},
      {QStringLiteral("bubble.left.and.text.bubble.right"), 0xE0CA},
      {QStringLiteral("checkmark"), 0xE5CA},
      {QStringLiteral("checkmark.circle.fill"), 0xE86C},
      {QStringLiteral("chevron.down"), 0xE5CF},
      {QStringLiteral("chevron.left"), 0xE5C4},
      {QStringLiteral("chevron.right"), 0xE5CC},
      {QStringLiteral("circle"), 0xE836},
      {QStringLiteral("circle.dotted"), 0xEF64},
      {QStringLiteral("clock.badge.exclamationmark"), 0xE51D},
      {QStringLiteral("cpu"), 0xE322},
      {QStringLiteral("doc.on.clipboard"), 0xE14F},
      {QStringLiteral("ellipsis.circle"), 0xE5D3},
      {QStringLiteral("exclamationmark.bubble.fill"), 0xE87F},
      {QStringLiteral("exclamationmark.triangle"), 0xE002},
      {QStringLiteral("film"), 0xE02C},
      {QStringLiteral("flag"), 0xE153},
      {QStringLiteral("gauge.with.dots.needle.33percent"), 0xE9E4},
      {QStringLiteral("gearshape"), 0xE8B8},
      {QStringLiteral("globe"), 0xE80B},
      {QStringLiteral("iphone.and.arrow.forward"), 0xF05C},
      {QStringLiteral("list.bullet.clipboard"), 0xE85D},
      {QStringLiteral("magnifyingglass"), 0xE8B6},
      {QStringLiteral("mic.fill"), 0xE029},
      {QStringLiteral("pause.circle.fill"), 0xE1A2},
      {QStringLiteral("pencil"), 0xE3C9},
      {QStringLiteral("photo"), 0xE410},
      {QStringLiteral("pin"), 0xF10D},
      {QStringLiteral("pin.fill"), 0xF10D},
      {QStringLiteral("plus.circle"), 0xE147},
      {QStringLiteral("qrcode"), 0xF206},
      {QStringLiteral("slider.horizontal.3"), 0xE429},
      {QStringLiteral("sparkles"), 0xE65F},
      {QStringLiteral("stop.fill"), 0xE047},
      {QStringLiteral("switch.2"), 0xE9F6},
      {QStringLiteral("terminal"), 0xEB8E},
      {QStringLiteral("waveform"), 0xE1B8},
      {QStringLiteral("wrench.and.screwdriver"), 0xF10B},
      {QStringLiteral("arrow.down"), 0xE5DB},
      {QStringLiteral("arrow.uturn.left"), 0xE166},
      {QStringLiteral("clock.arrow.up"), 0xEA0A},
      {QStringLiteral("doc.on.doc"), 0xE14D},
      {QStringLiteral("doc.text"), 0xE873},
      {QStringLiteral("text.word.spacing"), 0xE25B},
      {QStringLiteral("chart.bar"), 0xE26B},
      {QStringLiteral("exclamationmark.triangle.fill"), 0xE002},
      {QStringLiteral("exclamationmark.shield.fill"), 0xF014},
      {QStringLiteral("pin.slash"), 0xF10D},
      {QStringLiteral("photo.on.rectangle"), 0xE413},
      {QStringLiteral("camera"), 0xE412},
      {QStringLiteral("bell"), 0xE7F4},
      {QStringLiteral("keyboard"), 0xE312},
      {QStringLiteral("power"), 0xE8AC},
      {QStringLiteral("clock"), 0xE8B5},
      {QStringLiteral("xmark"), 0xE5CD},
      {QStringLiteral("xmark.octagon.fill"), 0xE99A},
  };
  return kTable;
}

QString loadFamily() {
  const int font = QFontDatabase::addApplicationFont(QStringLiteral(":/varnel/symbols.ttf"));
  return QFontDatabase::applicationFontFamilies(font).value(0);
}

}  // namespace

Symbols::Symbols(QObject* parent) : QObject(parent) {}

QString Symbols::family() const {
  static const QString kFamily = loadFamily();
  return kFamily;
}

QString Symbols::glyph(const QString& name) {
  return {QChar(glyphs().value(name, kUnknownSymbol))};
}

QStringList Symbols::names() {
  return glyphs().keys();
}

}  // namespace varnel::ui
