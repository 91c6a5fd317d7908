// SPDX-License-Identifier: MIT
#include "converter/check_textures.h"

#include <map>
#include <new>
#include <set>
#include <stdexcept>

#include "rig_check/finding_kinds.h"
#include "textures/image_reader.h"
#include "textures/texture_converter.h"
#include "textures/texture_search.h"

namespace ts3d {
namespace fs = platform::fs;
namespace {

std::string Joined(const std::vector<std::string>& places) {
  std::string text;
  for (const std::string& place : places) text += (text.empty() ? "" : ", ") + place;
  return text;
}

/// Decodes pictures, each once.
class PictureChecker {
 public:
  /// @return what is wrong with the picture; empty for nothing
  const std::string& Check(const fs::path& picture) {
    std::error_code failed;
    const auto [entry, isNew] = errors_.try_emplace(fs::weakly_canonical(picture, failed));
    if (!isNew) return entry->second;
    try {
      textures::ReadImage(picture, budget_);
    } catch (const std::bad_alloc&) {
      entry->second = "there is not enough memory";
    } catch (const std::exception& error) {
      entry->second = error.what();
    }
    return entry->second;
  }

 private:
  textures::PictureBudget budget_{textures::kDefaultLongestSide};
  std::map<fs::path, std::string> errors_;
};

}  // namespace

void AddTextureFindings(const fs::path& model, const std::vector<std::string>& folders, RigReport& report) {
  std::set<std::string> embedded;
  for (const UsedTexture& texture : report.textures) {
    if (texture.isEmbedded) embedded.insert(texture.tgaName);
  }
  textures::TextureFinder finder(model, folders);
  PictureChecker pictures;
  for (const UsedTexture& texture : report.textures) {
    const std::string& source = texture.fileName.empty() ? texture.relativeFileName : texture.fileName;
    // A conversion unpacks embedded pictures, and other references to them are found then.
    if (source.empty() || embedded.contains(texture.tgaName)) continue;
    const textures::TextureSearch search = finder.Find(texture.fileName, texture.relativeFileName);
    if (!search.found.empty()) {
      const std::string& error = pictures.Check(search.found);
      if (error.empty()) continue;
      report.Add(findings::kTextureUnreadable, texture.tgaName, {search.found.string(), error});
    } else if (std::error_code failed; !fs::is_regular_file(model.parent_path() / texture.tgaName, failed)) {
      report.Add(findings::kTextureMissing, texture.tgaName, {source, Joined(search.places)});
    }
  }
}

}  // namespace ts3d
