// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"
#include "scene/model/material.h"

namespace ts3d {

/// The property of `material` whose texture is its picture; null when there is none. With
/// ConversionJob::findsBaseColours one of another name serves when "DiffuseColor" has no texture.
const scene::KFbxProperty* DiffuseProperty(const scene::KFbxSurfaceMaterial& material,
                                           const ConversionJob& job);

/// The first texture of DiffuseProperty; null when there is none or it is no picture file.
const scene::KFbxTexture* DiffuseTexture(const scene::KFbxSurfaceMaterial& material,
                                         const ConversionJob& job);

}  // namespace ts3d
