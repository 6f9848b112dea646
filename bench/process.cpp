// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/process.h"

#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>

#include <filesystem>

namespace varnel::bench {

QString thisProgram() {
  return QString::fromStdString(std::filesystem::read_symlink("/proc/self/exe"));
}

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

namespace {

std::expected<double, std::string> instructions(const QString& what, const std::string& file) {
  const QString valgrind = QStandardPaths::findExecutable(QStringLiteral("valgrind"));
  if (valgrind.isEmpty()) return std::unexpected("valgrind is not installed");
  const auto output =
      outputOf(valgrind, {QStringLiteral("--tool=callgrind"), QStringLiteral("--callgrind-out-file=/dev/null"),
                          thisProgram(), QStringLiteral("--once"), what, QString::fromStdString(file)});
  if (!output) return std::unexpected(output.error());
  const QRegularExpression pattern(QStringLiteral("Collected : (\\d+)"));
  const auto match = pattern.match(*output);
  if (!match.hasMatch()) return std::unexpected("callgrind counted nothing");
  return match.captured(1).toDouble();
}

}  // namespace

std::expected<double, std::string> instructionsPerByte(const std::string& file) {
  const auto whole = instructions(QStringLiteral("ours"), file);
  if (!whole) return whole;
  const auto rest = instructions(QStringLiteral("none"), file);
  if (!rest) return rest;
  return (*whole - *rest) / static_cast<double>(std::filesystem::file_size(file));
}

}  // namespace varnel::bench
