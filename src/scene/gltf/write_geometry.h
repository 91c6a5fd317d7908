// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/geometry.h"
#include "scene/gltf/object_links.h"

namespace scene::gltf {

/// Writes the points, triangles, texture coordinates and materials of the mesh that `node` wears.
/// @param geometry  stays as long as the records
/// @return its identifier
/// @throws Fault
int64_t WriteGeometry(const Document& document, const Node& node, const Geometry& geometry, Budget& budget,
                      RecordWriter& writer, ObjectLinks& links);

}  // namespace scene::gltf
