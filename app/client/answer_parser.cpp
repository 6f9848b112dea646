// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/answer_parser.h"

#include <boost/beast/http/parser.hpp>
#include <optional>
#include <string>

namespace varnel::client {

namespace {

namespace http = boost::beast::http;
using boost::beast::error_code;

constexpr std::uint32_t kHeadLimit = 64 * 1024;

/// Lets Beast put a body into pieces instead of one growing buffer.
struct PiecesBody {
  using value_type = Body;

  class reader {  // NOLINT(readability-identifier-naming): the name that Beast looks for
   public:
    template <bool IsRequest, class Fields>
    reader(http::header<IsRequest, Fields>&, value_type& body) : m_body(body) {}
    void init(const boost::optional<std::uint64_t>&, error_code& error) { error = {}; }
    template <class Buffers>
    std::size_t put(const Buffers& buffers, error_code& error) {
      error = {};
      std::size_t size = 0;
      for (auto at = boost::asio::buffer_sequence_begin(buffers); at != boost::asio::buffer_sequence_end(buffers);
           ++at) {
        m_body.append({static_cast<const char*>(at->data()), at->size()});
        size += at->size();
      }
      return size;
    }
    void finish(error_code& error) { error = {}; }

   private:
    value_type& m_body;
  };
};

}  // namespace

struct AnswerParser::Beast {
  explicit Beast(std::int64_t limit) : bodyLimit(static_cast<std::uint64_t>(limit)) { restart(); }

  void restart() {
    parser.emplace();
    parser->eager(true);
    parser->header_limit(kHeadLimit);
    parser->body_limit(bodyLimit);
  }

  std::uint64_t bodyLimit;
  std::string pending;  ///< bytes that make sense only with those that follow
  std::optional<http::response_parser<PiecesBody>> parser;
};

AnswerParser::AnswerParser(std::int64_t bodyLimit) : m_beast(std::make_unique<Beast>(bodyLimit)) {}

AnswerParser::~AnswerParser() = default;

AnswerParser::State AnswerParser::put(std::string_view bytes) {
  std::string joined;
  if (!m_beast->pending.empty()) {
    joined = std::exchange(m_beast->pending, {}).append(bytes);
    bytes = joined;
  }
  while (!bytes.empty()) {
    auto& parser = *m_beast->parser;
    error_code error;
    bytes.remove_prefix(parser.put(boost::asio::const_buffer(bytes.data(), bytes.size()), error));
    if (error == http::error::need_more) break;
    if (error == http::error::body_limit) return State::TooLarge;
    if (error) return State::Invalid;
    if (!parser.is_done()) continue;
    if (parser.get().result_int() / 100 != 1) return State::Done;
    m_beast->restart();
  }
  m_beast->pending = bytes;
  return State::NeedsMore;
}

AnswerParser::State AnswerParser::putEnd() {
  if (!m_beast->parser->got_some()) return State::CutOff;
  error_code error;
  m_beast->parser->put_eof(error);
  return !error && m_beast->parser->is_done() ? State::Done : State::CutOff;
}

Answer AnswerParser::take() {
  auto& response = m_beast->parser->get();
  const auto encoding = response[http::field::content_encoding];
  if (boost::beast::iequals(encoding, "gzip") || boost::beast::iequals(encoding, "x-gzip")) {
    response.body().setGzip(static_cast<std::int64_t>(m_beast->bodyLimit));
  }
  std::string contract(response["Varnel-Contract"]);
  return {static_cast<int>(response.result_int()), std::move(response.body()), std::move(contract)};
}

}  // namespace varnel::client
