// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace varnel::live {

/// Tells which of several loads of one conversation began last, so that older answers are dropped. Numbers are never
/// used twice, so an answer from before `forgetAll` is stale too.
class LoadGenerations {
 public:
  using Generation = std::int64_t;

  /// Marks the begin of a load and makes every earlier one of that conversation stale.
  Generation begin(const std::string& sessionId);
  [[nodiscard]] bool isCurrent(std::string_view sessionId, Generation generation) const;
  /// Makes every load under way stale.
  void forgetAll();

 private:
  std::map<std::string, Generation, std::less<>> m_latest;
  Generation m_last = 0;
};

}  // namespace varnel::live
