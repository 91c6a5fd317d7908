// SPDX-License-Identifier: MIT
#include <new>

#include "driver/converted_document.h"
#include "driver/final_settings.h"
#include "package/actor_package.h"
#include "package/read_member.h"
#include "platform/replacement.h"

namespace ts3d {
namespace {

constexpr std::string_view kDocumentEnding = ".xfg";

/// Adds `text` as the member `name` to the open package.
bool AddText(WorkFiles& files, ActorPackage& package, const std::string& name, const std::string& text) {
  bool added = false;
  try {
    added = files.held.Put(name, text) && package.AddFileToPackage(name, AfterAdding::KeepFile) == 0;
  } catch (const std::bad_alloc&) {
    files.packageIsDamaged = true;
  }
  files.held.Clear();
  return package.Close() && added;
}

/// @param step  is set to what a failure of the step that is running means
bool Finish(ConversionJob& job, const FinalSettings& settings, ConversionResult& step) {
  job.configScale = settings.scalePercent > 0.0f ? settings.scalePercent / 100.0f : 1.0f;
  const std::optional<PackageMember> old = ReadLastMember(settings.sourcePath, kDocumentEnding);
  if (!old) return false;
  const std::string converted = ConvertedDocument(ReadMembers(settings.sourcePath, old->name));
  const std::optional<std::string> rewritten =
      RewriteDocument(converted, job, settings.meshList, settings.unnamed);
  if (!rewritten) return false;
  step = ConversionResult::UpdateFailed;
  platform::Replacement copy(settings.sourcePath, platform::Links::Follow);
  ActorPackage package(job.files, job.settings, job.status);
  return copy.Create("wb") && platform::CopyWholeFile(copy.Target(), copy.Path()) &&
         package.Open(copy.Path(), PackageMode::Append) &&
         AddText(job.files, package, old->name, WithNativeLineEnds(*rewritten)) && copy.TakePlace();
}

}  // namespace

ConversionResult ApplySettingsToPackage(ConversionJob& job, const FinalSettings& settings) {
  ConversionResult step = ConversionResult::DocumentUnreadable;
  try {
    if (Finish(job, settings, step)) return ConversionResult::Success;
  } catch (const std::bad_alloc&) {
    // The step that was running has failed.
  }
  return step;
}

}  // namespace ts3d
