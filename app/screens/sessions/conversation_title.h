// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <optional>
#include <string>

namespace varnel::screens {

/// How a conversation is called where only its name and its directory are known: the name, else the last part of the
/// directory, else "Conversation".
QString conversationTitle(const std::optional<std::string>& name, const std::optional<std::string>& cwd);

}  // namespace varnel::screens
