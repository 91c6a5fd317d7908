// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "scene/model/material.h"
#include "support/load_scene.h"

namespace {

using support::FbxFile;
using support::FbxRecord;
using support::FbxRecords;
using support::Ints;

FbxRecord Element(std::string type, const char* mapping, FbxRecord array) {
  return {std::move(type), {0}, {{"MappingInformationType", {mapping}}, std::move(array)}};
}

/// Diffuse textures of both materials ("M" and "N") of a node with the textures "t" and "u", on a mesh of
/// three polygons with these elements; as "M:t u N:".
std::string TexturesOfMaterials(FbxRecords elements, bool ownTexture = false) {
  FbxFile file;
  file.Model(1, "node");
  FbxRecord& mesh = file.Mesh(2, {0, 0, 0, 1, 0, 0, 1, 1, 0}, {0, 1, -3, 0, 1, -3, 0, 1, -3});
  for (FbxRecord& element : elements) mesh.Add(std::move(element));
  file.Material(3, "M", "phong");
  file.Material(4, "N", "phong");
  file.Object("Texture", 5, "t");
  file.Object("Texture", 6, "u");
  file.Object("Texture", 7, "own");
  for (const auto& [source, destination] : {std::pair{1, 0}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}}) {
    file.Connect(source, destination);
  }
  if (ownTexture) file.Connect(7, 3, "DiffuseColor");
  const auto scene = support::LoadScene(file);
  const scene::KFbxNode& node = *support::FindNode(*scene, "node");
  std::string text;
  for (int i = 0; i < 2; ++i) {
    const scene::KFbxSurfaceMaterial& material = *node.GetMaterial(i);
    text += material.GetName() + ":";
    const scene::KFbxProperty* diffuse = material.FindProperty("DiffuseColor");
    for (int k = 0; diffuse && k < diffuse->GetSrcTextureCount(); ++k)
      text += diffuse->GetSrcTexture(k)->GetName();
    text += i == 0 ? " " : "";
  }
  return text;
}

TEST(OldTextures, OneTextureForAllPolygonsGoesToAllMaterials) {
  EXPECT_EQ(TexturesOfMaterials({Element("LayerElementTexture", "AllSame", Ints("TextureId", {1}))}),
            "M:u N:u");
}

TEST(OldTextures, ATextureByPolygonGoesToTheMaterialOfItsPolygonOnce) {
  const FbxRecord materials = Element("LayerElementMaterial", "ByPolygon", Ints("Materials", {1, 0, 1}));
  EXPECT_EQ(TexturesOfMaterials(
                {materials, Element("LayerElementTexture", "ByPolygon", Ints("TextureId", {1, 0, 1}))}),
            "M:t N:u");
  EXPECT_EQ(TexturesOfMaterials(
                {materials, Element("LayerElementTexture", "ByPolygon", Ints("TextureId", {1, 0, 0}))}),
            "M:t N:ut");
}

TEST(OldTextures, WithoutPolygonMaterialsTheFirstOneIsMeant) {
  EXPECT_EQ(TexturesOfMaterials({Element("LayerElementTexture", "ByPolygon", Ints("TextureId", {1, 1, 1}))}),
            "M:u N:");
}

TEST(OldTextures, AMaterialKeepsTexturesOfItsOwn) {
  EXPECT_EQ(TexturesOfMaterials({Element("LayerElementTexture", "AllSame", Ints("TextureId", {0}))}, true),
            "M:own N:t");
}

TEST(OldTextures, NumbersThatMeanNoTextureOrMaterialAreIgnored) {
  const FbxRecord materials = Element("LayerElementMaterial", "ByPolygon", Ints("Materials", {-1, 0, 2}));
  EXPECT_EQ(TexturesOfMaterials(
                {materials, Element("LayerElementTexture", "ByPolygon", Ints("TextureId", {0, -1, 0}))}),
            "M: N:");
  EXPECT_EQ(TexturesOfMaterials({Element("LayerElementTexture", "AllSame", Ints("TextureId", {2}))}),
            "M: N:");
  EXPECT_EQ(TexturesOfMaterials({Element("LayerElementTexture", "AllSame", Ints("TextureId", {}))}), "M: N:");
  EXPECT_EQ(
      TexturesOfMaterials({Element("LayerElementTexture", "NoMappingInformation", Ints("TextureId", {0}))}),
      "M: N:");
  EXPECT_EQ(TexturesOfMaterials({}), "M: N:");
}

}  // namespace
