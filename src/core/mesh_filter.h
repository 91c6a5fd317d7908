// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "core/conversion_job.h"

namespace ts3d {

/// Whether `name` is on the job's exclusion list.
bool IsExcluded(std::string_view name, const ConversionJob& job);

/// Whether the mesh or material `name` must be left out: it is on the job's exclusion list, or it names a
/// head part and the model is a known actor, whose head the product supplies.
bool skipThisMesh(std::string_view name, const ConversionJob& job);

}  // namespace ts3d
