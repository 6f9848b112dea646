// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/cli/listen_address.h"

#include <boost/asio/ip/address.hpp>
#include <charconv>
#include <optional>

namespace varnel::cli {

namespace asio = boost::asio;

namespace {

std::optional<std::uint16_t> parsePort(std::string_view text) {
  std::uint16_t port = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), port);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  return port;
}

}  // namespace

std::expected<asio::ip::tcp::endpoint, std::string> parseListenAddress(std::string_view text) {
  const std::string sentence = "\"" + std::string(text) + "\" is not an address to listen on, such as 127.0.0.1:8737.";
  const auto colon = text.rfind(':');
  if (colon == std::string_view::npos) return std::unexpected(sentence);
  std::string host(text.substr(0, colon));
  if (host.starts_with('[') && host.ends_with(']')) {
    host = host.substr(1, host.size() - 2);
  } else if (host.contains(':')) {
    return std::unexpected(sentence);
  }
  if (host == "localhost") host = "127.0.0.1";
  boost::system::error_code error;
  const auto address = asio::ip::make_address(host, error);
  const auto port = parsePort(text.substr(colon + 1));
  if (error || !port) return std::unexpected(sentence);
  return asio::ip::tcp::endpoint(address, *port);
}

std::string urlOf(const asio::ip::tcp::endpoint& endpoint) {
  const auto address = endpoint.address().to_string();
  const auto host = endpoint.address().is_v6() ? "[" + address + "]" : address;
  return "http://" + host + ":" + std::to_string(endpoint.port());
}

}  // namespace varnel::cli
