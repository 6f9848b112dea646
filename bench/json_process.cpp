// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/json_process.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "bench/corpus_file.h"
#include "bench/json_ours.h"
#include "bench/process.h"

namespace varnel::bench {

namespace {

/// A line of /proc/self/status, in bytes.
double memory(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == name + ":" && status >> kilobytes) return kilobytes * 1024;
  }
  throw std::runtime_error("the system does not tell " + name);
}

}  // namespace

std::expected<double, std::string> peakAboveBody(const std::string& file) {
  const auto output =
      outputOf(thisProgram(), {QStringLiteral("--rss"), QStringLiteral("ours"), QString::fromStdString(file)});
  if (!output) return std::unexpected(output.error());
  return output->toDouble() / static_cast<double>(std::filesystem::file_size(file));
}

void decodeOnce(const std::string& file, bool onlyRead) {
  std::string body = readFile(file);
  if (!onlyRead && detailByUs(std::move(body)).items->value().empty()) throw std::runtime_error("there are no items");
}

void printPeakAboveBody(const std::string& file) {
  std::string body = readFile(file);
  // Forgets the peak so far; since then it can only be the decoder's.
  std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
  const double before = memory("VmRSS");
  const auto detail = detailByUs(std::move(body));
  const double peak = memory("VmHWM");
  if (detail.items->value().empty()) throw std::runtime_error("there are no items");
  std::printf("%.0f\n", peak - before);
}

}  // namespace varnel::bench
