// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "prove/prove.h"

namespace prove {

/// What programs and certificates get of a proof; docs/prove.md lists the fields.
nlohmann::ordered_json ProofAsJson(const Proof& proof);

}  // namespace prove
