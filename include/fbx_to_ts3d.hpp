// SPDX-License-Identifier: MIT
//
// The converters of fbx_to_ts3d.h for C++17: they free themselves, take std::function, and throw when a call
// fails. All of it is in this header; the library itself is C.
//
//   fbxToTs3d::Converter converter;
//   converter.options.repairs = FBX_TO_TS3D_REPAIR_AS_NEEDED;
//   converter.Convert("Actor (Male) hero.fbx", "hero.czp");
#ifndef FBX_TO_TS3D_HPP
#define FBX_TO_TS3D_HPP

#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "fbx_to_ts3d.h"

namespace fbxToTs3d {

/// A call that failed; what() tells why in a sentence.
class Error : public std::runtime_error {
 public:
  Error(int32_t result, const std::string& text) : std::runtime_error(text), result_(result) {}
  /// A code of FbxToTs3dResult.
  int32_t Result() const { return result_; }

 private:
  int32_t result_;
};

/// Thrown when a callback ended the run.
class Cancelled : public Error {
 public:
  using Error::Error;
};

/// See FbxToTs3dOptions.
struct Options {
  int32_t rotationX = 0, rotationY = 0;
  int32_t actorType = 0;
  int32_t meshOptionMode = 0;
  uint32_t repairs = 0;
  bool keepsPictures = false;
  int32_t longestPictureSide = 0;
  int32_t packageLevel = 0;
  int32_t mostInfluences = 0;
  std::string boneRenames, meshOptions, exclusions, pictureFolder;

  std::function<void(const char* line)> onLine;                    ///< a status line
  std::function<bool(double fraction)> onProgress;                 ///< false ends the run
  std::function<void(const void* bytes, size_t count)> onPackage;  ///< packages without a path
};

/// See FbxToTs3dFinalSettings.
struct FinalSettings {
  float scalePercent = 0;
  int32_t rotationX = 0, rotationY = 0;
  std::string boneRenames, meshes;
};

/// One converter. Different ones may work in different threads at once. Exceptions that a callback throws end
/// the run and come out of the call.
class Converter {
 public:
  Converter() : handle_(FbxToTs3dCreate()) {
    if (!handle_) throw std::bad_alloc();
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  /// Count from the next call on.
  Options options;

  /// Converts a model file. @param package  empty: to `onPackage` or, without that, beside the model
  void Convert(const std::string& model, const std::string& package = {}) {
    Run([&](FbxToTs3dConverter* self) { return FbxToTs3dConvert(self, model.c_str(), PathOrNull(package)); });
  }
  /// Converts a model in memory. @param name  what its file is called
  void ConvertMemory(const std::string& name, std::string_view bytes, const std::string& package = {}) {
    Run([&](FbxToTs3dConverter* self) {
      return FbxToTs3dConvertMemory(self, name.c_str(), bytes.data(), bytes.size(), PathOrNull(package));
    });
  }
  /// Applies final settings to a package.
  void Finish(const std::string& package, const FinalSettings& settings) {
    FbxToTs3dFinalSettings given{};
    given.size = sizeof given;
    given.scalePercent = settings.scalePercent;
    given.rotationX = settings.rotationX;
    given.rotationY = settings.rotationY;
    given.boneRenames = settings.boneRenames.c_str();
    given.meshes = settings.meshes.c_str();
    Run([&](FbxToTs3dConverter* self) { return FbxToTs3dFinish(self, package.c_str(), &given); });
  }
  /// What is wrong with a model, as JSON. Throws nothing for a model that cannot be converted.
  std::string Check(const std::string& model) {
    Use([&](FbxToTs3dConverter* self) { return FbxToTs3dCheck(self, model.c_str()); });
    return ResultJson();
  }
  std::string CheckMemory(const std::string& name, std::string_view bytes) {
    Use([&](FbxToTs3dConverter* self) {
      return FbxToTs3dCheckMemory(self, name.c_str(), bytes.data(), bytes.size());
    });
    return ResultJson();
  }
  /// What the last call came to, as JSON.
  std::string ResultJson() const { return FbxToTs3dResultJson(handle_.get()); }

 private:
  struct Destroy {
    void operator()(FbxToTs3dConverter* handle) const { FbxToTs3dDestroy(handle); }
  };

  static const char* PathOrNull(const std::string& path) { return path.empty() ? nullptr : path.c_str(); }

  /// Calls a function of the host's and keeps what it throws from passing through the library.
  template <typename Call>
  int32_t Guarded(const Call& call) noexcept {
    try {
      return call() ? 0 : 1;
    } catch (...) {
      thrown_ = std::current_exception();
      return 1;
    }
  }

  static void FBX_TO_TS3D_CALL TakeLine(void* self, const char* line) {
    auto& converter = *static_cast<Converter*>(self);
    if (converter.thrown_) return;
    converter.Guarded([&] { return converter.options.onLine(line), true; });
  }
  static int32_t FBX_TO_TS3D_CALL TakeProgress(void* self, double fraction) {
    auto& converter = *static_cast<Converter*>(self);
    if (converter.thrown_) return 1;
    return converter.Guarded(
        [&] { return !converter.options.onProgress || converter.options.onProgress(fraction); });
  }
  static int32_t FBX_TO_TS3D_CALL TakePackage(void* self, const void* bytes, size_t count) {
    auto& converter = *static_cast<Converter*>(self);
    return converter.Guarded([&] { return converter.options.onPackage(bytes, count), true; });
  }

  void SetOptions() {
    FbxToTs3dOptions given{};
    given.size = sizeof given;
    given.rotationX = options.rotationX;
    given.rotationY = options.rotationY;
    given.actorType = options.actorType;
    given.meshOptionMode = options.meshOptionMode;
    given.repairs = options.repairs;
    given.keepsPictures = options.keepsPictures;
    given.longestPictureSide = options.longestPictureSide;
    given.packageLevel = options.packageLevel;
    given.mostInfluences = options.mostInfluences;
    given.boneRenames = options.boneRenames.c_str();
    given.meshOptions = options.meshOptions.c_str();
    given.exclusions = options.exclusions.c_str();
    given.pictureFolder = options.pictureFolder.c_str();
    given.context = this;
    if (options.onLine) given.onLine = TakeLine;
    given.onProgress = TakeProgress;
    if (options.onPackage) given.onPackage = TakePackage;
    Require(FbxToTs3dSetOptions(handle_.get(), &given));
  }

  template <typename Call>
  int32_t Use(const Call& call) {
    thrown_ = nullptr;
    SetOptions();
    const int32_t result = call(handle_.get());
    if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
    if (result < 0) Require(result);
    return result;
  }
  template <typename Call>
  void Run(const Call& call) {
    Require(Use(call));
  }
  void Require(int32_t result) const {
    if (result == FBX_TO_TS3D_OK) return;
    const std::string text =
        result == FBX_TO_TS3D_BUSY ? "called out of a callback" : FbxToTs3dErrorText(handle_.get());
    if (result == FBX_TO_TS3D_CANCELLED) throw Cancelled(result, text);
    throw Error(result, text);
  }

  std::unique_ptr<FbxToTs3dConverter, Destroy> handle_;
  std::exception_ptr thrown_;
};

}  // namespace fbxToTs3d

#endif
