// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/json_schemas.h"
#include "support/temp_folder.h"

namespace support {

/// The command-line tool, run in a folder of its own.
class Tool : public ::testing::Test {
 protected:
  /// Runs the tool in the folder and holds the JSON that it writes there against the schemas.
  /// @return its exit status
  int Run(const std::string& arguments) {
    const std::string command =
        "cd '" + folder_.Path() + "' && '" + program_ + "' " + arguments + " >out.txt 2>err.txt";
    const int status = std::system(command.c_str());
    output_ = ReadWholeFile(folder_.Path("out.txt"));
    errors_ = ReadWholeFile(folder_.Path("err.txt"));
    std::filesystem::remove(folder_.Path("out.txt"));
    std::filesystem::remove(folder_.Path("err.txt"));
    ExpectMatchesSchemaIfJson(output_);
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      if (entry.path().extension() == ".json" && entry.is_regular_file())
        ExpectMatchesSchemaIfJson(ReadWholeFile(entry.path().string()));
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  void CopySample(const std::string& name) const {
    std::filesystem::create_directories(std::filesystem::path(folder_.Path(name)).parent_path());
    std::filesystem::copy_file(TS3D_SAMPLES_FOLDER "/scout.fbx", folder_.Path(name));
  }

  std::string Files(const std::string& subfolder = ".") const { return folder_.Names(subfolder); }
  bool Printed(const std::string& text) const { return errors_.find(text) != std::string::npos; }

  TempFolder folder_;
  std::string program_ = FBX2CZP_PATH;
  std::string output_, errors_;
};

}  // namespace support
