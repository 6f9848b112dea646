// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/symbols.h"

#include <gtest/gtest.h>

#include <QtCore/QStringList>
#include <QtGui/QRawFont>

namespace varnel::ui {
namespace {

TEST(Symbols, EveryNameIsAGlyphOfTheBuiltInFont) {
  const QRawFont font(QStringLiteral(":/varnel/symbols.ttf"), 24);
  ASSERT_TRUE(font.isValid());
  EXPECT_EQ(Symbols().family(), font.familyName());
  ASSERT_GT(Symbols::names().size(), 30);
  for (const QString& name : Symbols::names()) {
    const QString glyph = Symbols::glyph(name);
    ASSERT_EQ(glyph.size(), 1);
    EXPECT_TRUE(font.supportsCharacter(glyph[0])) << name.toStdString();
  }
}

TEST(Symbols, AnUnknownNameIsSeen) {
  const QRawFont font(QStringLiteral(":/varnel/symbols.ttf"), 24);
  const QString glyph = Symbols::glyph(QStringLiteral("no such symbol"));
  ASSERT_EQ(glyph.size(), 1);
  EXPECT_TRUE(font.supportsCharacter(glyph[0]));
}

}  // namespace
}  // namespace varnel::ui
