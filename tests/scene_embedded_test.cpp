// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>

#include "scene/model/texture.h"
#include "scene/readers/embedded_files.h"
#include "support/load_scene.h"
#include "support/temp_folder.h"

namespace {

using support::Container;
using support::FbxFile;
using support::FbxValue;
using support::FbxValues;
using support::ReadWholeFile;
using support::TempFolder;

/// A texture with a video of this file name and content.
FbxFile FileWithVideo(const std::string& fileName, FbxValues content) {
  FbxFile file;
  file.Object("Texture", 1, "t").Add({"FileName", {"as in the file"}});
  support::FbxRecord& video = file.Object("Video", 2, "v", "Clip");
  video.Add({"Filename", {fileName}});
  video.Add({"Content", std::move(content)});
  file.Connect(2, 1);
  return file;
}

/// Extracts the pictures of `file` as of the model "model.fbx" in `folder`; the texture's file name then.
std::string ExtractTo(const TempFolder& folder, const FbxFile& file,
                      Container container = Container::Binary) {
  const auto scene = support::LoadScene(file, container);
  scene::ExtractEmbeddedFiles(*scene, folder.Path("model.fbx"), true);
  std::string name;
  scene->ForEach<scene::KFbxTexture>(
      [&](const scene::KFbxTexture& texture) { name = texture.GetFileName(); });
  return name;
}

size_t EntryCount(const TempFolder& folder) {
  const std::filesystem::recursive_directory_iterator entries(folder.Path());
  return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

TEST(EmbeddedFiles, PiecesAreJoinedUnderTheLastPartOfTheName) {
  for (const char* name : {"C:\\art/skin.tga", "../../skin.tga", "/etc/skin.tga", "..\\skin.tga"}) {
    const TempFolder folder;
    FbxFile file = FileWithVideo(name, {FbxValue::Raw("pict"), FbxValue::Raw("ure bytes")});
    file.Object("Video", 3, "second video", "Clip").Add({"Filename", {"second.tga"}});
    file.Connect(3, 1);
    EXPECT_EQ(ExtractTo(folder, file), folder.Path("model.fbm\\skin.tga")) << name;
    EXPECT_EQ(ReadWholeFile(folder.Path("model.fbm/skin.tga")), "picture bytes") << name;
    EXPECT_EQ(EntryCount(folder), 2u) << name;
  }
  const TempFolder folder;
  ExtractTo(folder, FileWithVideo("skin.tga", {"cGljdA==", "dXJlIGJ5dGVz"}), Container::Ascii);
  EXPECT_EQ(ReadWholeFile(folder.Path("model.fbm/skin.tga")), "picture bytes");
}

TEST(EmbeddedFiles, DamagedBase64IsNotWritten) {
  for (const char* text : {"cGlj*A==", "cGlj dA==", "=", ""}) {
    const TempFolder folder;
    EXPECT_EQ(ExtractTo(folder, FileWithVideo("skin.tga", {"cGlj", text}), Container::Ascii),
              "as in the file")
        << text;
    EXPECT_EQ(EntryCount(folder), 0u) << text;
  }
}

TEST(EmbeddedFiles, HostileNamesAreNotWritten) {
  for (const char* name : {"..", ".", "", "a/..", "a\\", "c:skin.tga", "stream.tga:x"}) {
    const TempFolder folder;
    EXPECT_EQ(ExtractTo(folder, FileWithVideo(name, {FbxValue::Raw("bytes")})), "as in the file") << name;
    EXPECT_EQ(EntryCount(folder), 0u) << name;
  }
}

TEST(EmbeddedFiles, OfARefusedModelAreNotWritten) {
  const TempFolder folder;
  const FbxFile file = FileWithVideo("skin.tga", {FbxValue::Raw("bytes")});
  const std::string path = folder.Write("model.fbx", WriteBinary(file.Records()));
  const support::ManagerPtr manager(scene::KFbxSdkManager::Create());
  for (const std::string refusal : {"it asks for too much", ""}) {
    auto& importer = *manager->CreateImporter([&](scene::KFbxScene&) { return refusal; });
    auto& scene = *manager->CreateScene("");
    ASSERT_TRUE(importer.Initialize(path));
    EXPECT_EQ(importer.Import(scene), refusal.empty());
    EXPECT_EQ(importer.GetLastErrorString(), refusal);
    EXPECT_EQ(importer.GetLastErrorID(), refusal.empty() ? 0 : 5);
    size_t textures = 0;
    scene.ForEach<scene::KFbxTexture>([&](const scene::KFbxTexture&) { ++textures; });
    EXPECT_EQ(textures, refusal.empty() ? 1u : 0u);
    EXPECT_EQ(EntryCount(folder), refusal.empty() ? 3u : 1u);
  }
}

TEST(EmbeddedFiles, AFileOfTheSameSizeIsKept) {
  for (const auto& [before, after] : {std::pair{"edited!", "edited!"}, {"an older picture", "picture"}}) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Path("model.fbm"));
    folder.Write("model.fbm/skin.tga", before);
    EXPECT_EQ(ExtractTo(folder, FileWithVideo("skin.tga", {FbxValue::Raw("picture")})),
              folder.Path("model.fbm\\skin.tga"));
    EXPECT_EQ(ReadWholeFile(folder.Path("model.fbm/skin.tga")), after);
  }
}

TEST(EmbeddedFiles, WhereNoFolderCanBeMadeTheTextureStaysAsItIs) {
  const TempFolder folder;
  folder.Write("model.fbm", "a file in the way");
  EXPECT_EQ(ExtractTo(folder, FileWithVideo("skin.tga", {FbxValue::Raw("picture")})), "as in the file");
}

}  // namespace
