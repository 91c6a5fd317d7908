// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "scene/model/material.h"
#include "support/load_scene.h"

namespace {

using support::FbxFile;
using support::FbxRecord;
using support::FbxRecords;
using support::Ints;
using support::LayerElement;

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
  file.Connect({{1, 0}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}});
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

FbxRecord Textures(const char* mapping, std::vector<double> ids) {
  return LayerElement("LayerElementTexture", 0, mapping, "IndexToDirect",
                      {Ints("TextureId", std::move(ids))});
}

FbxRecord Materials(std::vector<double> numbers) {
  return LayerElement("LayerElementMaterial", 0, "ByPolygon", "IndexToDirect",
                      {Ints("Materials", std::move(numbers))});
}

TEST(OldTextures, OneTextureForAllPolygonsGoesToAllMaterialsWithoutTexturesOfTheirOwn) {
  EXPECT_EQ(TexturesOfMaterials({Textures("AllSame", {1})}), "M:u N:u");
  EXPECT_EQ(TexturesOfMaterials({Textures("AllSame", {0})}, true), "M:own N:t");
}

TEST(OldTextures, ATextureByPolygonGoesToTheMaterialOfItsPolygonOnce) {
  EXPECT_EQ(TexturesOfMaterials({Materials({1, 0, 1}), Textures("ByPolygon", {1, 0, 1})}), "M:t N:u");
  EXPECT_EQ(TexturesOfMaterials({Materials({1, 0, 1}), Textures("ByPolygon", {1, 0, 0})}), "M:t N:ut");
  EXPECT_EQ(TexturesOfMaterials({Textures("ByPolygon", {1, 1, 1})}), "M:u N:") << "no polygon materials";
}

TEST(OldTextures, NumbersThatMeanNoTextureOrMaterialAreIgnored) {
  EXPECT_EQ(TexturesOfMaterials({Materials({-1, 0, 2}), Textures("ByPolygon", {0, -1, 0})}), "M: N:");
  EXPECT_EQ(TexturesOfMaterials({Textures("AllSame", {2})}), "M: N:");
  EXPECT_EQ(TexturesOfMaterials({Textures("AllSame", {})}), "M: N:");
  EXPECT_EQ(TexturesOfMaterials({Textures("NoMappingInformation", {0})}), "M: N:");
}

}  // namespace
