// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/ui/host_label.h"

#include <QtCore/QCoreApplication>

namespace varnel::ui {
namespace {

/// The label that is built in when nobody chose another, for the translations.
[[maybe_unused]] constexpr const char* kDefaultLabel = QT_TRANSLATE_NOOP("HostLabel", "your computer");

}  // namespace

QString hostLabel() {
  return QCoreApplication::translate("HostLabel", VARNEL_HOST_LABEL);
}

}  // namespace varnel::ui
