// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// A new, empty folder that goes away with everything in it.
class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ts3d_test_XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  /// The folder, without a separator at the end.
  const std::string& Path() const { return path_; }
  /// `name` in the folder; nothing has to exist there.
  std::string Path(std::string_view name) const { return path_ + "/" + std::string(name); }
  /// Names of everything in a folder in the folder, sorted, separated by blanks.
  std::string Names(std::string_view subfolder = ".") const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Path(subfolder)))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : " ") + name;
    return all;
  }
  /// Writes the file `name` and returns its path.
  std::string Write(std::string_view name, std::string_view bytes) const {
    const std::string path = Path(name);
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("cannot write " + path);
    return path;
  }

 private:
  std::string path_;
};

/// The bytes of the file `path`; empty when there is none.
inline std::string ReadWholeFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace support
