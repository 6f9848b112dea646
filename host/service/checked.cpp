// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/checked.h"

#include "host/service/log.h"

namespace varnel::service {

std::unexpected<Failure> unsendable(std::string_view what, const json::DecodeError& error) {
  log("not sent, the phone could not read it: " + std::string(what) + ": " + error.message());
  return refuse(Failure::Kind::Internal, "The bridge made an answer that cannot be read.");
}

}  // namespace varnel::service
