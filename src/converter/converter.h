// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "converter/run_notes.h"
#include "core/pack_level.h"
#include "core/repair_settings.h"
#include "driver/conversion.h"
#include "platform/file_system.h"
#include "textures/texture_converter.h"

namespace ts3d {

class WorkFolder;

/// What a host asks of its conversions.
struct ConverterOptions {
  int32_t rotationX = 0, rotationY = 0;  ///< degrees
  std::optional<ActorType> actorType;    ///< none: the model's path tells
  int32_t meshOptionMode = 0;
  RepairSettings repairs;
  bool repairsAsNeeded = false;  ///< beside those whatever the model needs
  int32_t mostInfluences = 0;    ///< see Settings
  bool convertsPictures = true;
  int longestPictureSide = textures::kDefaultLongestSide;
  int packLevel = kDefaultPackLevel;  ///< see Settings
  std::string boneRenames, meshOptions;
  std::string modelUnit = {};  ///< see Settings
  std::vector<std::string> exclusions;
  platform::fs::path pictureFolder;  ///< for models from memory; may be empty
};

/// What a host is told during a call. Each may be empty.
struct ConverterHost {
  std::function<void(const std::string& line)> onLine;
  std::function<bool(double fraction)> onProgress;        ///< false ends the run
  std::function<bool(std::string_view bytes)> onPackage;  ///< likewise
};

/// The model of a call: a file, or bytes that stand for one.
struct ModelInput {
  platform::fs::path path;  ///< absolute; a bare name for a model from memory
  std::optional<std::string_view> bytes;
};

/// Converts and checks models for one host, and keeps what it needs from one call to the next. Nothing is
/// shared between converters, and nothing of the process is touched: not its folder, console, settings or
/// life.
///
/// Calls return codes of FbxToTs3dResult. No exception leaves them but std::bad_alloc.
class Converter {
 public:
  void SetUp(ConverterOptions options, ConverterHost host);

  /// @param package where the package goes; empty: to the host's
  /// `onPackage` or, without that, beside the model
  int32_t Convert(const ModelInput& model, const platform::fs::path& package);
  /// Applies final settings to a package.
  int32_t Finish(const FinalSettings& settings, std::string boneRenames, int32_t rotationX,
                 int32_t rotationY);
  int32_t Check(const ModelInput& model);
  /// Ends a call that nothing was done in.
  int32_t Refuse(int32_t code, std::string reason);
  /// The same when there is no memory, even to tell of it as JSON.
  int32_t RefuseWithoutMemory() noexcept;

  /// Whether the host takes packages itself.
  bool HandsPackagesOver() const { return host_.onPackage != nullptr; }

  /// Why the last call failed; empty when it did not.
  const std::string& Error() const { return error_; }
  /// What the last call came to; empty when there was no memory to tell it.
  const std::string& Json() const { return json_; }

 private:
  struct Run;

  int32_t ConvertIn(const WorkFolder& work, const ModelInput& model, const platform::fs::path& package);
  int32_t RunIn(const WorkFolder& work, const ModelInput& model, RunNotes& notes);
  int32_t Deliver(const platform::fs::path& made, const platform::fs::path& package);
  int32_t HandOver(const platform::fs::path& made);
  void PrepareJob();
  void Advance(double fraction);
  void TakeLine(const StatusLine& line, RunNotes& notes);
  static void FBX_TO_TS3D_CALL TakeTexture(void* run, const char* source, uint8_t* converted);

  Conversion conversion_;
  ConverterOptions options_;
  ConverterHost host_;
  double fraction_ = 0;
  std::optional<std::string> lastDocument_;  ///< that the bone tree belongs to
  std::string error_, json_;
};

}  // namespace ts3d
