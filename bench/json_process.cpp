// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/json_process.h"

#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "bench/json_ours.h"

namespace varnel::bench {

namespace {

QString self() {
  return QString::fromStdString(std::filesystem::read_symlink("/proc/self/exe"));
}

/// The whole output of a process, which must end well.
std::expected<QString, std::string> outputOf(const QString& program, const QStringList& arguments) {
  constexpr int kMostMilliseconds = 120'000;
  QProcess process;
  auto environment = QProcessEnvironment::systemEnvironment();
  // Looking symbols up is no part of decoding.
  environment.insert(QStringLiteral("LD_BIND_NOW"), QStringLiteral("1"));
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, arguments);
  if (!process.waitForFinished(kMostMilliseconds) || process.exitStatus() != QProcess::NormalExit ||
      process.exitCode() != 0) {
    return std::unexpected((program + QStringLiteral(" failed: ") + process.errorString()).toStdString());
  }
  return QString::fromUtf8(process.readAll());
}

std::expected<double, std::string> instructions(const QString& what, const std::string& file) {
  const QString valgrind = QStandardPaths::findExecutable(QStringLiteral("valgrind"));
  if (valgrind.isEmpty()) return std::unexpected("valgrind is not installed");
  const auto output =
      outputOf(valgrind, {QStringLiteral("--tool=callgrind"), QStringLiteral("--callgrind-out-file=/dev/null"), self(),
                          QStringLiteral("--once"), what, QString::fromStdString(file)});
  if (!output) return std::unexpected(output.error());
  const QRegularExpression pattern(QStringLiteral("Collected : (\\d+)"));
  const auto match = pattern.match(*output);
  if (!match.hasMatch()) return std::unexpected("callgrind counted nothing");
  return match.captured(1).toDouble();
}

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

std::expected<double, std::string> instructionsPerByte(const std::string& file) {
  const auto whole = instructions(QStringLiteral("ours"), file);
  if (!whole) return whole;
  const auto rest = instructions(QStringLiteral("none"), file);
  if (!rest) return rest;
  return (*whole - *rest) / static_cast<double>(std::filesystem::file_size(file));
}

std::expected<double, std::string> peakAboveBody(const std::string& file) {
  const auto output = outputOf(self(), {QStringLiteral("--rss"), QStringLiteral("ours"), QString::fromStdString(file)});
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

std::string readFile(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::string text(in ? std::filesystem::file_size(file) : 0, '\0');
  if (!in.read(text.data(), static_cast<std::streamsize>(text.size()))) {
    throw std::runtime_error(file + " cannot be read");
  }
  return text;
}

}  // namespace varnel::bench
