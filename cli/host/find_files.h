// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace cli {

/// What becomes of folders that cannot be looked into, below those that were named.
enum class Unread { Tell, LeaveOut };

/// All files below `folder` with `extension`, in any letter case, sorted.
/// @throws Failure when it cannot be looked into
std::vector<platform::fs::path> FilesBelow(const std::string& folder, const char* extension);
/// All files below `folder` whose path `isMeant`, sorted.
/// @throws Failure when it cannot be looked into
std::vector<platform::fs::path> FilesBelow(const std::string& folder,
                                           const std::function<bool(const platform::fs::path&)>& isMeant,
                                           Unread unread = Unread::Tell);

/// Endings of the models that are read, the one that is preferred first; those that hold no skeleton are the last.
inline constexpr std::array kModelExtensions = {".fbx", ".glb",     ".gltf", ".vrm", ".dae", ".x",   ".b3d",
                                                ".pmx", ".md5mesh", ".smd",  ".obj", ".ply", ".3ds", ".stl"};
/// How many of them are looked for in folders: props are converted when they are named.
inline constexpr size_t kCharacterExtensions = 10;

/// Whether a file of this name is taken for a model.
bool IsModelName(const platform::fs::path& path);
/// ".fbx, .glb, ...", those that are looked for in folders.
std::string ModelEndings();
/// All characters below `folder`, sorted. Of the same model in several formats the one that is preferred counts.
/// @throws Failure when it cannot be looked into
std::vector<platform::fs::path> ModelsBelow(const std::string& folder, Unread unread = Unread::Tell);

/// The paths in the list `file`, or of standard input for "-": one in a line, or with a zero byte behind each; each once.
/// @throws Failure when it cannot be read
std::vector<std::string> ReadFileList(const std::string& file);

}  // namespace cli
