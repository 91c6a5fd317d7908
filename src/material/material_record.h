// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "scene/math/vector.h"

namespace ts3d {

/// What a material file says.
struct MaterialRecord {
  std::string name;                               ///< without extension
  scene::KFbxVector4 ambient, diffuse, specular;  ///< red, green, blue, 0..1
  double shininess = 0.3;
  double opacity = 1.0;  ///< 0..1
  bool hasMap = false;
  std::string mapName;
};

}  // namespace ts3d
