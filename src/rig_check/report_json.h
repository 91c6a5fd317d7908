// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "rig_check/rig_report.h"

namespace ts3d {

/// A finding as docs/check.md describes it.
nlohmann::ordered_json FindingAsJson(const Finding& finding);

/// The report as JSON, see docs/check.md. Names are bytes of the model and need not be UTF-8.
nlohmann::ordered_json ReportAsJson(const RigReport& report);

}  // namespace ts3d
