// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/file_system.h"

namespace cli {

/// Why a conversion must not replace what is at `package` unasked: it holds what no conversion writes. Empty
/// when nothing is there, or a package of ours, also with final settings.
std::string WhyForeign(const platform::fs::path& package);

}  // namespace cli
