// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// usage: defaults_bench [DIR]
// How long setting a default holds its caller, on the file system of DIR (here): our store, the same file synced before
// the call returns, and QSettings::sync, which survives a kill and is not synced.

#include <QCoreApplication>
#include <QSettings>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "app/platform/atomic_file.h"
#include "app/platform/defaults_store_file.h"

namespace {

using namespace varnel::platform;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 300;

/// A value of that size, another one each round.
std::string valueOf(std::size_t size, int round) {
  return std::string(size, static_cast<char>('a' + round % 26));
}

void race(const char* name, std::size_t size, const std::function<bool(const std::string&)>& set) {
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    const std::string value = valueOf(size, round);
    const auto start = Clock::now();
    if (!set(value)) {
      std::fprintf(stderr, "%s: cannot write\n", name);
      return;
    }
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  }
  std::ranges::sort(times);
  std::printf("%-20s %7zu bytes  p50 %7.2f ms  p99 %7.2f ms\n", name, size, times[kRounds / 2],
              times[kRounds * 99 / 100]);
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const std::filesystem::path folder = std::filesystem::path(argc > 1 ? argv[1] : ".") / "defaults_bench.scratch";
  if (!makePrivateDirectory(folder)) return 1;
  {
    DefaultsFileStore store(folder);
    QSettings settings(QString::fromStdString((folder / "settings.ini").string()), QSettings::IniFormat);
    for (const std::size_t size : {1'000U, 20'000U, 200'000U}) {
      race("our store", size, [&](const auto& value) { return store.set("Varnel.Key", Data{value}).has_value(); });
      race("synced first", size, [&](const auto& value) { return replaceFile(folder / "synced", value).has_value(); });
      race("QSettings::sync", size, [&](const auto& value) {
        settings.setValue(QStringLiteral("key"), QByteArray::fromStdString(value));
        settings.sync();
        return settings.status() == QSettings::NoError;
      });
    }
  }
  std::filesystem::remove_all(folder);
  return 0;
}
