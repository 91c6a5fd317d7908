// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ts3d {

/// Joins up to five pieces of a message.
std::string ComposeMessage(std::string_view first, std::string_view second, std::string_view third = {},
                           std::string_view fourth = {}, std::string_view fifth = {});

/// Sends `text`, cut to 1022 characters, and a line feed to the system's debug output.
void DebugTrace(std::string_view text);

}  // namespace ts3d
