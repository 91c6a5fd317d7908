// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ts3d {

/// Letters to insert, delete or exchange to make one of the other.
size_t EditDistance(std::string_view a, std::string_view b);

/// The `most` names of `existing` that are most like `name` whatever the letter case, the most similar first.
/// Looks at the first thousands of names only, and not at very long ones.
std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& existing,
                                      size_t most = 3);

/// Names as a text has them: each in quotation marks, with commas between them; "none" for no name.
std::string QuotedNames(const std::vector<std::string>& names);

}  // namespace ts3d
