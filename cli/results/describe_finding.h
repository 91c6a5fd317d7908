// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "core/finding.h"

namespace cli {

/// What a finding says of whom: `bones "a", "b" and 3 more: ...`.
std::string DescribeFinding(const ts3d::Finding& finding);

/// The opposite of ts3d::WriteFinding. @throws nlohmann::json::exception on anything else
ts3d::Finding FindingFromJson(const nlohmann::ordered_json& json);

}  // namespace cli
