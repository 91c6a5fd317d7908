// SPDX-License-Identifier: MIT
#pragma once

#include "core/json_writer.h"
#include "prove/prove.h"

namespace prove {

/// The word for a verdict in JSON.
const char* NameOf(Verdict verdict);

/// Members of what programs and certificates get of a proof; docs/prove.md lists them.
void WriteProof(ts3d::JsonWriter& json, const Proof& proof);

}  // namespace prove
