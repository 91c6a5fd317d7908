// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/conversion_job.h"

namespace ts3d {

/// Takes the status lines of a job. Each text is kept once, so that a model cannot fill the memory with them.
class StatusLines {
 public:
  /// Makes this the status channel of `job`. Must outlive it.
  void Attach(ConversionJob& job);
  void Clear();

  /// How often `line` was sent.
  size_t Count(const std::string& line) const;
  /// What follows `prefix` in the lines that begin with it, each once and in order.
  std::vector<std::string> After(std::string_view prefix) const;

 private:
  static void FBX_TO_TS3D_CALL Take(void* lines, const char* text);

  std::vector<const std::string*> order_;
  std::unordered_map<std::string, size_t> counts_;
};

}  // namespace ts3d
