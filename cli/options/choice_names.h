// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "driver/conversion_job.h"
#include "textures/texture_converter.h"

namespace cli {

/// The most that --max-influences takes.
inline constexpr int kMostInfluences = 1000;

// What options and settings call the things that one can choose from.

/// "none", "male", ...
const std::vector<std::string>& ActorTypeNames();
/// @param name  one of them
ts3d::ActorType ActorTypeOfName(const std::string& name);

/// "m", "cm", ...: the units of models that do not tell theirs, see ConvertOptions
const std::vector<std::string>& ModelUnitNames();

/// "fast", "default", "small"
const std::vector<std::string>& PackLevelNames();
/// A level of ts3d::Settings.
/// @param name  one of them
int PackLevelOfName(const std::string& name);

/// "shrink", "leave-out"
const std::vector<std::string>& TooLargeNames();
/// @param name  one of them
textures::TooLarge TooLargeOfName(const std::string& name);

}  // namespace cli
