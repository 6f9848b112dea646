// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/read.hpp>

#include "core/live/request.h"
#include "host/http/arriving_file.h"
#include "host/http/connection.h"
#include "host/http/run_handler.h"
#include "host/service/bridge.h"
#include "host/service/checked.h"
#include "host/service/log.h"

namespace varnel::http {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using service::Failure;

namespace {

/// What a file is read in: few waits for a large one, nothing to speak of for a hundred at once.
constexpr std::size_t kPieceBytes = 64UL * 1024;
constexpr auto kLimit = static_cast<std::uint64_t>(service::Attachments::kLargestBytes);

std::unexpected<Failure> tooLarge() {
  return service::refuse(Failure::Kind::TooLarge,
                         "Files may have at most " + std::to_string(kLimit / (1024UL * 1024)) + " MB.");
}

std::unexpected<Failure> notKept() {
  return service::refuse(Failure::Kind::Internal, "The file could not be kept on the host.");
}

/// What the request's header says of the file; its size is not known yet.
service::Attachments::Description describe(const http::fields& header, std::string sessionId) {
  const std::string_view type = header[http::field::content_type];
  return {.sessionId = std::move(sessionId),
          .name = live::fileNameFromHeader(header["X-File-Name"]),
          .mimeType = type.empty() ? std::string("application/octet-stream") : std::string(type)};
}

service::Outcome<std::string> keepFile(service::Bridge& bridge, ArrivingFile& file,
                                       const service::Attachments::Description& description) {
  auto kept = bridge.attachments.add(file.path(), description);
  if (!kept) return std::unexpected(kept.error());
  file.keep();
  return service::checkedText("upload", *kept);
}

/// Answers once for a key, as for every other operation; the file of a repetition is thrown away.
Answer keepOnce(service::Bridge& bridge, ArrivingFile& file, const http::fields& header,
                const std::optional<store::Device>& device, std::string sessionId) {
  const auto digest = file.finish();
  const auto content = store::DigestBuilder()
                           .add(sessionId)
                           .add(std::string_view("\0", 1))
                           .add(header["X-File-Name"])
                           .add(std::string_view("\0", 1))
                           .add(header[http::field::content_type])
                           .add(std::string_view("\0", 1))
                           .add(store::bytesOf(digest))
                           .finish();
  const auto request = repeatable(device, std::string(header["Idempotency-Key"]), content);
  if (!request) return answerTo(request.error());
  if (*request) {
    const auto before = bridge.repeats.begin(**request);
    if (!before) return answerTo(before.error());
    if (*before) return {.status = (*before)->status, .body = (*before)->body};
  }
  auto description = describe(header, std::move(sessionId));
  description.size = file.size();
  Answer answer = answerTo(notKept().error());
  try {
    const auto outcome = keepFile(bridge, file, description);
    answer = outcome ? Answer{.status = 200, .body = *outcome} : answerTo(outcome.error());
  } catch (const std::exception& error) {
    service::log(std::string("a file that was sent could not be kept: ") + error.what());
  }
  if (*request) bridge.repeats.finish(**request, {.status = answer.status, .body = answer.body});
  return answer;
}

}  // namespace

/// POST /v1/sessions/{}/uploads: the body goes to the disk as it arrives.
asio::awaitable<Answer> Connection::handleUpload(Admitted admitted) {
  auto& bridge = m_surroundings.bridge;
  if (m_header->content_length().value_or(0) > kLimit) co_return lastAnswerTo(tooLarge().error());
  const auto described = service::Attachments::check(describe(admitted.fields, admitted.match.ids[0]));
  if (!described) co_return lastAnswerTo(described.error());
  const auto room = bridge.attachments.checkRoom(static_cast<std::int64_t>(m_header->content_length().value_or(0)));
  if (!room) co_return lastAnswerTo(room.error());
  const auto exists = co_await bridge.commands.checkExists(admitted.match.ids[0]);
  if (!exists) co_return lastAnswerTo(exists.error());
  const auto file = std::make_shared<ArrivingFile>(bridge.attachments.newFile());
  if (!file->isOpen()) co_return lastAnswerTo(notKept().error());
  co_await sendContinue();
  const auto received = co_await receive(file);
  m_deadline.clear();
  if (!received) co_return lastAnswerTo(received.error());
  co_return keepOnce(bridge, *file, admitted.fields, admitted.device, admitted.match.ids[0]);
}

asio::awaitable<service::Outcome<void>> Connection::receive(std::shared_ptr<ArrivingFile> file) {
  http::request_parser<http::buffer_body> parser(std::move(*m_header));
  parser.body_limit(kLimit);
  std::vector<char> piece(kPieceBytes);
  while (!parser.is_done()) {
    parser.get().body().data = piece.data();
    parser.get().body().size = piece.size();
    m_deadline.set(m_surroundings.limits.bodyTime, shared_from_this());
    const auto [error, size] =
        co_await http::async_read(m_socket, m_buffer, parser, asio::as_tuple(asio::use_awaitable));
    if (m_deadline.hasPassed()) co_return service::refuse(Failure::Kind::Late, "The file took too long.");
    if (error == http::error::body_limit) co_return tooLarge();
    if (error && error != http::error::need_buffer) {
      co_return service::refuse(Failure::Kind::Invalid, "The file does not arrive in full.");
    }
    if (!file->write({piece.data(), piece.size() - parser.get().body().size})) co_return notKept();
  }
  co_return service::Outcome<void>();
}

}  // namespace varnel::http
