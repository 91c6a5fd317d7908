// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "check/rig_report.h"

namespace ts3d {

/// Adds findings for the pictures that a conversion of `model` (an absolute path) would not find or not
/// understand.
void AddTextureFindings(const std::filesystem::path& model, RigReport& report);

}  // namespace ts3d
