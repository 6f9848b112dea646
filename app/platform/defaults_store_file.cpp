// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/defaults_store_file.h"

#include <sys/stat.h>

#include <charconv>
#include <limits>
#include <utility>

#include "app/platform/atomic_file.h"
#include "core/base/percent_encoding.h"
#include "core/json/text.h"

namespace varnel::platform {
namespace {

namespace fs = std::filesystem;
using json::JSONValue;

// A file is one line, "varnel FORM LENGTH CHECKSUM", and the LENGTH bytes after it.
constexpr std::string_view kMark = "varnel ";
constexpr std::string_view kFlag = "flag";
constexpr std::string_view kText = "text";
constexpr std::string_view kData = "data";
constexpr std::string_view kDictionary = "dictionary";

std::expected<std::string, std::error_code> jsonOf(const Dictionary& dictionary) {
  JSONValue::Object members;
  for (const auto& [name, text] : dictionary) members.emplace(name, JSONValue(text));
  auto text = json::write(JSONValue(std::move(members)));
  if (!text) return std::unexpected(std::make_error_code(std::errc::illegal_byte_sequence));
  return *std::move(text);
}

std::optional<DefaultsValue> dictionaryFrom(std::string_view payload) {
  const auto value = json::parse(payload);
  const auto* members = value ? value->object() : nullptr;
  if (members == nullptr) return std::nullopt;
  Dictionary dictionary;
  for (const auto& [name, member] : *members) {
    const auto* text = member.string();
    if (text == nullptr) return std::nullopt;
    dictionary.emplace(name, *text);
  }
  return dictionary;
}

/// FNV-1a: tells a file of which only a part reached the disk, not one that somebody changed on purpose.
std::uint64_t checksum(std::string_view bytes) {
  std::uint64_t sum = 14695981039346656037U;
  for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * 1099511628211U;
  return sum;
}

std::string headOf(std::string_view form, std::string_view payload) {
  return std::string(kMark)
      .append(form)
      .append(" ")
      .append(std::to_string(payload.size()))
      .append(" ")
      .append(std::to_string(checksum(payload)));
}

std::string framed(std::string_view form, std::string_view payload) {
  return headOf(form, payload).append("\n").append(payload);
}

std::expected<std::string, std::error_code> contentOf(const DefaultsValue& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return framed(kFlag, *flag ? "true" : "false");
  if (const auto* text = std::get_if<std::string>(&value)) return framed(kText, *text);
  if (const auto* data = std::get_if<Data>(&value)) return framed(kData, data->bytes);
  const auto text = jsonOf(std::get<Dictionary>(value));
  if (!text) return std::unexpected(text.error());
  return framed(kDictionary, *text);
}

/// Nothing when the content is not what `contentOf` writes.
std::optional<DefaultsValue> valueFrom(std::string_view content) {
  const std::size_t end = content.find('\n');
  if (!content.starts_with(kMark) || end == std::string_view::npos) return std::nullopt;
  const std::string_view payload = content.substr(end + 1);
  const std::string_view form = content.substr(kMark.size(), content.find(' ', kMark.size()) - kMark.size());
  if (content.substr(0, end) != headOf(form, payload)) return std::nullopt;

  if (form == kFlag && (payload == "true" || payload == "false")) return payload == "true";
  if (form == kText) return std::string(payload);
  if (form == kData) return Data{std::string(payload)};
  if (form == kDictionary) return dictionaryFrom(payload);
  return std::nullopt;
}

/// Whether the file is one that no store has written. What cannot be read at the moment may be good.
bool isBad(const FileContent& content) {
  if (content) return content->has_value() && !valueFrom(**content);
  return content.error() == std::errc::too_many_symbolic_link_levels ||
         content.error() == std::errc::invalid_argument || content.error() == std::errc::permission_denied;
}

}  // namespace

DefaultsFileStore::DefaultsFileStore(fs::path directory, Warn warn)
    : m_directory(std::move(directory)), m_warn(std::move(warn)) {
  m_syncing.setMaxThreadCount(1);
}

std::optional<DefaultsValue> DefaultsFileStore::value(std::string_view key) const {
  const fs::path file = fileOf(key);
  const auto stamp = stampOf(file);
  if (!stamp) return std::nullopt;
  auto known = m_known.find(key);
  if (known == m_known.end() || known->second.stamp != *stamp) {
    known = m_known.insert_or_assign(std::string(key), Known{.stamp = *stamp, .value = read(file)}).first;
  }
  return known->second.value;
}

std::expected<void, std::error_code> DefaultsFileStore::set(std::string_view key, const DefaultsValue& value) {
  static_cast<void>(this->value(key));  // a corrupt file is set aside before another takes its name
  const auto content = contentOf(value);
  if (!content) return std::unexpected(content.error());
  if (auto made = makePrivateDirectory(m_directory); !made) return made;
  const fs::path file = fileOf(key);
  auto replaced = replaceFileUnsynced(file, *content);
  // Should it fail, the previous value stays beside the file and the next sync tries again.
  if (replaced) m_syncing.start([file] { static_cast<void>(syncFile(file)); });
  return replaced;
}

std::expected<void, std::error_code> DefaultsFileStore::remove(std::string_view key) {
  return removeFile(fileOf(key));
}

std::optional<DefaultsFileStore::Stamp> DefaultsFileStore::stampOf(const fs::path& file) {
  struct stat status{};
  if (::lstat(file.c_str(), &status) != 0) return std::nullopt;
  return Stamp{.inode = status.st_ino,
               .seconds = status.st_mtim.tv_sec,
               .nanoseconds = status.st_mtim.tv_nsec,
               .size = status.st_size};
}

fs::path DefaultsFileStore::fileOf(std::string_view key) const {
  return m_directory / base::percentEncode(key, base::UrlSet::Unreserved);
}

std::optional<DefaultsValue> DefaultsFileStore::read(const fs::path& file) const {
  const FileContent content = readPrivateFile(file, std::numeric_limits<std::size_t>::max());
  if (!isBad(content)) return content && *content ? valueFrom(**content) : std::nullopt;
  const FileContent previous = readPrivateFile(previousOf(file), std::numeric_limits<std::size_t>::max());
  if (previous && *previous && !isBad(previous)) {
    if (m_warn) m_warn(file.string() + " did not reach the disk: the value before it is taken");
    return valueFrom(**previous);
  }
  const auto aside = setAsideIf(file, isBad);
  if (m_warn && !aside) m_warn(file.string() + " makes no sense and cannot be set aside: " + aside.error().message());
  if (m_warn && aside && *aside) m_warn(file.string() + " makes no sense and was set aside as " + (*aside)->string());
  return std::nullopt;
}

}  // namespace varnel::platform
