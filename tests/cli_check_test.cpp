// SPDX-License-Identifier: MIT
//
// "fbx2czp check" as a person or a script runs it.
#include <nlohmann/json.hpp>

#include "support/character.h"
#include "support/tool.h"

namespace {

using support::Character;
using support::Identity;
using CheckCommand = support::Tool;

/// A bound triangle, and the material `material` with the picture `picture`.
std::string Model(const std::string& picture, const std::string& bone = "root") {
  Character model;
  const auto root = model.Bone(bone);
  auto body = model.Triangle("Body");
  model.Weights(body, root, {0, 1, 2}, {1, 1, 1});
  Character::Coordinates(body, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
  model.Texture(model.Material(body), picture);
  model.BindPose({{root, Identity()}, {body.node, Identity()}});
  return model.Text();
}

TEST_F(CheckCommand, ExitsWithTheWorstModelAndWritesNothing) {
  folder_.Write("sound.fbx", Model("skin.tga"));
  folder_.Write("skin.tga", std::string("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0abc", 21));
  folder_.Write("lost.fbx", Model("nowhere.png"));
  folder_.Write("fake.fbx", Model("fake.png"));
  folder_.Write("fake.png", "no picture");
  folder_.Write("text.fbx", "no model");
  EXPECT_EQ(Run("check sound.fbx"), 0) << output_;
  EXPECT_NE(output_.find("Body: 3 vertices, 1 triangle, material \"material\", picture skin.tga\n"),
            std::string::npos)
      << output_;
  EXPECT_EQ(output_.find("==="), std::string::npos);
  EXPECT_EQ(Run("check -q sound.fbx lost.fbx fake.fbx"), 1);
  EXPECT_NE(output_.find("fbx2czp: lost.fbx: warning: texture \"nowhere.tga\": "), std::string::npos)
      << output_;
  EXPECT_NE(output_.find("[texture-unreadable]\n    Fix: "), std::string::npos) << output_;
  EXPECT_EQ(output_.find("sound.fbx"), std::string::npos) << "notes are not shown";
  EXPECT_EQ(Run("check text.fbx missing.fbx sound.fbx"), 2);
  EXPECT_TRUE(output_.ends_with("\n3 models: 1 sound, 0 with warnings, 2 that cannot be converted\n"))
      << output_;
  EXPECT_EQ(Run("check"), 64);
  std::filesystem::create_directories(folder_.Path("empty"));
  EXPECT_EQ(Run("check empty"), 66);
  EXPECT_EQ(Run("check . empty sound.fbx"), 2);
  size_t at = 0;
  for (const char* name : {"fake.fbx", "lost.fbx", "sound.fbx", "text.fbx", "sound.fbx"}) {
    at = output_.find("=== " + std::string(name) + "\n", at);
    ASSERT_NE(at, std::string::npos) << name << output_;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 7);
}

TEST_F(CheckCommand, WritesNothingWhenItTriesRepairsEither) {
  Character model;
  model.Bone("root");
  const auto second = model.Bone("second");
  auto body = model.Triangle("Body");
  model.Weights(body, second, {0, 1, 2}, {1, 1, 1});
  Character::Coordinates(body, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
  model.Texture(model.Material(body), "skin.png");
  model.Embed("skin.png", "AAAA");
  folder_.Write("two.fbx", model.Text());
  EXPECT_EQ(Run("check two.fbx"), 1) << output_;
  EXPECT_NE(output_.find("[repair-"), std::string::npos) << output_;
  EXPECT_EQ(folder_.Names(), "two.fbx");
}

TEST_F(CheckCommand, PrintsJsonWhateverTheNamesHold) {
  folder_.Write("odd.fbx", Model("nowhere.png", "b\xff\x1b[31m"));
  folder_.Write("text.fbx", "no model");
  EXPECT_EQ(Run("check odd.fbx"), 1);
  EXPECT_EQ((output_ + errors_).find('\x1b'), std::string::npos);
  EXPECT_EQ(Run("check --json odd.fbx text.fbx"), 2);
  const auto json = nlohmann::json::parse(output_);
  EXPECT_EQ(json["models"][0]["result"], "warning");
  EXPECT_EQ(json["models"][0]["meshes"][0]["triangles"], 1);
  EXPECT_EQ(json["models"][0]["messages"][0]["code"], "texture-missing");
  EXPECT_EQ(json["models"][0]["members"][1], "skeleton.csf");
  EXPECT_EQ(json["models"][1]["messages"][0]["severity"], "error");
}

}  // namespace
