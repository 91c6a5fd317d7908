// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "results/model_result.h"

namespace cli {

/// All that is told of one model, the worst first: why it failed, coded status lines, what is lost, faults of
/// the rig, names that it does not have (notes: another model may have them), notes.
std::vector<ts3d::Finding> MessagesOf(const ModelResult& result);

/// Whether a message of MessagesOf is one of the losses of a result.
bool IsLoss(const ts3d::Finding& message);

/// A name that an option gives and that nothing has.
ts3d::Finding UnmatchedFinding(const UnmatchedOption& unmatched, ts3d::Severity severity);

}  // namespace cli
