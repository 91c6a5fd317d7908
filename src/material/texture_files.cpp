// SPDX-License-Identifier: MIT
#include "material/texture_files.h"

#include "core/status.h"
#include "core/work_file.h"

namespace ts3d {

std::string PackTexture(const scene::KFbxTexture& texture, ConversionJob& job,
                        PackagedNameSet& packagedNames) {
  const std::string& source =
      texture.GetFileName().empty() ? texture.GetRelativeFileName() : texture.GetFileName();
  const size_t separator = source.find_last_of("\\/");
  std::string baseName = source.substr(separator == std::string::npos ? 0 : separator + 1);
  if (baseName.find(".tga") != std::string::npos) {
    if (WorkFileExists(job, baseName)) AddFileToPackage(job, packagedNames, baseName, AfterAdding::KeepFile);
    return baseName;
  }
  std::string tgaName = baseName.substr(0, baseName.find('.')) + ".tga";
  uint8_t converted = WorkFileExists(job, tgaName) ? 1 : 0;
  if (job.textureCallback) job.textureCallback(job.callbackContext, source.c_str(), &converted);
  if (converted) {
    AddFileToPackage(job, packagedNames, tgaName, AfterAdding::KeepFile);
  } else {
    StatusLog(job, ">>> NEED TO MANUALLY CONVERT:");
    StatusLog(job, ComposeMessage(">>>> ", source, " to ", tgaName));
  }
  return tgaName;
}

}  // namespace ts3d
