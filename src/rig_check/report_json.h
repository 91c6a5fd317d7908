// SPDX-License-Identifier: MIT
#pragma once

#include "core/json_writer.h"
#include "rig_check/rig_report.h"

namespace ts3d {

/// Members of the report, see docs/check.md.
void WriteReport(JsonWriter& json, const RigReport& report);

}  // namespace ts3d
