// SPDX-License-Identifier: MIT
#include "check_textures.h"

#include <new>
#include <set>
#include <stdexcept>

#include "check/finding_kinds.h"
#include "textures/image_reader.h"
#include "textures/texture_converter.h"
#include "textures/texture_search.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

std::string Joined(const std::vector<std::string>& places) {
  std::string text;
  for (const std::string& place : places) text += (text.empty() ? "" : ", ") + place;
  return text;
}

void CheckPicture(const fs::path& picture, const ts3d::UsedTexture& texture, ts3d::RigReport& report) {
  try {
    ReadImage(picture, kDefaultLongestSide);
  } catch (const std::bad_alloc&) {
    report.Add(ts3d::findings::kTextureUnreadable, texture.tgaName,
               {picture.string(), "there is not enough memory"});
  } catch (const std::exception& error) {
    report.Add(ts3d::findings::kTextureUnreadable, texture.tgaName, {picture.string(), error.what()});
  }
}

}  // namespace

void AddTextureFindings(const fs::path& model, ts3d::RigReport& report) {
  std::set<std::string> embedded;
  for (const ts3d::UsedTexture& texture : report.textures) {
    if (texture.isEmbedded) embedded.insert(texture.tgaName);
  }
  TextureFinder finder(model);
  for (const ts3d::UsedTexture& texture : report.textures) {
    const std::string& source = texture.fileName.empty() ? texture.relativeFileName : texture.fileName;
    // A conversion unpacks embedded pictures, and other references to them are found then.
    if (source.empty() || embedded.contains(texture.tgaName)) continue;
    const TextureSearch search = finder.Find(texture.fileName, texture.relativeFileName);
    if (!search.found.empty()) {
      CheckPicture(search.found, texture, report);
    } else if (std::error_code failed; !fs::is_regular_file(model.parent_path() / texture.tgaName, failed)) {
      report.Add(ts3d::findings::kTextureMissing, texture.tgaName, {source, Joined(search.places)});
    }
  }
}

}  // namespace cli
