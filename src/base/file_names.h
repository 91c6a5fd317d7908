// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace base {

/// What follows the last slash of either kind, as models of any system name their files; all of `path` when it
/// has none.
constexpr std::string_view BaseName(std::string_view path) {
  return path.substr(path.find_last_of("\\/") + 1);
}

}  // namespace base
