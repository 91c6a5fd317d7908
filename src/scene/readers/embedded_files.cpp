// SPDX-License-Identifier: MIT
#include "scene/readers/embedded_files.h"

#include <map>

#include "base/file_names.h"
#include "platform/files.h"
#include "scene/model/texture.h"

namespace scene {
namespace {

/// "<model>.fbm\" for the path of a model.
KString FolderFor(std::string_view modelPath) {
  const size_t separator = modelPath.find_last_of("\\/");
  const size_t dot = modelPath.rfind('.');
  const bool hasExtension =
      dot != std::string_view::npos && (separator == std::string_view::npos || dot > separator);
  return KString(modelPath.substr(0, hasExtension ? dot : std::string_view::npos)) + ".fbm\\";
}

bool WriteContent(const KString& folder, const KString& path, const KString& content) {
  if (platform::FileSize(path) == static_cast<int64_t>(content.size())) return true;
  if (!platform::MakeFolder(folder)) return false;
  platform::FilePtr file = platform::OpenFile(path, "wb");
  if (!file) return false;
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  if (std::fclose(file.release()) == 0 && written) return true;
  platform::RemoveFile(path);
  return false;
}

}  // namespace

void ExtractEmbeddedFiles(KFbxScene& scene, std::string_view modelPath, bool write) {
  const KString folder = FolderFor(modelPath);
  std::map<const KFbxVideo*, KString> extracted;
  scene.ForEach<KFbxTexture>([&](KFbxTexture& texture) {
    const KFbxVideo* video = texture.GetVideo();
    if (!video) return;
    const auto [entry, isNew] = extracted.try_emplace(video);
    if (isNew) {
      const KString name = KString(
          base::BaseName(video->GetFileName().empty() ? video->GetRelativeFileName() : video->GetFileName()));
      const KString content = platform::IsPlainNameOfModel(name) ? video->ReadContent() : KString();
      if (!content.empty() && (!write || WriteContent(folder, folder + name, content))) {
        entry->second = folder + name;
      }
    }
    if (!entry->second.empty()) texture.SetEmbeddedFile(entry->second);
  });
}

}  // namespace scene
