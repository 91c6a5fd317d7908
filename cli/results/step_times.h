// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// Names of steps and the seconds that they took, in the order of their beginnings.
using StepSeconds = std::vector<std::pair<std::string, double>>;

/// Adds the seconds of `step` to `steps`.
void AddSeconds(const std::string& step, double seconds, StepSeconds& steps);

/// "load 0.012 s, meshes 0.140 s"
std::string DescribeSteps(const StepSeconds& steps);

/// Measures the steps of one conversion.
class StepTimes {
 public:
  /// Ends the step before.
  void Begin(const std::string& step);
  /// Runs `work` as a step of its own inside another one.
  template <class Work>
  auto Within(const std::string& step, const Work& work) {
    const std::string outer = step_;
    Begin(step);
    const auto result = work();
    Begin(outer);
    return result;
  }
  /// Ends the last step. @return all of them
  StepSeconds End();

 private:
  using Clock = std::chrono::steady_clock;

  std::string step_;  ///< empty: none
  Clock::time_point begin_;
  StepSeconds steps_;
};

}  // namespace cli
