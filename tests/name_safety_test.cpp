// SPDX-License-Identifier: MIT
//
// Whatever names a model or a package holds, nothing is written outside the folder that it is meant for.
#include <minizip/zip.h>

#include <map>

#include "support/character.h"
#include "support/test_host.h"
#include "support/tool.h"

namespace {

using namespace support;
namespace fs = std::filesystem;

/// Every file below `folder` with its content.
std::map<std::string, std::string> Snapshot(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    files[entry.path()] = entry.is_regular_file() ? ReadWholeFile(entry.path()) : "";
  }
  return files;
}

/// Names that lead to `outside`, its subfolder "sub" or the file "victim" in there when they are believed.
std::vector<std::string> HostileNames(const std::string& outside) {
  return {"../victim",
          "..\\victim",
          "../../victim",
          "x/../../victim",
          "xx//..//..//victim",
          "..",
          ".",
          outside + "/victim",
          "C:\\victim",
          "C:victim",
          "\\\\host\\share\\victim",
          "sub/../../sub/victim",
          "~/victim",
          std::string("../victim\0.tga", 14),
          std::string("victim\0/../../victim", 20),
          "file:../victim",
          "victim\n../victim",
          std::string(200, 'v')};
}

/// A character whose mesh, bones, material, texture and embedded picture are called `name`.
FbxRecords NamedModel(const std::string& name) {
  FbxFile file;
  file.Model(1, name);
  FbxRecord& geometry = file.Mesh(2, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, -3});
  geometry.Add(
      LayerElement("LayerElementUV", 0, "ByPolygonVertex", "Direct", {Doubles("UV", {0, 0, 1, 0, 1, 1})}));
  file.Material(3, name, "phong");
  file.Material(4, name, "phong");
  FbxRecord& texture = file.Object("Texture", 5, name);
  texture.Add({"FileName", {name}});
  texture.Add({"RelativeFilename", {name}});
  FbxRecord& video = file.Object("Video", 6, name, "Clip");
  video.Add({"Filename", {name}});
  video.Add({"RelativeFilename", {name}});
  video.Add({"Content", {FbxValue::Raw("embedded")}});
  file.Model(7, name);
  file.Object("NodeAttribute", 8, name, "LimbNode");
  file.Connect({{1, 0}, {2, 1}, {3, 1}, {4, 1}, {6, 5}, {7, 0}, {8, 7}});
  file.Connect(5, 3, "DiffuseColor");
  return file.Records();
}

class NameSafety : public Tool {
 protected:
  void SetUp() override {
    for (const char* subfolder : {"sub", "sub/deep", "sub/deep/model"})
      fs::create_directory(folder_.Path(subfolder));
    for (const char* victim :
         {"victim", "victim.tga", "victim.cmf", "victim.xrf", "sub/victim", "sub/deep/victim.tga"}) {
      folder_.Write(victim, "untouched");
    }
  }

  /// Expects nothing outside "sub/deep/model" to change as long as `act` runs.
  template <typename Act>
  void ExpectNothingOutside(const std::string& name, const Act& act) {
    const fs::path inner = folder_.Path("sub/deep/model");
    fs::remove_all(inner);
    const auto before = Snapshot(folder_.Path());
    fs::create_directory(inner);
    act();
    fs::remove_all(inner);
    EXPECT_EQ(Snapshot(folder_.Path()), before) << "\"" << name << "\"";
  }
};

TEST_F(NameSafety, ModelsWriteIntoTheirOwnFolderOnly) {
  for (const std::string& name : HostileNames(folder_.Path())) {
    ExpectNothingOutside(name, [&] {
      folder_.Write("sub/deep/model/model.fbx", WriteBinary(NamedModel(name)));
      // Through the library with a host that says yes to every texture, then through the tool.
      const fs::path before = fs::current_path();
      fs::current_path(folder_.Path("sub/deep/model"));
      ts3d::ConversionJob job;
      job.textureCallback = [](void*, const char*, uint8_t* converted) { *converted = 1; };
      RunConversion(job, {folder_.Path("sub/deep/model") + "\\model.fbx", {}});
      fs::current_path(before);
      Run("convert sub/deep/model/model.fbx -o sub/deep/model/out");
      EXPECT_TRUE(fs::exists(folder_.Path("sub/deep/model/model.czp")));
      // The names are believed as far as they go: this is where the embedded picture belongs.
      EXPECT_EQ(fs::exists(folder_.Path("sub/deep/model/model.fbm/victim")),
                name.ends_with("victim") && name != "C:victim");
    });
  }
}

/// A package with a picture whose member name and place in the material are `name`.
void WritePackage(const std::string& path, const Package& source, const std::string& name) {
  const zipFile zip = zipOpen64(path.c_str(), APPEND_STATUS_CREATE);
  const auto add = [&](const std::string& member, const std::string& bytes) {
    const zip_fileinfo info{};
    zipOpenNewFileInZip(zip, member.c_str(), &info, nullptr, 0, nullptr, 0, "", Z_DEFLATED,
                        Z_DEFAULT_COMPRESSION);
    zipWriteInFileInZip(zip, bytes.data(), static_cast<unsigned>(bytes.size()));
    zipCloseFileInZip(zip);
  };
  for (const Member& member : source.Members()) {
    std::string bytes = member.bytes;
    const size_t map = member.name.ends_with(".xrf") ? bytes.find("skin.tga") : std::string::npos;
    if (map != std::string::npos) bytes.replace(map, 8, name);
    add(member.name == "skin.tga" ? name : member.name, bytes);
  }
  zipClose(zip, "");
}

TEST_F(NameSafety, PackagesAreReadAndExportedIntoTheirOwnFolderOnly) {
  CopySample("sample/scout.fbx");
  fs::copy_file(TS3D_SAMPLES_FOLDER "/skin.tga", folder_.Path("sample/skin.tga"));
  ASSERT_EQ(Run("convert sample/scout.fbx"), 0) << errors_;
  const Package sample(folder_.Path("sample/scout.czp"));
  ASSERT_EQ(sample.Count("skin.tga"), 1u);
  for (std::string name : HostileNames(folder_.Path())) {
    // Picture members end in ".tga" and archives end names at a zero byte.
    name = name.substr(0, name.find('\0')) + ".tga";
    ExpectNothingOutside(name, [&] {
      WritePackage(folder_.Path("sub/deep/model/x.czp"), sample, name);
      Run("inspect sub/deep/model/x.czp");
      EXPECT_EQ(Run("export sub/deep/model/x.czp -o sub/deep/model/x.obj"), 0) << errors_;
      EXPECT_EQ(Run("export sub/deep/model/x.czp -o sub/deep/model/x.glb"), 0) << errors_;
      Run("repack sub/deep/model/x.czp");
      EXPECT_TRUE(fs::exists(folder_.Path("sub/deep/model/x.obj")));
    });
  }
}

}  // namespace
