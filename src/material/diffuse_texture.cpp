// SPDX-License-Identifier: MIT
#include "material/diffuse_texture.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace ts3d {
namespace {

/// What programs call the base colour of their shaders, the surest first, as Plain leaves it.
constexpr std::string_view kBaseColours[] = {
    "diffusecolor",       "basecolor",       "basecolormap",        "basecolortexture",
    "basecolortex",       "basecolorshader", "texcolormap",         "texbasecolormap",
    "texalbedomap",       "texdiffusemap",   "texmapbasecolor",     "albedo",
    "albedomap",          "albedotexture",   "albedocolor",         "diffuse",
    "diffusemap",         "diffusetexture",  "diffusetex",          "diffusecolormap",
    "diffusecolorshader", "texmapdiffuse",   "diffusecolortexture", "basemap",
    "basetexture",        "basetexmap",      "albedotex",           "maintex",
    "maintexture",        "colormap",        "colortexture",        "color"};

/// "3dsMax|Parameters|base_color_map" without the program and its spelling: "basecolormap".
std::string Plain(std::string_view property) {
  std::string plain;
  for (const char c : property.substr(property.rfind('|') + 1)) {
    if (c >= 'A' && c <= 'Z') plain += static_cast<char>(c - 'A' + 'a');
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain += c;
  }
  return plain;
}

/// Its first texture or, where that is a stack of layers, the lowest picture in it.
const scene::KFbxTexture* PictureOf(const scene::KFbxProperty& property) {
  const scene::KFbxLayeredTexture* layers = property.GetSrcLayers(0);
  return layers ? layers->GetBaseTexture() : property.GetSrcTexture(0);
}

const scene::KFbxProperty* BaseColour(const scene::KFbxSurfaceMaterial& material) {
  const scene::KFbxProperty* best = nullptr;
  auto bestRank = std::end(kBaseColours);
  for (const auto& [name, property] : material.GetTexturedProperties()) {
    const auto rank = std::find(std::begin(kBaseColours), bestRank, Plain(name));
    if (rank == bestRank || !PictureOf(property)) continue;
    best = &property;
    bestRank = rank;
  }
  return best;
}

}  // namespace

const scene::KFbxProperty* DiffuseProperty(const scene::KFbxSurfaceMaterial& material,
                                           const Settings& settings) {
  const scene::KFbxProperty* diffuse = material.FindProperty("DiffuseColor");
  if (diffuse && diffuse->GetSrcTextureCount() > 0) return diffuse;
  return settings.findsBaseColours ? BaseColour(material) : nullptr;
}

const scene::KFbxTexture* DiffuseTexture(const scene::KFbxSurfaceMaterial& material,
                                         const Settings& settings) {
  const scene::KFbxProperty* property = DiffuseProperty(material, settings);
  if (!property) return nullptr;
  return settings.findsBaseColours ? PictureOf(*property) : property->GetSrcTexture(0);
}

}  // namespace ts3d
