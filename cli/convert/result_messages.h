// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "convert/model_result.h"

namespace cli {

/// All that is told of one model, the worst first: why it failed, coded status lines, what is lost, faults of
/// the rig, names that it does not have (notes: another model may have them), notes.
std::vector<ts3d::Finding> MessagesOf(const ModelResult& result);

/// A name that an option gives and that nothing has.
ts3d::Finding UnmatchedFinding(const UnmatchedOption& unmatched, ts3d::Severity severity);

}  // namespace cli
