// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "work_folder.h"

namespace cli {

/// Converts `model` with default settings in the folder `work` that was made for it; only problems are shown.
/// @param package receives the path of the package
/// @return the converter's result code
int ConvertQuietly(const std::filesystem::path& model, const WorkFolder& work,
                   std::filesystem::path& package);

}  // namespace cli
