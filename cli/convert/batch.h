// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "convert/convert_model.h"

namespace cli {

/// Converts each of several models in a process of its own, as many at a time as `options` says, and tells of
/// each when it is done. Interrupted, it ends the running ones and leaves nothing of them.
/// @param signal  what has interrupted it, or 0
/// @return results in the order of `tasks`; of an interrupted batch only the finished ones
std::vector<ModelResult> ConvertAll(const std::vector<ModelTask>& tasks, const ConvertOptions& options,
                                    const std::optional<FinishSettings>& finish, int& signal);

}  // namespace cli
