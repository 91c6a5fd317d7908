// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "driver/conversion_job.h"
#include "settings/finish_settings.h"

namespace cli {

/// Applies the settings to the document and package that the conversion of `model` left. Meshes and bones
/// that they do not name stay as they are. `job` knows the skeleton when it has run that conversion.
/// @param document  to start from; none: the one on the disk
/// @return the result code
int ApplyFinishSettings(const std::string& model, const FinishSettings& settings,
                        const std::optional<std::string>& document, ts3d::ConversionJob& job);

}  // namespace cli
