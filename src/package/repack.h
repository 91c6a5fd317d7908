// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ts3d {

/// How members get into another archive.
struct RepackOptions {
  std::optional<int> level = std::nullopt;      ///< deflates them anew; none: they stay as they are packed
  std::optional<uint32_t> date = std::nullopt;  ///< of every member, as in MS-DOS; none: each keeps its own
};

/// Writes the members of the sound package `from` that are kept into the new package `to`, in their order.
/// @param keeps  one for each member of `from`
/// @throws std::runtime_error, std::bad_alloc; `to` is not complete then
void RepackPackage(const std::string& from, const std::vector<bool>& keeps, const std::string& to,
                   const RepackOptions& options);

}  // namespace ts3d
