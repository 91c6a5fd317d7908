// SPDX-License-Identifier: MIT
//
// What all JSON for programs has in common.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/finding.h"
#include "core/json_writer.h"

namespace ts3d {

/// How every JSON text begins: the schema of docs/schemas/ that describes it, the version of that, which
/// grows when a member changes its meaning or goes, and the version of the tool.
void WriteJsonHead(JsonWriter& json, std::string_view schema, int version);

/// A message as all JSON has it, see docs/json.md.
void WriteFinding(JsonWriter& json, const Finding& finding);
void WriteFindings(JsonWriter& json, const std::vector<Finding>& findings);

/// `json` as it is printed: with a line end, and what commands terminals is escaped.
std::string JsonText(std::string_view json);

}  // namespace ts3d
