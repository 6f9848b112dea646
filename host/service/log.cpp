// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/log.h"

#include <unistd.h>
#include <utf8proc.h>

#include <array>
#include <cstdio>

namespace varnel::service {

namespace {

bool isShown(utf8proc_int32_t code) {
  switch (utf8proc_category(code)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_CS:
    case UTF8PROC_CATEGORY_CO:
    case UTF8PROC_CATEGORY_CN:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return false;
    default:
      return true;
  }
}

std::string escape(const char* format, unsigned value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

}  // namespace

void log(std::string_view line) {
  const std::string text = "varnel: " + printable(line) + "\n";
  // A log that cannot be written has nobody to tell.
  if (::write(STDERR_FILENO, text.data(), text.size()) < 0) return;
}

std::string printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    utf8proc_int32_t code = -1;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &code);
    if (size <= 0) {
      shown += escape("\\x%02x", static_cast<unsigned char>(text.front()));
      text.remove_prefix(1);
      continue;
    }
    const auto length = static_cast<std::size_t>(size);
    shown += isShown(code) ? std::string(text.substr(0, length)) : escape("\\u{%x}", static_cast<unsigned>(code));
    text.remove_prefix(length);
  }
  return shown;
}

}  // namespace varnel::service
