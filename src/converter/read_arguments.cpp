// SPDX-License-Identifier: MIT
#include "converter/read_arguments.h"

#include <algorithm>
#include <system_error>

#include "base/plain_text.h"
#include "core/names.h"
#include "core/pack_level.h"
#include "platform/files.h"

namespace ts3d {
namespace fs = platform::fs;
namespace {

std::optional<fs::path> AbsolutePath(const char* utf8) {
  std::string native;
  if (!utf8 || !*utf8 || !platform::PathFromUtf8(utf8, native)) return std::nullopt;
  std::error_code failed;
  const fs::path path = fs::absolute(native, failed);
  return failed ? std::nullopt : std::optional(path);
}

/// @param asked  1 to 9, -1 for not at all, 0 for the usual
int PackLevelOf(int32_t asked) {
  constexpr int32_t kHardest = 9;
  if (asked == 0) return kDefaultPackLevel;
  return asked == kHardest ? kSmallestPackLevel : std::max(asked, 0);
}

ConverterHost HostOf(const FbxToTs3dOptions& options) {
  ConverterHost host;
  void* const context = options.context;
  if (const auto take = options.onLine) {
    host.onLine = [=](const std::string& line) { take(context, line.c_str()); };
  }
  if (const auto take = options.onProgress) {
    host.onProgress = [=](double fraction) { return take(context, fraction) == 0; };
  }
  if (const auto take = options.onPackage) {
    host.onPackage = [=](std::string_view bytes) { return take(context, bytes.data(), bytes.size()) == 0; };
  }
  return host;
}

bool AreInRange(const FbxToTs3dOptions& options) {
  return options.actorType >= -1 && options.actorType <= 6 && options.meshOptionMode >= 0 &&
         options.meshOptionMode <= 2 && options.repairs < 2 * FBX_TO_TS3D_REPAIR_AS_NEEDED &&
         options.packageLevel >= -1 && options.packageLevel <= 9 && options.mostInfluences >= 0 &&
         options.longestPictureSide >= 0 && options.longestPictureSide <= textures::kLargestSide;
}

/// False when the folder is no path.
bool ReadTexts(const FbxToTs3dOptions& given, ConverterOptions& options) {
  options.rotationX = given.rotationX;
  options.rotationY = given.rotationY;
  if (given.actorType != 0) options.actorType = static_cast<ActorType>(std::max(given.actorType, 0));
  options.meshOptionMode = given.meshOptionMode;
  const auto asksFor = [&](FbxToTs3dRepair repair) { return (given.repairs & repair) != 0; };
  options.repairs = {asksFor(FBX_TO_TS3D_RIGID_BONES), asksFor(FBX_TO_TS3D_BIND_FROM_SKIN),
                     asksFor(FBX_TO_TS3D_OPEN_GROUPS), asksFor(FBX_TO_TS3D_JOIN_ROOTS),
                     asksFor(FBX_TO_TS3D_ATTACH_RIGID)};
  options.repairsAsNeeded = asksFor(FBX_TO_TS3D_REPAIR_AS_NEEDED);
  options.convertsPictures = given.keepsPictures == 0;
  if (given.longestPictureSide > 0) options.longestPictureSide = given.longestPictureSide;
  options.packLevel = PackLevelOf(given.packageLevel);
  options.mostInfluences = given.mostInfluences;
  options.boneRenames = base::TextOrEmpty(given.boneRenames);
  options.meshOptions = base::TextOrEmpty(given.meshOptions);
  const std::string exclusions = base::TextOrEmpty(given.exclusions);
  for (const std::string_view name : SplitList(exclusions)) options.exclusions.emplace_back(name);
  if (!given.pictureFolder || !*given.pictureFolder) return true;
  const std::optional<fs::path> folder = AbsolutePath(given.pictureFolder);
  if (folder) options.pictureFolder = *folder;
  return folder.has_value();
}

}  // namespace

std::optional<fs::path> FilePath(const char* utf8) {
  std::optional<fs::path> path = AbsolutePath(utf8);
  return path && path->has_filename() ? path : std::nullopt;
}

std::string FaultOfPath(const char* utf8) {
  std::string ignored;
  if (!utf8 || !*utf8) return " is missing";
  if (platform::PathFromUtf8(utf8, ignored)) return " cannot be that of a file";
  return " is not UTF-8";
}

fs::path NameOfModel(const char* utf8) {
  std::string native;
  if (!utf8 || !platform::PathFromUtf8(utf8, native)) return {};
  const fs::path name = fs::path(native).filename();
  return IsPlainFileName(name.string()) ? name : fs::path();
}

bool ReadOptions(const FbxToTs3dOptions* options, ConverterOptions& read, ConverterHost& host) {
  FbxToTs3dOptions given;
  if (!TakeStruct(options, given) || !AreInRange(given) || !ReadTexts(given, read)) return false;
  host = HostOf(given);
  return true;
}

}  // namespace ts3d
