// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ts3d {

/// `text`, from a file or a name, as it may be printed: control characters, also the second set of them, and
/// marks that turn the direction of writing are shown as "\u001b" and the like.
std::string VisibleText(std::string_view text);

/// The same for a text of several lines, which stay lines. JSON means what it meant before.
std::string VisibleLines(std::string_view text);

}  // namespace ts3d
