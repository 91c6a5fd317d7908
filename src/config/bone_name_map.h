// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>
#include <utility>

namespace ts3d {

/// All rig bone names with their product names.
std::span<const std::pair<std::string_view, std::string_view>> BoneNameMap();

/// Product name of the rig bone `rigName` in any letter case; empty when the product has none for it. The
/// product's
/// "!" stands where it expects one.
std::string_view FindProductBoneName(std::string_view rigName);

}  // namespace ts3d
