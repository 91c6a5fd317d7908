// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/plain_text.h"
#include "platform/files.h"

namespace ts3d {

/// Removes the first occurrence of each of : ? ! @ * \ / | from
/// `name`, together with the character before it.
std::string SanitizeMeshName(std::string_view name);

/// Name suffix number `n` (from 0): "a" to "z", then "aa", "ab", ... "az", "ba", ...
std::string LetterSuffix(int n);

/// Name of output number `number` of the mesh `meshName`, one for each of its materials: the mesh's name, then
/// the name with "_a", "_b", ...
std::string SliceName(const std::string& meshName, int number);

/// `path` up to and including its last backslash; the whole of it when it has none.
std::string DirectoryPart(std::string_view path);

/// What follows the last backslash of `path`; the whole of it when it has none.
std::string FileNamePart(std::string_view path);

/// `path` with its last three characters replaced by `extension`.
std::string ReplaceExtension(std::string_view path, std::string_view extension);

/// Whether ReplaceExtension changes the file name of `path` only: a shorter name would be cut across the
/// separator, and the result lie in another folder.
bool HasRoomForExtension(std::string_view path);

/// The "|"-separated entries of a host list; none for an empty list. The views point into `list`.
std::vector<std::string_view> SplitList(std::string_view list);

/// Splits a list entry "key=value" at its first "="; false when there is none.
bool SplitEntry(std::string_view entry, std::string_view& key, std::string_view& value);

using base::EndsWithIgnoreCase;
using base::EqualsIgnoreCase;
using base::HasExtension;
using base::LowerCase;
using platform::IsPlainFileName;

}  // namespace ts3d
