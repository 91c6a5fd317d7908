// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ts3d {

/// `text` with the double quote, "&", "<" and ">" as entities.
/// Goes over the text once: "&amp;" becomes "&amp;amp;".
std::string EscapeXml(std::string_view text);

}  // namespace ts3d
