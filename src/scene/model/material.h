// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <vector>

#include "scene/math/vector.h"
#include "scene/model/object.h"
#include "scene/model/texture.h"

namespace scene {

/// A property of a material and the textures connected to it.
struct KFbxProperty {
  std::vector<KFbxObject*> textures;  ///< in connection order; file textures and layered ones

  int GetSrcTextureCount() const { return static_cast<int>(textures.size()); }
  /// Texture `i` when it is a file texture, else null.
  KFbxTexture* GetSrcTexture(int i) const {
    return dynamic_cast<KFbxTexture*>(textures[static_cast<size_t>(i)]);
  }
  /// Texture `i` when it is a stack of layers, else null.
  KFbxLayeredTexture* GetSrcLayers(int i) const {
    return dynamic_cast<KFbxLayeredTexture*>(textures[static_cast<size_t>(i)]);
  }
};

/// A material of any shading model.
class KFbxSurfaceMaterial : public KFbxObject {
 public:
  using KFbxObject::KFbxObject;

  /// The property `name`, or null when the material has no such property.
  const KFbxProperty* FindProperty(std::string_view name) const {
    const auto found = properties_.find(name);
    return found == properties_.end() ? nullptr : &found->second;
  }
  /// The properties that have textures, at least one each, by name.
  const std::map<KString, KFbxProperty, std::less<>>& GetTexturedProperties() const { return properties_; }
  void ConnectTexture(std::string_view propertyName, KFbxObject& texture) {
    properties_[KString(propertyName)].textures.push_back(&texture);
  }

 private:
  std::map<KString, KFbxProperty, std::less<>> properties_;  ///< those with textures
};

/// The colours and factors as the file or its template gives
/// them: colours 0..1, not multiplied by their factors.
class KFbxSurfaceLambert : public KFbxSurfaceMaterial {
 public:
  using KFbxSurfaceMaterial::KFbxSurfaceMaterial;

  KFbxVector4 ambient, diffuse, emissive;
  double transparencyFactor = 0.0;
};

/// Not derived from the Lambert class: a material passes one of the two class tests at most.
class KFbxSurfacePhong : public KFbxSurfaceMaterial {
 public:
  using KFbxSurfaceMaterial::KFbxSurfaceMaterial;

  KFbxVector4 ambient, diffuse, specular, emissive;
  double transparencyFactor = 0.0;
  double shininess = 0.0;
};

}  // namespace scene
