// SPDX-License-Identifier: MIT
#pragma once

#include <assimp/cfileio.h>

#include <string>
#include <string_view>
#include <vector>

namespace translator {

/// The only files that the library sees: the model, which is in memory, and files below its folder.
class ModelFolder {
 public:
  /// @param name    of the model, as the library is to know it
  /// @param folder  empty: there are no other files
  ModelFolder(std::string name, std::string_view model, const std::string& folder);
  ~ModelFolder();
  ModelFolder(const ModelFolder&) = delete;
  ModelFolder& operator=(const ModelFolder&) = delete;

  const std::string& Name() const { return name_; }
  std::string_view Model() const { return model_; }
  /// The functions that the library reads files with.
  aiFileIO* Functions() { return &functions_; }
  /// Paths below the folder of the files that it read.
  const std::vector<std::string>& OtherFiles() const { return otherFiles_; }

  /// The bytes of the regular file `path`, which leads neither out of the folder nor through a link.
  /// @return false when there is none
  bool Read(std::string_view path, std::string& bytes);

 private:
  std::string name_;
  std::string_view model_;
  int folder_ = -1;
  aiFileIO functions_{};
  std::vector<std::string> otherFiles_;
};

}  // namespace translator
