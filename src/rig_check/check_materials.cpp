// SPDX-License-Identifier: MIT
#include "material/diffuse_texture.h"
#include "material/extract_material.h"
#include "rig_check/bone_places.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"

namespace ts3d {
namespace {

using scene::KFbxProperty;
using scene::KFbxSurfaceMaterial;
using scene::KFbxTexture;

bool IsOutside(const scene::KFbxVector4& colour) {
  for (size_t i = 0; i < 3; ++i) {
    if (!(colour[i] >= 0.0 && colour[i] <= 1.0)) return true;
  }
  return false;
}

void TellColours(const KFbxSurfaceMaterial& material, const MaterialRecord& record, RigCheck& check) {
  const std::string& name = material.GetName();
  if (check.notices.Count(Notice::UnknownMaterial) > 0) check.report.Add(findings::kUnknownMaterial, name);
  if (record.opacity == 0.0) {
    check.report.Add(findings::kOpacityZero, name);
  } else if (record.opacity != 1.0) {
    check.report.Add(findings::kOpacityPartial, name, {ShortNumber(record.opacity)});
  }
  if (IsOutside(record.ambient) || IsOutside(record.diffuse) || IsOutside(record.specular)) {
    check.report.Add(findings::kColourRange, name);
  }
}

void TellOtherMaps(const KFbxSurfaceMaterial& material, RigCheck& check) {
  static constexpr std::pair<const char*, const char*> kMaps[] = {{"NormalMap", "normals"},
                                                                  {"Bump", "bumps"},
                                                                  {"SpecularColor", "shine"},
                                                                  {"SpecularFactor", "shine"},
                                                                  {"ShininessExponent", "shine"},
                                                                  {"TransparentColor", "transparency"},
                                                                  {"TransparencyFactor", "transparency"},
                                                                  {"EmissiveColor", "glow"},
                                                                  {"EmissiveFactor", "glow"},
                                                                  {"AmbientColor", "ambient light"},
                                                                  {"ReflectionColor", "reflections"},
                                                                  {"ReflectionFactor", "reflections"},
                                                                  {"DisplacementColor", "displacement"}};
  for (const auto& [property, use] : kMaps) {
    if (material.FindProperty(property)) check.report.Add(findings::kMapsIgnored, material.GetName(), {use});
  }
}

UsedTexture Describe(const KFbxTexture& texture, const std::string& source) {
  UsedTexture used{
      texture.GetFileName(), texture.GetRelativeFileName(), TgaName(source), false, texture.IsEmbedded(), {}};
  used.isTga = source.ends_with(used.tgaName);
  return used;
}

/// Notes that `material` uses `texture`. @return the picture's name in the package
std::string Use(const KFbxTexture& texture, const KFbxSurfaceMaterial& material, RigCheck& check) {
  auto& textures = check.report.textures;
  const std::string& source =
      texture.GetFileName().empty() ? texture.GetRelativeFileName() : texture.GetFileName();
  if (source.empty()) check.report.Add(findings::kTextureNameless, material.GetName());
  const auto [entry, isNew] = check.textureOf.try_emplace(source, textures.size());
  if (isNew) textures.push_back(Describe(texture, source));
  std::vector<std::string>& users = textures[entry->second].materials;
  if (users.empty() || users.back() != material.GetName()) users.push_back(material.GetName());
  return textures[entry->second].tgaName;
}

}  // namespace

std::string CheckMaterial(const KFbxSurfaceMaterial& material, bool hasMap, RigCheck& check) {
  check.notices.Clear();
  TellColours(material, ReadMaterial(material.GetName(), material, hasMap, check.settings, check.status),
              check);
  TellOtherMaps(material, check);
  const KFbxProperty* diffuse = DiffuseProperty(material, check.settings);
  if (!diffuse) return {};
  const KFbxTexture* texture = DiffuseTexture(material, check.settings);
  if (!texture) check.report.Add(findings::kNotAPicture, material.GetName());
  const scene::KFbxLayeredTexture* layers = diffuse->GetSrcLayers(0);
  const int count = layers ? layers->GetLayerCount() : diffuse->GetSrcTextureCount();
  if (texture && count > 1) {
    check.report.Add(findings::kSeveralTextures, material.GetName(), {std::to_string(count)});
  }
  return texture && hasMap ? Use(*texture, material, check) : std::string();
}

}  // namespace ts3d
