// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace cli {

/// The date that members of packages get in place of those of their files: that of the environment variable
/// SOURCE_DATE_EPOCH (seconds since 1970), in UTC, as a DOS date and time. None when it is not set.
/// @throws Failure when it is no such number
std::optional<uint32_t> SourceDate();

}  // namespace cli
