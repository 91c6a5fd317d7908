// SPDX-License-Identifier: MIT
#include "core/trace.h"

#include "platform/process.h"

namespace ts3d {

std::string ComposeMessage(std::string_view first, std::string_view second, std::string_view third,
                           std::string_view fourth, std::string_view fifth) {
  std::string message;
  message.reserve(first.size() + second.size() + third.size() + fourth.size() + fifth.size());
  return message.append(first).append(second).append(third).append(fourth).append(fifth);
}

void DebugTrace(std::string_view text) {
  constexpr size_t kLongestTrace = 1022;
  platform::DebugOutput(std::string(text.substr(0, kLongestTrace)).append("\n").c_str());
}

}  // namespace ts3d
