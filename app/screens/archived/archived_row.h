// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include "core/wire/search.h"

namespace varnel::screens {

/// One archived conversation as it is shown.
struct ArchivedRow {
  QString sessionId;
  QString title;
  QString date;  ///< empty when it is not known
  QString spoken;

  [[nodiscard]] const QString& identity() const { return sessionId; }
  bool operator==(const ArchivedRow&) const = default;
};
ArchivedRow makeArchivedRow(const wire::ArchivedSession& session);

}  // namespace varnel::screens
