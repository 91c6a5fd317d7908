// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/file_system.h"

namespace cli {

/// Why an input is of no use, with the exit status that belongs to it.
struct InputProblem {
  int exitStatus;
  std::string text;
};

/// What can be told without reading the input: it is not there, may not be read, is empty or no file.
/// @param takesFolders  whether a folder will do
std::optional<InputProblem> FindInputProblem(const platform::fs::path& path, bool takesFolders = false);

/// What a file is that turned out to be no model or no package, and what to do about it, by its first bytes:
/// a Git LFS pointer, another program's model, an archive. Empty when that cannot be told.
std::string RecogniseModel(const platform::fs::path& path);
std::string RecognisePackage(const platform::fs::path& path);

}  // namespace cli
