// SPDX-License-Identifier: MIT
#include "scene/gltf/read_materials.h"

#include <algorithm>

#include "scene/gltf/json_value.h"
#include "scene/math/angles.h"

namespace scene::gltf {
namespace {

/// The picture of a texture; those of extensions come before the one for programs that lack them.
uint32_t ImageOf(JsonValue use, JsonValue textures, size_t imageCount) {
  const uint32_t index = use["index"].Index(textures.size(), "texture");
  if (index == kNone) return kNone;
  const JsonValue texture = textures.At(index);
  const JsonValue webp = texture["extensions"]["EXT_texture_webp"]["source"];
  const JsonValue source = texture["source"];
  return (webp     ? webp
          : source ? source
                   : texture["extensions"]["KHR_texture_basisu"]["source"])
      .Index(imageCount, "image");
}

uint32_t ReadSet(JsonValue set) { return static_cast<uint32_t>(std::min<uint64_t>(set.Count(), kNone - 1)); }

CoordinateTransform ReadCoordinateTransform(JsonValue transform) {
  std::vector<double> offset = transform["offset"].Numbers(), scale = transform["scale"].Numbers();
  offset.resize(2, 0);
  scale.resize(2, 1);
  const auto [sine, cosine] = SinCos(transform["rotation"].Number(0));
  return {cosine * scale[0], sine * scale[1], offset[0], -sine * scale[0], cosine * scale[1], offset[1]};
}

void ReadCoordinates(JsonValue use, Material& material) {
  material.coordinates = ReadSet(use["texCoord"]);
  const JsonValue transform = use["extensions"]["KHR_texture_transform"];
  if (!transform) return;
  if (const JsonValue set = transform["texCoord"]) material.coordinates = ReadSet(set);
  material.transform = ReadCoordinateTransform(transform);
}

template <size_t N>
void CopyFirst(const std::vector<double>& numbers, std::array<double, N>& to) {
  std::copy_n(numbers.begin(), std::min(numbers.size(), N), to.begin());
}

/// The base colour of the usual materials, or the diffuse one of those before them.
Material ReadMaterial(JsonValue material, JsonValue textures, size_t imageCount) {
  Material result;
  result.name = material["name"].Name();
  result.isBlended = material["alphaMode"].Text() == "BLEND";
  CopyFirst(material["emissiveFactor"].Numbers(), result.emissive);
  const JsonValue metallic = material["pbrMetallicRoughness"];
  const JsonValue diffuse = material["extensions"]["KHR_materials_pbrSpecularGlossiness"];
  CopyFirst((diffuse ? diffuse["diffuseFactor"] : metallic["baseColorFactor"]).Numbers(), result.colour);
  const JsonValue use = diffuse ? diffuse["diffuseTexture"] : metallic["baseColorTexture"];
  result.image = ImageOf(use, textures, imageCount);
  ReadCoordinates(use, result);
  return result;
}

}  // namespace

std::vector<Image> ReadImages(JsonValue images, size_t viewCount) {
  return ReadList<Image>(images, [&](JsonValue image) {
    return Image{image["name"].Name(), image["uri"].Text(), image["mimeType"].Text(),
                 image["bufferView"].Index(viewCount, "buffer view")};
  });
}

std::vector<Material> ReadMaterials(JsonValue materials, JsonValue textures, size_t imageCount) {
  return ReadList<Material>(materials,
                            [&](JsonValue material) { return ReadMaterial(material, textures, imageCount); });
}

}  // namespace scene::gltf
