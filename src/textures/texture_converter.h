// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/work_files.h"
#include "platform/file_system.h"
#include "textures/image.h"
#include "textures/picture_budget.h"
#include "textures/texture_search.h"

namespace scene {
class KFbxScene;
class KFbxTexture;
}  // namespace scene

namespace textures {

/// What went wrong with a texture. Said as one sentence: "texture " + source + " " + text.
struct TextureProblem {
  std::string source;      ///< the picture's path as the model gives it
  std::string text;        ///< "was not found; ..."
  bool isMissing = false;  ///< else there is a picture, which is of no use
};

inline constexpr int kDefaultLongestSide = 8192;

/// What becomes of pictures that are larger than allowed.
enum class TooLarge { LeaveOut, Shrink };

/// Finds the pictures that a conversion asks for and writes them as ".tga" files into the folder of the conversion. One
/// converter serves one conversion.
class TextureConverter {
 public:
  /// @param model absolute path of the model, whose folder is searched; the job's own is a temporary one
  /// @param longestSide larger pictures (in pixels) are too large
  /// @param folders  searched as well, see TextureFinder
  TextureConverter(const platform::fs::path& model, int longestSide,
                   const std::vector<std::string>& folders = {}, TooLarge tooLarge = TooLarge::LeaveOut);

  /// Called with each picture before it is converted.
  std::function<void(const platform::fs::path& picture)> onConvert;

  /// Answers a conversion's texture callback. Never throws; a texture that fails is told of once, as a problem. A
  /// file that is somebody's work is never written over.
  /// @param source the picture's path as the model gives it
  /// @param exists whether the model's folder holds the ".tga" file already
  /// @return whether it does now
  bool Provide(const ts3d::WorkFiles& files, const scene::KFbxScene& scene, const std::string& source,
               bool exists);

  const std::vector<TextureProblem>& Problems() const { return problems_; }
  /// Names of the ".tga" files that are smaller than their pictures: for this conversion alone.
  const std::set<std::string>& Shrunk() const { return shrunk_; }
  /// Files that the pictures come from and, for those that are missing, the paths where they would be found.
  const std::set<platform::fs::path>& Inputs() const { return inputs_; }
  /// Files that the pictures of `scene` would come from; embedded ones have none.
  std::set<platform::fs::path> FindInputs(const ts3d::WorkFiles& files, const scene::KFbxScene& scene);
  /// Paths of the pictures used that lie outside the model's folder and those below it.
  const std::set<std::string>& OutsidePictures() const { return outside_; }

 private:
  struct Request;
  /// What became of a picture.
  struct Decoded {
    int width = 0, height = 0;
    platform::fs::path tga;  ///< made of it
    std::string error;       ///< not empty: why there is none
    bool isShrunk = false;
  };

  void Bring(const Request& request);
  TextureSearch FindPicture(const scene::KFbxScene& scene, const std::string& source);
  void CheckOwn(const Request& request);
  void CheckReused(const Request& request);
  Image ReadPicture(const platform::fs::path& picture);
  void ConvertOrEmbedded(const Request& request, const platform::fs::path& picture);
  bool FitsOrThrows(int width, int height) const;
  void Convert(const Request& request, const platform::fs::path& picture);
  void WriteTgaOf(const platform::fs::path& picture, const platform::fs::path& target);

  TextureFinder finder_;
  int longestSide_;
  TooLarge tooLarge_;
  PictureBudget budget_;
  std::map<std::string_view, const scene::KFbxTexture*> textures_;  ///< of the job's scene, by file name
  std::map<std::string, bool> answers_;                             ///< by source
  std::map<std::string, platform::fs::path> pictures_;              ///< what each ".tga" file is made of
  std::map<platform::fs::path, Decoded> decoded_;                   ///< by picture; each is decoded once
  std::vector<TextureProblem> problems_;
  std::set<platform::fs::path> inputs_;
  std::set<std::string> outside_, shrunk_;
};

}  // namespace textures
