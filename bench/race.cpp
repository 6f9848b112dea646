// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/race.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <stdexcept>

namespace varnel::bench {

namespace {

double threadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace

double Race::secondsPerRun(const Runner& runner, double leastSeconds) const {
  double spent = 0;
  int runs = 0;
  do {
    runner.prepare();
    const double begin = threadSeconds();
    const std::size_t things = runner.run();
    spent += threadSeconds() - begin;
    if (things != m_things) throw std::runtime_error(runner.name + " reports another number of results");
    ++runs;
  } while (spent < leastSeconds);
  return spent / runs;
}

void Race::run(int rounds, double leastSeconds) {
  m_seconds.assign(m_runners.size(), {});
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < m_runners.size(); ++i) {
      m_seconds[i].push_back(secondsPerRun(m_runners[i], leastSeconds));
    }
  }
}

std::vector<std::string> Race::names() const {
  std::vector<std::string> result;
  result.reserve(m_runners.size());
  for (const Runner& runner : m_runners) result.push_back(runner.name);
  return result;
}

std::size_t Race::find(std::string_view name) const {
  const auto found = std::ranges::find(m_runners, name, &Runner::name);
  if (found == m_runners.end()) throw std::out_of_range("no runner of that name");
  return static_cast<std::size_t>(found - m_runners.begin());
}

double Race::rate(std::string_view name) const {
  return static_cast<double>(m_bytes) / median(m_seconds.at(find(name)));
}

double Race::ratio(std::string_view name, std::string_view base) const {
  const auto& mine = m_seconds.at(find(name));
  const auto& other = m_seconds.at(find(base));
  std::vector<double> ratios;
  ratios.reserve(mine.size());
  for (std::size_t round = 0; round < mine.size(); ++round) ratios.push_back(other[round] / mine[round]);
  return median(ratios);
}

void Race::print(std::span<const char* const> bases) const {
  std::printf("  %-28s %8s", "", "MB/s");
  for (const char* base : bases) std::printf("  x %-24s", base);
  std::printf("\n");
  for (const std::string& name : names()) {
    std::printf("  %-28s %8.1f", name.c_str(), rate(name) / 1e6);
    for (const char* base : bases) std::printf("  %-26.2f", ratio(name, base));
    std::printf("\n");
  }
  std::fflush(stdout);
}

}  // namespace varnel::bench
