// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"
#include "rig_check/rig_report.h"

namespace ts3d {

/// Adds findings for the pictures that a conversion of `model`
/// (an absolute path) would not find or not understand.
/// @param folders  searched as well, see textures::TextureFinder
void AddTextureFindings(const platform::fs::path& model, const std::vector<std::string>& folders,
                        RigReport& report);

}  // namespace ts3d
