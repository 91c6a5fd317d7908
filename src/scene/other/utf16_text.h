// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace scene::other {

/// A text of UTF-16 as UTF-8, without the mark that it begins with. Nothing where `bytes` begins with none.
std::optional<std::string> FromUtf16(std::string_view bytes);

}  // namespace scene::other
