// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::bench {

/// One competitor. `run` does the work on one input once and says how many things came out; `prepare` is not timed.
struct Runner {
  std::string name;
  std::function<std::size_t()> run;
  std::function<void()> prepare = [] {};
};

/// Lets runners take turns on the same input, so that what else the machine does falls on all alike. Times are CPU
/// times of this thread.
class Race {
 public:
  /// `bytes` is the size of the input, `things` what each run must report.
  Race(std::size_t bytes, std::size_t things) : m_bytes(bytes), m_things(things) {}

  void add(Runner runner) { m_runners.push_back(std::move(runner)); }
  /// Each turn lasts `leastSeconds` or one run. Throws when a runner reports something else than `things`.
  void run(int rounds, double leastSeconds);

  [[nodiscard]] std::vector<std::string> names() const;
  /// Median over the rounds, in bytes per second.
  [[nodiscard]] double rate(std::string_view name) const;
  /// Median over the rounds of how many times quicker `name` was than `base` in that round.
  [[nodiscard]] double ratio(std::string_view name, std::string_view base) const;
  /// A line for each runner: its rate, and the ratios to some of them.
  void print(std::span<const char* const> bases) const;

 private:
  [[nodiscard]] double secondsPerRun(const Runner& runner, double leastSeconds) const;
  [[nodiscard]] std::size_t find(std::string_view name) const;

  std::size_t m_bytes;
  std::size_t m_things;
  std::vector<Runner> m_runners;
  std::vector<std::vector<double>> m_seconds;  ///< by runner, then round
};

}  // namespace varnel::bench
