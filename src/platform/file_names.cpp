// SPDX-License-Identifier: MIT
#include "platform/files.h"

namespace platform {

bool IsMemberName(std::string_view name) {
  constexpr std::string_view kSeparatorsAndZero("/\\\0", 3);
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(kSeparatorsAndZero) == std::string_view::npos;
}

bool IsPlainFileName(std::string_view name) { return IsMemberName(name) && !IsReservedFileName(name); }

bool IsPlainNameOfModel(std::string_view name) {
  return IsPlainFileName(name) && name.find(':') == std::string_view::npos;
}

}  // namespace platform
