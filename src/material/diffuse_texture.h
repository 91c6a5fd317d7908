// SPDX-License-Identifier: MIT
#pragma once

#include "core/settings.h"
#include "scene/model/material.h"

namespace ts3d {

/// The property of `material` whose texture is its picture; null when there is none. With
/// Settings::findsBaseColours one of another name serves when "DiffuseColor" has no texture.
const scene::KFbxProperty* DiffuseProperty(const scene::KFbxSurfaceMaterial& material,
                                           const Settings& settings);

/// The first texture of DiffuseProperty; null when there is none or it is no picture file.
const scene::KFbxTexture* DiffuseTexture(const scene::KFbxSurfaceMaterial& material,
                                         const Settings& settings);

}  // namespace ts3d
