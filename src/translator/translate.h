// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace translator {

/// Translates a model that assimp reads into a GLB file.
/// @param ending  of its format
/// @param path    of its folder; empty: no other file is read
/// @return what follows the start of the stream
/// @throws std::exception
std::string Translate(std::string_view ending, std::string input, const std::string& path);

}  // namespace translator
