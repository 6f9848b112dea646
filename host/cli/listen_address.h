// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <expected>
#include <string>
#include <string_view>

namespace varnel::cli {

/// `ADDR:PORT` with an address in numbers, IPv6 in brackets, or "localhost"; port 0 is any free one. The reason, as a
/// sentence, when it is none.
std::expected<boost::asio::ip::tcp::endpoint, std::string> parseListenAddress(std::string_view text);

/// The base URL of what listens there.
std::string urlOf(const boost::asio::ip::tcp::endpoint& endpoint);

}  // namespace varnel::cli
