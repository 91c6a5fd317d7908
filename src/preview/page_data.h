// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "export/export_model.h"
#include "preview/vectors.h"

namespace preview {

/// What the page shows, as JSON that may stand inside a script element. web/src/actor.js reads it. Lists of
/// numbers are little-endian bytes in base64: f32, u32 or u16.
///  - title; stand: {side, up, front}
///  - bones: [{name, parent, origin: [x, y, z], rotation: [x, y, z, w]}], where they were bound
///  - textures: [{name, url}] with the picture as a data URL
///  - materials: [{name, colour: [r, g, b] from 0 to 255, texture: number or -1}], each look once
///  - meshes: [{name, material: number or -1, positions (f32), normals (f32), uvs (f32), faces (u32),
///    influenceCounts (u16, one for each vertex), influenceBones (u32), influenceWeights (f32)}]
/// @param up as FindStand takes it
std::string WritePageData(const actor::Actor& source, const std::string& title,
                          const actor::PictureEncoder& encode, const std::optional<Vector>& up);

}  // namespace preview
