// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/symbols.h"

#include <QtCore/QHash>
#include <QtGui/QFontDatabase>
#include <array>

namespace varnel::ui {
namespace {

constexpr char16_t kUnknownSymbol = 0xE8FD;

struct Glyph {
  QLatin1StringView name;
  char16_t codePoint;
};

constexpr auto kGlyphs = std::to_array<Glyph>({
    {QLatin1StringView("archivebox"), 0xE149},
    {QLatin1StringView("arrow.clockwise"), 0xE5D5},
    {QLatin1StringView("arrow.up"), 0xE5D8},
    {QLatin1StringView("arrow.uturn.backward"), 0xE166},
    {QLatin1StringView("bolt.fill"), 0xEA0B},
    {QLatin1StringView("brain"), 0xEA4A},
    {QLatin1StringView("bubble.left.and.text.bubble.right"), 0xE0CA},
    {QLatin1StringView("checkmark"), 0xE5CA},
    {QLatin1StringView("checkmark.circle.fill"), 0xE86C},
    {QLatin1StringView("chevron.down"), 0xE5CF},
    {QLatin1StringView("chevron.left"), 0xE5C4},
    {QLatin1StringView("chevron.right"), 0xE5CC},
    {QLatin1StringView("circle"), 0xE836},
    {QLatin1StringView("circle.dotted"), 0xEF64},
    {QLatin1StringView("clock.badge.exclamationmark"), 0xE51D},
    {QLatin1StringView("cpu"), 0xE322},
    {QLatin1StringView("doc.on.clipboard"), 0xE14F},
    {QLatin1StringView("ellipsis.circle"), 0xE5D3},
    {QLatin1StringView("exclamationmark.bubble.fill"), 0xE87F},
    {QLatin1StringView("exclamationmark.triangle"), 0xE002},
    {QLatin1StringView("film"), 0xE02C},
    {QLatin1StringView("flag"), 0xE153},
    {QLatin1StringView("gauge.with.dots.needle.33percent"), 0xE9E4},
    {QLatin1StringView("gearshape"), 0xE8B8},
    {QLatin1StringView("globe"), 0xE80B},
    {QLatin1StringView("iphone.and.arrow.forward"), 0xF05C},
    {QLatin1StringView("list.bullet.clipboard"), 0xE85D},
    {QLatin1StringView("magnifyingglass"), 0xE8B6},
    {QLatin1StringView("mic.fill"), 0xE029},
    {QLatin1StringView("pause.circle.fill"), 0xE1A2},
    {QLatin1StringView("pencil"), 0xE3C9},
    {QLatin1StringView("photo"), 0xE410},
    {QLatin1StringView("pin"), 0xF10D},
    {QLatin1StringView("pin.fill"), 0xF10D},
    {QLatin1StringView("plus.circle"), 0xE147},
    {QLatin1StringView("qrcode"), 0xF206},
    {QLatin1StringView("slider.horizontal.3"), 0xE429},
    {QLatin1StringView("sparkles"), 0xE65F},
    {QLatin1StringView("stop.fill"), 0xE047},
    {QLatin1StringView("switch.2"), 0xE9F6},
    {QLatin1StringView("terminal"), 0xEB8E},
    {QLatin1StringView("waveform"), 0xE1B8},
    {QLatin1StringView("wrench.and.screwdriver"), 0xF10B},
    {QLatin1StringView("arrow.down"), 0xE5DB},
    {QLatin1StringView("arrow.uturn.left"), 0xE166},
    {QLatin1StringView("clock.arrow.up"), 0xEA0A},
    {QLatin1StringView("doc.on.doc"), 0xE14D},
    {QLatin1StringView("doc.text"), 0xE873},
    {QLatin1StringView("text.word.spacing"), 0xE25B},
    {QLatin1StringView("chart.bar"), 0xE26B},
    {QLatin1StringView("exclamationmark.triangle.fill"), 0xE002},
    {QLatin1StringView("exclamationmark.shield.fill"), 0xF014},
    {QLatin1StringView("pin.slash"), 0xF10D},
    {QLatin1StringView("photo.on.rectangle"), 0xE413},
    {QLatin1StringView("camera"), 0xE412},
    {QLatin1StringView("bell"), 0xE7F4},
    {QLatin1StringView("keyboard"), 0xE312},
    {QLatin1StringView("power"), 0xE8AC},
    {QLatin1StringView("clock"), 0xE8B5},
    {QLatin1StringView("xmark"), 0xE5CD},
    {QLatin1StringView("xmark.octagon.fill"), 0xE99A},
});

const QHash<QString, char16_t>& glyphs() {
  static const auto kTable = [] {
    QHash<QString, char16_t> table;
    for (const auto& [name, codePoint] : kGlyphs) table.insert(name, codePoint);
    return table;
  }();
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
