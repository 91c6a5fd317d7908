// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/bytes.h"
#include "scene/gltf/record_writer.h"

namespace scene::gltf {

/// Writes the morph targets of the mesh of `node` that are on, by name and weight, into the geometry that is open. What
/// they move is in its points already.
/// @throws Fault
void WriteShapes(const Document& document, const Node& node, Budget& budget, RecordWriter& writer);

}  // namespace scene::gltf
