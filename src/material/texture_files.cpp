// SPDX-License-Identifier: MIT
#include "material/texture_files.h"

#include "base/file_names.h"
#include "core/work_files.h"

namespace ts3d {
namespace {

/// @return whether the ".tga" file exists, by the host's word where it is asked
bool OfferToHost(const MaterialOutput& out, const std::string& source, const std::string& tgaName) {
  uint8_t converted = WorkFileExists(out.files, tgaName) ? 1 : 0;
  if (out.textureCallback) out.textureCallback(out.status.callbackContext, source.c_str(), &converted);
  return converted != 0;
}

}  // namespace

std::string TgaName(const std::string& source) {
  std::string baseName(base::BaseName(source));
  if (baseName.find(".tga") != std::string::npos) return baseName;
  return baseName.substr(0, baseName.find('.')) + ".tga";
}

std::string PackTexture(const scene::KFbxTexture& texture, MaterialOutput& out) {
  const std::string& source =
      texture.GetFileName().empty() ? texture.GetRelativeFileName() : texture.GetFileName();
  std::string tgaName = TgaName(source);
  if (tgaName == base::BaseName(source)) {
    if (out.settings.offerTgaTextures) OfferToHost(out, source, tgaName);
    if (WorkFileExists(out.files, tgaName)) out.package.AddFileToPackage(tgaName, AfterAdding::KeepFile);
    return tgaName;
  }
  if (OfferToHost(out, source, tgaName)) {
    out.package.AddFileToPackage(tgaName, AfterAdding::KeepFile);
  } else {
    out.status.Send(Notice::PictureToConvert, source, tgaName);
  }
  return tgaName;
}

}  // namespace ts3d
