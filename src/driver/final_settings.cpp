// SPDX-License-Identifier: MIT
#include "driver/final_settings.h"

#include "core/names.h"
#include "core/status.h"
#include "core/work_file.h"
#include "package/actor_package.h"

namespace ts3d {
namespace {

/// The document, opened as if it were to be changed in place; none when that is not possible.
std::optional<std::string> ReadDocument(const std::string& path) {
  const platform::FilePtr file = platform::OpenFile(path, "r+");
  const int64_t size = file ? platform::FileSize(path) : -1;
  if (size < 0) return std::nullopt;
  std::string text(static_cast<size_t>(size), '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  return text;
}

/// Writes the new document beside the old one and puts it into its place in one step.
bool ReplaceDocument(const std::string& path, const std::string& text) {
  const std::string newPath = path + ".new";
  platform::FilePtr file = platform::OpenFile(newPath, "w");
  if (!file) return false;
  if (WriteAndClose(std::move(file), text) && platform::RenameFile(newPath, path)) return true;
  platform::RemoveFile(newPath);
  return false;
}

/// Adds the document to a copy of the package that then takes the package's place, so that whatever happens
/// the package is the old one or the new one.
bool AddToPackage(ConversionJob& job, const std::string& packagePath, const std::string& documentName) {
  const std::string newPath = packagePath + ".new";
  if (!platform::CopyWholeFile(packagePath, newPath) ||
      !OpenActorPackage(job, newPath, PackageMode::Append)) {
    platform::RemoveFile(newPath);
    StatusLog(job, ">>> Failed to Open CZP File");
    return false;
  }
  PackagedNameSet packagedNames;
  const bool added = AddFileToPackage(job, packagedNames, documentName, AfterAdding::KeepFile) == 0;
  if (CloseActorPackage(job) && added && platform::RenameFile(newPath, packagePath)) {
    // What a conversion's work files know as deletion after adding: by the bare name.
    platform::RemoveFile(documentName);
    return true;
  }
  platform::RemoveFile(newPath);
  StatusLog(job, ">>> Failed updating CZP File");
  return false;
}

}  // namespace

FinishResult ApplyFinalSettings(ConversionJob& job, const FinalSettings& settings) {
  StatusLog(job, "Updating CZP File with Final Settings");
  const std::string documentPath = ReplaceExtension(settings.sourcePath, "xfg");
  const std::string& source = settings.sourcePath;
  job.isFbxFile = EqualsIgnoreCase(source.substr(source.size() < 4 ? 0 : source.size() - 4), ".fbx");
  job.modelDirectory = DirectoryPart(source);
  job.inputPath = source;
  job.configScale = settings.scalePercent > 0.0f ? settings.scalePercent / 100.0f : 1.0f;

  const std::optional<std::string> old = ReadDocument(documentPath);
  const std::optional<std::string> rewritten =
      old ? RewriteDocument(*old, job, settings.meshList) : std::nullopt;
  if (!rewritten) {
    StatusLog(job, ">>> FAILED TO READ .XFG File!");
    return FinishResult::DocumentUnreadable;
  }
  if (!ReplaceDocument(documentPath, *rewritten)) {
    StatusLog(job, ">>> FAILED TO WRITE .XFG File!");
    return FinishResult::DocumentUnwritable;
  }
  if (!AddToPackage(job, ReplaceExtension(documentPath, "czp"), FileNamePart(documentPath))) {
    return FinishResult::UpdateFailed;
  }
  StatusLog(job, "Successfully created CZP File");
  return FinishResult::Success;
}

}  // namespace ts3d
