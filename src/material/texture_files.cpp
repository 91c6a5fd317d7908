// SPDX-License-Identifier: MIT
#include "material/texture_files.h"

#include "core/work_files.h"

namespace ts3d {
namespace {

std::string BaseName(const std::string& path) {
  const size_t separator = path.find_last_of("\\/");
  return path.substr(separator == std::string::npos ? 0 : separator + 1);
}

/// @return whether the ".tga" file exists, by the host's word where it is asked
bool OfferToHost(const ConversionJob& job, const std::string& source, const std::string& tgaName) {
  uint8_t converted = WorkFileExists(job.files, tgaName) ? 1 : 0;
  if (job.textureCallback) job.textureCallback(job.status.callbackContext, source.c_str(), &converted);
  return converted != 0;
}

}  // namespace

std::string TgaName(const std::string& source) {
  std::string baseName = BaseName(source);
  if (baseName.find(".tga") != std::string::npos) return baseName;
  return baseName.substr(0, baseName.find('.')) + ".tga";
}

std::string PackTexture(const scene::KFbxTexture& texture, ConversionJob& job, ActorPackage& package) {
  const std::string& source =
      texture.GetFileName().empty() ? texture.GetRelativeFileName() : texture.GetFileName();
  std::string tgaName = TgaName(source);
  if (tgaName == BaseName(source)) {
    if (job.settings.offerTgaTextures) OfferToHost(job, source, tgaName);
    if (WorkFileExists(job.files, tgaName)) package.AddFileToPackage(tgaName, AfterAdding::KeepFile);
    return tgaName;
  }
  if (OfferToHost(job, source, tgaName)) {
    package.AddFileToPackage(tgaName, AfterAdding::KeepFile);
  } else {
    job.status.Send(Notice::PictureToConvert, source, tgaName);
  }
  return tgaName;
}

}  // namespace ts3d
