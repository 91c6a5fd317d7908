// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/finding.h"

namespace cli {

/// What a finding says of whom: `bones "a", "b" and 3 more: ...`.
std::string DescribeFinding(const ts3d::Finding& finding);

}  // namespace cli
