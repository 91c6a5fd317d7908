// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace ts3d {

/// Product name of the rig bone `rigName` in any letter case; empty when the product has none for it. The
/// product's
/// "!" stands where it expects one.
std::string_view FindProductBoneName(std::string_view rigName);

}  // namespace ts3d
