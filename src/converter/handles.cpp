// SPDX-License-Identifier: MIT
#include <new>

#include "base/plain_text.h"
#include "converter/converter.h"
#include "converter/read_arguments.h"
#include "driver/turn.h"
#include "fbx_to_ts3d.h"
#include "platform/path_reading.h"

/// What hosts hold: a converter that takes one call at a time.
struct FbxToTs3dConverter {
  ts3d::Turnstile turnstile;
  ts3d::Converter converter;
};

namespace {

template <typename Call>
int32_t EndOf(ts3d::Converter& converter, const Call& call) {
  try {
    return call(converter);
  } catch (const std::bad_alloc&) {
    return converter.Refuse(FBX_TO_TS3D_OUT_OF_MEMORY, "out of memory");
  } catch (const std::exception& error) {
    return converter.Refuse(FBX_TO_TS3D_OUTPUT_FAILED, error.what());
  }
}

/// Runs one call: when it is its turn, and with every exception as a code.
template <typename Call>
int32_t Enter(FbxToTs3dConverter* handle, const Call& call) noexcept {
  if (!handle) return FBX_TO_TS3D_INVALID_ARGUMENT;
  try {
    const ts3d::Turn turn(handle->turnstile);
    if (!turn.IsGranted()) return FBX_TO_TS3D_BUSY;
    const platform::PathReading utf8;
    try {
      return EndOf(handle->converter, call);
    } catch (...) {
      return handle->converter.RefuseWithoutMemory();
    }
  } catch (...) {
    return FBX_TO_TS3D_OUT_OF_MEMORY;  // not even for a turn
  }
}

int32_t RefusePath(ts3d::Converter& converter, const char* what, const char* given) {
  return converter.Refuse(FBX_TO_TS3D_INVALID_ARGUMENT, what + ts3d::FaultOfPath(given));
}

ts3d::ModelInput FromMemory(const char* modelName, const void* bytes, size_t byteCount) {
  return {ts3d::NameOfModel(modelName),
          std::string_view(static_cast<const char*>(bytes), bytes ? byteCount : 0)};
}

}  // namespace

extern "C" {

const char* FBX_TO_TS3D_CALL FbxToTs3dVersion(void) { return FBX_TO_TS3D_VERSION; }

FbxToTs3dConverter* FBX_TO_TS3D_CALL FbxToTs3dCreate(void) {
  try {
    return new FbxToTs3dConverter;
  } catch (...) {
    return nullptr;
  }
}

int32_t FBX_TO_TS3D_CALL FbxToTs3dDestroy(FbxToTs3dConverter* converter) {
  if (!converter) return FBX_TO_TS3D_OK;
  const int32_t result = Enter(converter, [](ts3d::Converter&) { return FBX_TO_TS3D_OK; });
  if (result == FBX_TO_TS3D_OK) delete converter;
  return result;
}

int32_t FBX_TO_TS3D_CALL FbxToTs3dSetOptions(FbxToTs3dConverter* converter, const FbxToTs3dOptions* options) {
  return Enter(converter, [&](ts3d::Converter& self) -> int32_t {
    ts3d::ConverterOptions read;
    ts3d::ConverterHost host;
    if (!ts3d::ReadOptions(options, read, host)) {
      return self.Refuse(FBX_TO_TS3D_INVALID_ARGUMENT,
                         "an option is out of its range, or its folder is not a path");
    }
    self.SetUp(std::move(read), std::move(host));
    return self.Refuse(FBX_TO_TS3D_OK, {});
  });
}

int32_t FBX_TO_TS3D_CALL FbxToTs3dConvert(FbxToTs3dConverter* converter, const char* modelPath,
                                          const char* packagePath) {
  return Enter(converter, [&](ts3d::Converter& self) {
    const auto model = ts3d::FilePath(modelPath), package = ts3d::FilePath(packagePath);
    if (!model) return RefusePath(self, "the model's path", modelPath);
    if (packagePath && !package) return RefusePath(self, "the package's path", packagePath);
    return self.Convert({*model, std::nullopt}, package.value_or(""));
  });
}

int32_t FBX_TO_TS3D_CALL FbxToTs3dConvertMemory(FbxToTs3dConverter* converter, const char* modelName,
                                                const void* bytes, size_t byteCount,
                                                const char* packagePath) {
  return Enter(converter, [&](ts3d::Converter& self) {
    const auto package = ts3d::FilePath(packagePath);
    const ts3d::ModelInput model = FromMemory(modelName, bytes, byteCount);
    if (model.path.empty()) return RefusePath(self, "the model's name", modelName);
    if (!package && (packagePath || !self.HandsPackagesOver()))
      return RefusePath(self, "the package's path", packagePath);
    return self.Convert(model, package.value_or(""));
  });
}

int32_t FBX_TO_TS3D_CALL FbxToTs3dFinish(FbxToTs3dConverter* converter, const char* packagePath,
                                         const FbxToTs3dFinalSettings* settings) {
  return Enter(converter, [&](ts3d::Converter& self) {
    FbxToTs3dFinalSettings given;
    const auto package = ts3d::FilePath(packagePath);
    if (!package) return RefusePath(self, "the package's path", packagePath);
    if (!settings || !ts3d::TakeStruct(settings, given)) {
      return self.Refuse(FBX_TO_TS3D_INVALID_ARGUMENT, "there are no settings of a known size");
    }
    return self.Finish(
        {package->string(), given.scalePercent, base::TextOrEmpty(given.meshes), ts3d::Unnamed::Keep},
        base::TextOrEmpty(given.boneRenames), given.rotationX, given.rotationY);
  });
}

int32_t FBX_TO_TS3D_CALL FbxToTs3dCheck(FbxToTs3dConverter* converter, const char* modelPath) {
  return Enter(converter, [&](ts3d::Converter& self) {
    const auto model = ts3d::FilePath(modelPath);
    return model ? self.Check({*model, std::nullopt}) : RefusePath(self, "the model's path", modelPath);
  });
}

int32_t FBX_TO_TS3D_CALL FbxToTs3dCheckMemory(FbxToTs3dConverter* converter, const char* modelName,
                                              const void* bytes, size_t byteCount) {
  return Enter(converter, [&](ts3d::Converter& self) {
    const ts3d::ModelInput model = FromMemory(modelName, bytes, byteCount);
    return model.path.empty() ? RefusePath(self, "the model's name", modelName) : self.Check(model);
  });
}

const char* FBX_TO_TS3D_CALL FbxToTs3dErrorText(const FbxToTs3dConverter* converter) {
  return converter ? converter->converter.Error().c_str() : "";
}

const char* FBX_TO_TS3D_CALL FbxToTs3dResultJson(const FbxToTs3dConverter* converter) {
  return converter ? converter->converter.Json().c_str() : "";
}

}  // extern "C"
