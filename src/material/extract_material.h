// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "material/material_output.h"
#include "material/material_record.h"
#include "scene/model/material.h"

namespace ts3d {

/// What the material file `name` says for `material`, but for the name of its picture.
/// @param hasMap  whether the mesh has texture coordinates
MaterialRecord ReadMaterial(const std::string& name, const scene::KFbxSurfaceMaterial& material, bool hasMap,
                            const Settings& settings, const StatusChannel& status);

/// Writes the material file `name` for `material` and packs its diffuse texture.
/// @param hasMap  whether the mesh has texture coordinates
void WriteMaterial(const std::string& name, const scene::KFbxSurfaceMaterial& material, bool hasMap,
                   MaterialOutput& out);

/// Writes the material file `name` of a mesh without materials.
void WriteDefaultMaterial(const std::string& name, bool hasMap, MaterialOutput& out);

}  // namespace ts3d
