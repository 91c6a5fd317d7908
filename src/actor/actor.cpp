// SPDX-License-Identifier: MIT
#include "actor/actor.h"

#include <algorithm>

#include "core/names.h"

namespace actor {

const Material* Actor::MaterialOf(const Mesh& mesh) const {
  const auto found = std::find_if(materials.begin(), materials.end(), [&](const Material& material) {
    return ts3d::EqualsIgnoreCase(material.name, mesh.name);
  });
  return found == materials.end() ? nullptr : &*found;
}

const Picture* Actor::FindPicture(const std::string& memberName) const {
  const auto found = std::find_if(pictures.begin(), pictures.end(), [&](const Picture& picture) {
    return ts3d::EqualsIgnoreCase(picture.name, memberName);
  });
  return found == pictures.end() ? nullptr : &*found;
}

}  // namespace actor
