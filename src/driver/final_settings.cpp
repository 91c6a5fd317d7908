// SPDX-License-Identifier: MIT
#include "driver/final_settings.h"

#include <new>

#include "core/names.h"
#include "core/work_files.h"
#include "package/actor_package.h"
#include "platform/replacement.h"

namespace ts3d {
namespace {

/// The document, opened as if it were to be changed in place; none when that is not possible.
std::optional<std::string> ReadDocument(const std::string& path) {
  const platform::FilePtr file = platform::OpenFile(path, "r+");
  const int64_t size = file ? platform::FileSize(path) : -1;
  if (size < 0) return std::nullopt;
  std::string text(static_cast<size_t>(size), '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  // The beginning of a document may be taken for all of it.
  if (std::ferror(file.get())) return std::nullopt;
  return text;
}

bool ReplaceDocument(const std::string& path, const std::string& text) {
  platform::Replacement document(path, platform::Links::Follow);
  platform::FilePtr file = document.Create("w");
  return file && WriteAndClose(std::move(file), text) && document.TakePlace();
}

bool CopyTarget(platform::Replacement& file) {
  return file.Create("wb") && platform::CopyWholeFile(file.Target(), file.Path());
}

/// Adds the document to `package`, the open copy that then takes the package's place, so that whatever happens
/// the package is the old one or the new one.
bool AddToPackage(WorkFiles& files, ActorPackage& package, platform::Replacement& copy,
                  const std::string& documentPath) {
  const std::string documentName = FileNamePart(documentPath);
  // A bare name means the folder of the last conversion, which this pass does not choose.
  const bool isBare = documentName.size() == documentPath.size();
  bool added = false;
  try {
    added = package.AddDocumentToPackage(isBare ? files.modelDirectory + documentName : documentPath,
                                         documentName) == 0;
  } catch (const std::bad_alloc&) {
    files.packageIsDamaged = true;
  }
  if (!package.Close() || !added || !copy.TakePlace()) return false;
  // What a conversion's work files know as deletion after adding: by the bare name.
  platform::RemoveFile(documentName);
  return true;
}

/// What a step that fails is told as.
struct Failure {
  ConversionResult code;
  Notice notice;
};
constexpr Failure kUnreadable{ConversionResult::DocumentUnreadable, Notice::DocumentUnreadable};
constexpr Failure kUnwritable{ConversionResult::DocumentUnwritable, Notice::DocumentUnwritable};
constexpr Failure kNotOpened{ConversionResult::UpdateFailed, Notice::PackageNotOpened};
constexpr Failure kNotUpdated{ConversionResult::UpdateFailed, Notice::PackageNotUpdated};

/// @param step is set to what a failure of the step that is running means
bool Finish(ConversionJob& job, const FinalSettings& settings, Failure& step) {
  const std::string documentPath = ReplaceExtension(settings.sourcePath, "xfg");
  const std::string& source = settings.sourcePath;
  job.isFbxFile = EndsWithIgnoreCase(source, ".fbx");
  // Document and package may be named themselves; there is no model here that must not be written.
  job.files.inputPath.clear();
  job.configScale = settings.scalePercent > 0.0f ? settings.scalePercent / 100.0f : 1.0f;

  if (!HasRoomForExtension(source)) return false;
  const std::optional<std::string> old = settings.document ? settings.document : ReadDocument(documentPath);
  const std::optional<std::string> rewritten =
      old ? RewriteDocument(*old, job, settings.meshList, settings.unnamed) : std::nullopt;
  if (!rewritten) return false;
  step = kUnwritable;
  if (!ReplaceDocument(documentPath, *rewritten)) return false;
  step = kNotOpened;
  platform::Replacement copy(ReplaceExtension(documentPath, "czp"), platform::Links::Follow);
  ActorPackage package(job.files, job.settings, job.status);
  if (!CopyTarget(copy) || !package.Open(copy.Path(), PackageMode::Append)) return false;
  step = kNotUpdated;
  return AddToPackage(job.files, package, copy, documentPath);
}

}  // namespace

ConversionResult ApplyFinalSettings(ConversionJob& job, const FinalSettings& settings) {
  job.status.Send(Notice::UpdatingPackage);
  Failure step = kUnreadable;
  bool done = false;
  try {
    done = Finish(job, settings, step);
  } catch (const std::bad_alloc&) {
    // The step that was running has failed.
  }
  job.status.Send(done ? Notice::PackageCreated : step.notice);
  return done ? ConversionResult::Success : step.code;
}

}  // namespace ts3d
