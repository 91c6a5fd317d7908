// SPDX-License-Identifier: MIT
#include "base/plain_text.h"
#include "driver/conversion.h"
#include "driver/turn.h"
#include "fbx_to_ts3d.h"
#include "platform/path_reading.h"

namespace {

using ts3d::ConversionJob;

/// The one conversion of the process: final settings build on what the call before them left here.
struct ProcessConversion {
  ts3d::Turnstile turnstile;
  ts3d::Conversion conversion;
};

ProcessConversion& Process() {
  // Never destroyed: other threads may still be in a call when the process ends.
  static auto& process = *new ProcessConversion;
  return process;
}

/// What the host calls with, as it came.
struct Arguments {
  const char* path;
  float scale;
  int32_t rotationY, rotationX;
  const char* boneRenameList;
  void* callbackContext;
  FbxToTs3dStatusCallback statusCallback;
};

bool LeavesOutputsAlone(int32_t result) {
  return result == FBX_TO_TS3D_NO_FILE || result == FBX_TO_TS3D_LOAD_FAILED;
}

void StoreSettings(ConversionJob& job, const Arguments& arguments) {
  job.status.callbackContext = arguments.callbackContext;
  job.status.statusCallback = arguments.statusCallback;
  job.boneRenameList = base::TextOrEmpty(arguments.boneRenameList);
  job.configScale = 1.0f;
  job.nextMeshThreadId = job.nextMaterialThreadId = ts3d::kFirstThreadId;
  job.rotationY = arguments.rotationY;
  job.rotationX = arguments.rotationX;
}

int32_t Finish(ts3d::Conversion& conversion, const Arguments& arguments, const char* meshList) {
  try {
    StoreSettings(conversion.Job(), arguments);
    return static_cast<int32_t>(
        conversion.Finish({base::TextOrEmpty(arguments.path), arguments.scale, base::TextOrEmpty(meshList)}));
  } catch (...) {
    return FBX_TO_TS3D_DOCUMENT_UNREADABLE;  // Out of memory, mostly.
  }
}

int32_t Convert(ts3d::Conversion& conversion, const Arguments& arguments,
                FbxToTs3dTextureCallback textureCallback, int32_t meshOptionMode, const char* meshOptionList,
                bool finishOnly) {
  ConversionJob& job = conversion.Job();
  try {
    job.failureCode = ts3d::ConversionResult::NoFile;
    StoreSettings(job, arguments);
    job.meshOptionMode = meshOptionMode;
    job.textureCallback = textureCallback;
    job.meshOptionList = base::TextOrEmpty(meshOptionList);
    if (!finishOnly) return static_cast<int32_t>(conversion.Convert({base::TextOrEmpty(arguments.path), {}}));
    const int32_t result = Finish(conversion, arguments, nullptr);
    if (result != FBX_TO_TS3D_OK) job.vertexTotal = job.polygonTotal = 0;
    return result;
  } catch (...) {
    // Out of memory, mostly; the code is that of the step that was running.
    job.vertexTotal = job.polygonTotal = 0;
    return static_cast<int32_t>(job.failureCode);
  }
}

}  // namespace

extern "C" {

int32_t FBX_TO_TS3D_CALL ConvertFBXFileFinish(const char* sourcePath, float scalePercent, int32_t rotationY,
                                              int32_t rotationX, const char* boneRenameList,
                                              const char* meshList, void* callbackContext,
                                              FbxToTs3dStatusCallback statusCallback) {
  ProcessConversion& process = Process();
  const ts3d::Turn turn(process.turnstile);
  if (!turn.IsGranted()) return FBX_TO_TS3D_BUSY;
  const platform::PathReading reading(sourcePath ? sourcePath : "");
  return Finish(
      process.conversion,
      {sourcePath, scalePercent, rotationY, rotationX, boneRenameList, callbackContext, statusCallback},
      meshList);
}

int32_t FBX_TO_TS3D_CALL ConvertFBXFile3(const char* fbxPath, float scale, int32_t rotationY,
                                         int32_t rotationX, int32_t finishOnly, const char* boneRenameList,
                                         int32_t* vertexTotalOut, int32_t* polygonTotalOut,
                                         void* callbackContext, FbxToTs3dStatusCallback statusCallback,
                                         FbxToTs3dTextureCallback textureCallback, int32_t meshOptionMode,
                                         const char* meshOptionList) {
  ProcessConversion& process = Process();
  const ts3d::Turn turn(process.turnstile);
  if (!turn.IsGranted()) return FBX_TO_TS3D_BUSY;
  const platform::PathReading reading(fbxPath ? fbxPath : "");
  // Hosts fill only the low byte of the flag's slot.
  const int32_t result =
      Convert(process.conversion,
              {fbxPath, scale, rotationY, rotationX, boneRenameList, callbackContext, statusCallback},
              textureCallback, meshOptionMode, meshOptionList, (finishOnly & 0xff) != 0);
  if (LeavesOutputsAlone(result)) return result;
  if (vertexTotalOut) *vertexTotalOut = process.conversion.Job().vertexTotal;
  if (polygonTotalOut) *polygonTotalOut = process.conversion.Job().polygonTotal;
  return result;
}

int32_t FBX_TO_TS3D_CALL ConvertFBXFile2(const char* fbxPath, float scale, int32_t rotationY,
                                         int32_t rotationX, int32_t finishOnly, const char* boneRenameList,
                                         int32_t* vertexTotalOut, int32_t* polygonTotalOut,
                                         void* callbackContext, FbxToTs3dStatusCallback statusCallback,
                                         FbxToTs3dTextureCallback textureCallback, int32_t meshOptionMode) {
  return ConvertFBXFile3(fbxPath, scale, rotationY, rotationX, finishOnly, boneRenameList, vertexTotalOut,
                         polygonTotalOut, callbackContext, statusCallback, textureCallback, meshOptionMode,
                         nullptr);
}

int32_t FBX_TO_TS3D_CALL ConvertFBXFile(const char* fbxPath, float scale, int32_t rotationY,
                                        int32_t rotationX, int32_t finishOnly, const char* boneRenameList,
                                        int32_t* vertexTotalOut, int32_t* polygonTotalOut,
                                        void* callbackContext, FbxToTs3dStatusCallback statusCallback,
                                        FbxToTs3dTextureCallback textureCallback) {
  return ConvertFBXFile3(fbxPath, scale, rotationY, rotationX, finishOnly, boneRenameList, vertexTotalOut,
                         polygonTotalOut, callbackContext, statusCallback, textureCallback, 0, nullptr);
}

}  // extern "C"
