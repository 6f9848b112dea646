// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/client_error.h"

namespace varnel::client {

namespace {

struct UserText {
  std::string operator()(const APIError& error) const {
    switch (error.kind) {
      case APIError::Kind::Server:
        return error.message;
      case APIError::Kind::NotPaired:
        return "This iPhone is not paired.";
      case APIError::Kind::InvalidResponse:
        break;
    }
    return "The bridge returned an invalid response.";
  }
  std::string operator()(const TransportError& error) const { return error.text; }
  std::string operator()(const json::DecodeError& error) const { return error.message(); }
  std::string operator()(const live::RequestError& error) const {
    if (error.kind != live::RequestError::Kind::InvalidHeader) return error.detail;
    return "The request cannot be sent: its header " + error.detail + " holds a control character.";
  }
  std::string operator()(const Cancelled&) const { return {}; }
};

}  // namespace

std::string userText(const ClientError& error) {
  return std::visit(UserText{}, error);
}

}  // namespace varnel::client
