// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "driver/convert.h"
#include "driver/scene_loader.h"
#include "support/character.h"
#include "support/package_reader.h"
#include "support/temp_folder.h"

namespace support {

/// A host program that converts models in a folder of its own, which is the current directory as long as the
/// host lives, and keeps everything it is told.
class TestHost {
 public:
  TestHost() : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.Path());
    job.status.callbackContext = this;
    job.status.statusCallback = [](void* host, const char* text) {
      static_cast<TestHost*>(host)->lines.emplace_back(text);
    };
    job.textureCallback = [](void* host, const char* path, uint8_t* converted) {
      auto& self = *static_cast<TestHost*>(host);
      self.textureRequests.push_back(path + (*converted ? std::string(" exists") : " is missing"));
      if (self.convertsTextures) *converted = 1;
      if (self.forgetsTextures) *converted = 0;
    };
  }
  /// Converts `model` at once.
  explicit TestHost(const Character& model) : TestHost() {
    EXPECT_EQ(Convert(model.Text()), ts3d::ConversionResult::Success);
  }
  ~TestHost() { std::filesystem::current_path(before_); }
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  /// Path of the file `name` as the converter takes it.
  std::string ModelPath(std::string_view name) const { return folder.Path() + "\\" + std::string(name); }

  /// Writes `model` as the file `name` and converts it as the exported functions do.
  ts3d::ConversionResult Convert(std::string_view model, const std::string& name = "model.fbx") {
    folder.Write(name, model);
    return ConvertFile(name);
  }
  ts3d::ConversionResult ConvertFile(const std::string& name) {
    lines.clear();
    job.nextMeshThreadId = job.nextMaterialThreadId = ts3d::kFirstThreadId;
    const ts3d::ConversionResult result = ts3d::RunConversion(job, {ModelPath(name), {}});
    if (result == ts3d::ConversionResult::Success) CheckPackage(ReadPackage(name));
    return result;
  }

  /// The package of the model `name`.
  Package ReadPackage(const std::string& name = "model.fbx") const {
    return Package(folder.Path(name.substr(0, name.size() - 3) + "czp"));
  }
  CmfMesh Mesh(const std::string& name) const { return ReadCmf(ReadPackage()[name + ".cmf"]); }
  std::vector<CsfBone> Bones() const { return ReadCsf(ReadPackage()["skeleton.csf"]); }
  std::string Document() const { return ReadWholeFile(folder.Path("model.xfg")); }

  bool Has(std::string_view name) const { return std::filesystem::exists(folder.Path(name)); }
  std::string FileNames() const { return folder.Names(); }

  size_t Told(std::string_view line) const {
    return static_cast<size_t>(std::count(lines.begin(), lines.end(), line));
  }
  /// The lines that begin with `prefix`.
  std::vector<std::string> LinesThatBegin(std::string_view prefix) const {
    std::vector<std::string> found;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
                 [&](const std::string& line) { return line.starts_with(prefix); });
    return found;
  }

  TempFolder folder;
  ts3d::ConversionJob job;
  std::vector<std::string> lines;            ///< status lines of the last conversion
  std::vector<std::string> textureRequests;  ///< "path exists" or "path is missing"
  bool convertsTextures = false;             ///< answers every texture request with yes
  bool forgetsTextures = false;              ///< answers every texture request with no

 private:
  std::filesystem::path before_;
};

}  // namespace support
