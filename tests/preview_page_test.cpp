// SPDX-License-Identifier: MIT
//
// The data of the page.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "preview/base64.h"
#include "preview/page_data.h"
#include "support/actors.h"

namespace {

using nlohmann::json;

actor::EncodedPicture AsPng(const actor::Picture&) { return {"PNG", actor::Opacity::Opaque}; }

TEST(PreviewPage, NumbersAreLittleEndianInBase64) {
  EXPECT_EQ(preview::ToBase64(""), "");
  EXPECT_EQ(preview::ToBase64("M"), "TQ==");
  EXPECT_EQ(preview::ToBase64("Ma"), "TWE=");
  EXPECT_EQ(preview::ToBase64("\xfb\xff\xfe"), "+//+");
  preview::NumberBytes bytes;
  bytes.Add(uint16_t{0x0102});
  bytes.Add(1.0f);
  EXPECT_EQ(bytes.Bytes(), std::string("\x02\x01\0\0\x80\x3f", 6));
}

TEST(PreviewPage, MeshesOfOneLookShareAMaterial) {
  actor::Actor actor;
  for (const char* name : {"a", "b", "c", "d", "e"}) {
    actor.meshes.push_back(support::Square(name));
    actor.materials.push_back(support::Plain(name, {1, 2, 3, 0}));
  }
  for (const size_t i : {1u, 2u}) {
    actor.materials[i].hasMap = true;
    actor.materials[i].map = "fields.tga";
  }
  actor.materials[3].diffuse[0] = 9;
  actor.materials.pop_back();
  actor.pictures = {{"fields.tga", ""}};
  const json data = json::parse(preview::WritePageData(actor, "", AsPng, std::nullopt));
  std::vector<int> materials;
  for (const json& mesh : data["meshes"]) materials.push_back(mesh["material"]);
  EXPECT_EQ(materials, (std::vector<int>{0, 1, 1, 2, -1}));
  EXPECT_EQ(data["textures"].size(), 1u);
  EXPECT_EQ(data["textures"][0]["url"], "data:image/png;base64,UE5H");
}

TEST(PreviewPage, NothingThatAnActorHoldsLeavesItsPlace) {
  const std::string text =
      preview::WritePageData(support::HostileActor(), "</script>\xfe", AsPng, std::nullopt);
  EXPECT_EQ(text.find('<'), std::string::npos);
  const json data = json::parse(text);
  EXPECT_EQ(data["meshes"][0]["name"], "</script>");
  for (size_t i = 0; i < data["bones"].size(); ++i) {
    EXPECT_LT(data["bones"][i]["parent"].get<int>(), static_cast<int>(i));
    for (const json& number : data["bones"][i]["rotation"]) EXPECT_TRUE(number.is_number());
  }
  // Of the faces those with sound corners stay, of the influences the one that leads to a bone.
  EXPECT_EQ(data["meshes"][0]["faces"].get<std::string>().size(), 4u * 3u * 4u / 3u * 4u);
  EXPECT_EQ(data["meshes"][0]["influenceBones"], "");
}

}  // namespace
