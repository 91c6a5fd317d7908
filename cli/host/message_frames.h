// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace cli {

/// A message as it goes through a pipe: its length in four bytes, and its text.
std::string FrameOf(std::string_view message);

/// Hands the whole messages at the beginning of `bytes` to `take`, and leaves what is not complete.
void TakeMessages(std::string& bytes, const std::function<void(std::string_view message)>& take);

}  // namespace cli
