// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace varnel::agent::demo {

/// A stream of chance that depends on nothing but its seed and its name, so that what happens in one conversation does
/// not change the ids of another.
class IdStream {
 public:
  IdStream() = default;
  IdStream(std::uint64_t seed, std::string_view name);

  std::uint64_t next();
  /// A number below `bound`, which is above 0.
  std::size_t below(std::size_t bound) { return static_cast<std::size_t>(next() % bound); }
  /// 36 characters in groups 8-4-4-4-12.
  std::string uuid();
  /// As the agent names its items: `msg_5f0c...`.
  std::string itemId(std::string_view prefix);

 private:
  std::uint64_t m_state = 0;
};

}  // namespace varnel::agent::demo
