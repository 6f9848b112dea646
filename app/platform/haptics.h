// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

namespace varnel::platform {

enum class HapticSignal { Success, Warning, Error };

/// A short signal that can be felt, where the device has something for it.
class Haptics {
 public:
  virtual ~Haptics() = default;
  /// Returns at once; a device without it does nothing.
  virtual void notificationOccurred(HapticSignal signal) = 0;
};

}  // namespace varnel::platform
