// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "app/client/body.h"

namespace varnel::client {

/// A whole HTTP answer of any status.
struct Answer {
  int status = 0;
  Body body;
  std::string contract;  ///< the version that the bridge says it speaks; empty when it says none
};

/// Reads one HTTP/1 answer out of bytes as they come; interim answers (1xx) are skipped. No I/O.
class AnswerParser {
 public:
  enum class State {
    NeedsMore,
    Done,
    Invalid,   ///< not HTTP, or a head larger than 64 KiB
    TooLarge,  ///< the body is, or announces to be, beyond the limit
    CutOff,    ///< the connection ended before the answer did
  };

  /// `bodyLimit` is in bytes, as they come and, of a packed body, once it is unpacked.
  explicit AnswerParser(std::int64_t bodyLimit);
  ~AnswerParser();
  AnswerParser(const AnswerParser&) = delete;
  AnswerParser& operator=(const AnswerParser&) = delete;

  /// Any state but NeedsMore is final.
  State put(std::string_view bytes);
  /// The other side has closed, which ends an answer that has no length of its own.
  State putEnd();
  /// Once, when Done.
  Answer take();

 private:
  struct Beast;
  std::unique_ptr<Beast> m_beast;
};

}  // namespace varnel::client
