// SPDX-License-Identifier: MIT
//
// "fbx2czp check" as a person or a script runs it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "support/character.h"
#include "support/temp_folder.h"

namespace {

using support::Character;
using support::Identity;

/// Runs the tool in `folder`. @return its exit status
int RunCheck(const support::TempFolder& folder, const std::string& arguments, std::string& output) {
  const std::string out = folder.Path() + ".out";
  const std::string command =
      "cd '" + folder.Path() + "' && '" FBX2CZP_PATH "' check " + arguments + " >'" + out + "' 2>&1";
  const int status = std::system(command.c_str());
  output = support::ReadWholeFile(out);
  std::filesystem::remove(out);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

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

TEST(CheckCommand, ExitsWithTheWorstModelAndWritesNothing) {
  const support::TempFolder folder;
  std::string output;
  folder.Write("sound.fbx", Model("skin.tga"));
  folder.Write("skin.tga", std::string("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0abc", 21));
  folder.Write("lost.fbx", Model("nowhere.png"));
  folder.Write("fake.fbx", Model("fake.png"));
  folder.Write("fake.png", "no picture");
  folder.Write("text.fbx", "no model");
  EXPECT_EQ(RunCheck(folder, "sound.fbx", output), 0) << output;
  EXPECT_NE(output.find("Body: 3 vertices, 1 triangle, material \"material\", picture skin.tga\n"),
            std::string::npos)
      << output;
  EXPECT_EQ(output.find("==="), std::string::npos);
  EXPECT_EQ(RunCheck(folder, "-q sound.fbx lost.fbx fake.fbx", output), 1);
  EXPECT_NE(output.find("fbx2czp: lost.fbx: warning: texture \"nowhere.tga\": "), std::string::npos)
      << output;
  EXPECT_NE(output.find("[texture-unreadable]\n    Fix: "), std::string::npos) << output;
  EXPECT_EQ(output.find("sound.fbx"), std::string::npos) << "notes are not shown";
  EXPECT_EQ(RunCheck(folder, "text.fbx missing.fbx sound.fbx", output), 2);
  EXPECT_EQ(RunCheck(folder, "", output), 64);
  std::filesystem::create_directories(folder.Path("empty"));
  EXPECT_EQ(RunCheck(folder, "empty", output), 64);
  EXPECT_EQ(RunCheck(folder, ". empty sound.fbx", output), 2);
  size_t at = 0;
  for (const char* name : {"fake.fbx", "lost.fbx", "sound.fbx", "text.fbx", "sound.fbx"}) {
    at = output.find("=== " + std::string(name) + "\n", at);
    ASSERT_NE(at, std::string::npos) << name << output;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 7);
}

TEST(CheckCommand, PrintsJsonWhateverTheNamesHold) {
  const support::TempFolder folder;
  std::string output;
  folder.Write("odd.fbx", Model("nowhere.png", "b\xff\x1b[31m"));
  folder.Write("text.fbx", "no model");
  EXPECT_EQ(RunCheck(folder, "odd.fbx", output), 1);
  EXPECT_EQ(output.find('\x1b'), std::string::npos);
  EXPECT_EQ(RunCheck(folder, "--json odd.fbx text.fbx", output), 2);
  const auto json = nlohmann::json::parse(output);
  EXPECT_EQ(json["version"], 1);
  EXPECT_EQ(json["models"][0]["result"], "warning");
  EXPECT_EQ(json["models"][0]["meshes"][0]["triangles"], 1);
  EXPECT_EQ(json["models"][0]["findings"][0]["code"], "texture-missing");
  EXPECT_EQ(json["models"][0]["members"][1], "skeleton.csf");
  EXPECT_EQ(json["models"][1]["findings"][0]["severity"], "fatal");
}

}  // namespace
