// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "proof/prove_model.h"

namespace cli {

/// Prints a proof for a person.
/// @param quiet  only what is beyond the limit
void PrintProof(const ProvenModel& model, bool quiet);

/// All proofs for programs; ends with a line end.
std::string ProofsAsJson(const std::vector<ProvenModel>& models);

}  // namespace cli
