// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/conversion_job.h"
#include "material/material_record.h"
#include "package/actor_package.h"
#include "scene/model/material.h"

namespace ts3d {

/// What the material file `name` says for `material`, but for the name of its picture.
/// @param hasMap  whether the mesh has texture coordinates
MaterialRecord ReadMaterial(const std::string& name, const scene::KFbxSurfaceMaterial& material, bool hasMap,
                            const ConversionJob& job);

/// Writes the material file `name` for `material` and packs its diffuse texture.
/// @param hasMap  whether the mesh has texture coordinates
void WriteMaterial(const std::string& name, const scene::KFbxSurfaceMaterial& material, bool hasMap,
                   ConversionJob& job, ActorPackage& package);

/// Writes the material file `name` of a mesh without materials.
void WriteDefaultMaterial(const std::string& name, bool hasMap, ConversionJob& job);

}  // namespace ts3d
