// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace cli {

/// Columns that UTF-8 text takes in a terminal: two for the wide letters of East Asia, none for marks that
/// stand on the letter before them. A byte that is no UTF-8 takes one.
size_t DisplayWidth(std::string_view text);

/// `text` with dots in place of its middle, so that it takes `most` columns at most; at least 5.
std::string Shortened(const std::string& text, size_t most);

/// `text` with blanks behind, or in front of, it up to `width` columns.
std::string PadRight(std::string text, size_t width);
std::string PadLeft(const std::string& text, size_t width);

}  // namespace cli
