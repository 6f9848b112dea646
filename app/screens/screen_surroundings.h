// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/platform/camera.h"
#include "app/platform/defaults_store.h"
#include "app/screens/session/session_services.h"
#include "core/wire/session.h"

namespace varnel::screens {

/// What the screens need beside the model; a test hands in its own.
struct ScreenSurroundings {
  std::function<double()> now;                        ///< seconds since 1970
  std::function<QString()> clipboard;                 ///< the text that was copied last
  std::shared_ptr<platform::DefaultsStore> defaults;  ///< never null
  SessionServices session = systemServices();         ///< for conversations
  /// What was typed for a conversation and not sent; empty for none.
  std::function<QString(const std::string& sessionId)> draftOf = [](const std::string&) { return QString(); };
  /// The list of an earlier run, for while there is none of this one; null when none is wanted.
  std::function<const std::vector<wire::SessionSummary>*()> savedSessions = [] { return nullptr; };
  /// Whether the lock screen may show a turn.
  std::function<bool()> activitiesEnabled = [] { return false; };
  /// A new camera, or null on a device that can have none.
  std::function<std::unique_ptr<platform::Camera>()> makeCamera = [] { return nullptr; };
  std::function<void()> quit = [] {};
};

}  // namespace varnel::screens
