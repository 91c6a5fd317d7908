// SPDX-License-Identifier: MIT
#include "results/step_times.h"

#include <algorithm>
#include <cstdio>

namespace cli {

void AddSeconds(const std::string& step, double seconds, StepSeconds& steps) {
  const auto known =
      std::find_if(steps.begin(), steps.end(), [&](const auto& entry) { return entry.first == step; });
  if (known == steps.end()) {
    steps.emplace_back(step, seconds);
  } else {
    known->second += seconds;
  }
}

std::string DescribeSteps(const StepSeconds& steps) {
  std::string text;
  for (const auto& [step, seconds] : steps) {
    char number[32];
    std::snprintf(number, sizeof number, " %.3f s", seconds);
    text += (text.empty() ? "" : ", ") + step + number;
  }
  return text;
}

void StepTimes::Begin(const std::string& step) {
  const Clock::time_point now = Clock::now();
  if (!step_.empty()) AddSeconds(step_, std::chrono::duration<double>(now - begin_).count(), steps_);
  step_ = step;
  begin_ = now;
}

StepSeconds StepTimes::End() {
  Begin({});
  return std::move(steps_);
}

}  // namespace cli
