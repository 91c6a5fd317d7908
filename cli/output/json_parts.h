// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "rig_check/rig_report.h"

namespace cli {

// What the library writes as JSON, as parts of the tool's own.

/// See ts3d::WriteJsonHead.
nlohmann::ordered_json JsonHead(std::string_view schema, int version);
nlohmann::ordered_json FindingAsJson(const ts3d::Finding& finding);
nlohmann::ordered_json FindingsAsJson(const std::vector<ts3d::Finding>& findings);
nlohmann::ordered_json ReportAsJson(const ts3d::RigReport& report);

/// Whole text with a line end. Names are bytes of the model: what is no UTF-8 gets replacement characters,
/// and what commands terminals is escaped.
std::string JsonText(const nlohmann::ordered_json& json);

}  // namespace cli
