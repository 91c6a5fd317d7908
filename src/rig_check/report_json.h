// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "rig_check/rig_report.h"

namespace ts3d {

/// How every JSON text begins: the schema of docs/schemas/ that describes it, the version of that, which
/// grows when a member changes its meaning or goes, and the version of the tool.
nlohmann::ordered_json JsonHead(std::string_view schema, int version);

/// A message as all JSON has it, see docs/json.md.
nlohmann::ordered_json FindingAsJson(const Finding& finding);
nlohmann::ordered_json FindingsAsJson(const std::vector<Finding>& findings);

/// Whole text with a line end. Names are bytes of the model: what is no UTF-8 gets replacement characters,
/// and what commands terminals is escaped.
std::string JsonText(const nlohmann::ordered_json& json);

/// The report as JSON, see docs/check.md.
nlohmann::ordered_json ReportAsJson(const RigReport& report);

}  // namespace ts3d
