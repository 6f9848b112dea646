// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/sessions/conversation_title.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

namespace varnel::screens {

QString conversationTitle(const std::optional<std::string>& name, const std::optional<std::string>& cwd) {
  if (name) return QString::fromStdString(*name);
  const auto parts = QString::fromStdString(cwd.value_or(std::string())).split(QLatin1Char('/'), Qt::SkipEmptyParts);
  return parts.isEmpty() ? QCoreApplication::translate("Conversations", "Conversation") : parts.back();
}

}  // namespace varnel::screens
