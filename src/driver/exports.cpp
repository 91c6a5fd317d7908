// SPDX-License-Identifier: MIT
#include "driver/convert.h"
#include "driver/final_settings.h"
#include "fbx_to_ts3d.h"

namespace {

using ts3d::ConversionJob;

/// The one job of the process: final settings build on what the conversion before them left here.
ConversionJob& ProcessJob() {
  static ConversionJob job;
  return job;
}

std::string TextOrEmpty(const char* text) { return text ? text : ""; }

bool LeavesOutputsAlone(int32_t result) {
  return result == FBX_TO_TS3D_NO_FILE || result == FBX_TO_TS3D_LOAD_FAILED;
}

void StoreSettings(ConversionJob& job, int32_t rotationY, int32_t rotationX, const char* boneRenameList,
                   void* callbackContext, FbxToTs3dStatusCallback statusCallback) {
  job.callbackContext = callbackContext;
  job.statusCallback = statusCallback;
  job.boneRenameList = TextOrEmpty(boneRenameList);
  job.configScale = 1.0f;
  job.nextMeshThreadId = job.nextMaterialThreadId = ts3d::kFirstThreadId;
  job.rotationY = rotationY;
  job.rotationX = rotationX;
}

}  // namespace

extern "C" {

int32_t FBX_TO_TS3D_CALL ConvertFBXFileFinish(const char* sourcePath, float scalePercent, int32_t rotationY,
                                              int32_t rotationX, const char* boneRenameList,
                                              const char* meshList, void* callbackContext,
                                              FbxToTs3dStatusCallback statusCallback) {
  int32_t result = FBX_TO_TS3D_DOCUMENT_UNREADABLE;
  try {
    ConversionJob& job = ProcessJob();
    StoreSettings(job, rotationY, rotationX, boneRenameList, callbackContext, statusCallback);
    result = static_cast<int32_t>(
        ts3d::ApplyFinalSettings(job, {TextOrEmpty(sourcePath), scalePercent, TextOrEmpty(meshList)}));
  } catch (...) {
    // Out of memory, mostly.
  }
  return result;
}

int32_t FBX_TO_TS3D_CALL ConvertFBXFile3(const char* fbxPath, float scale, int32_t rotationY,
                                         int32_t rotationX, int32_t finishOnly, const char* boneRenameList,
                                         int32_t* vertexTotalOut, int32_t* polygonTotalOut,
                                         void* callbackContext, FbxToTs3dStatusCallback statusCallback,
                                         FbxToTs3dTextureCallback textureCallback, int32_t meshOptionMode,
                                         const char* meshOptionList) {
  ConversionJob& job = ProcessJob();
  int32_t result = FBX_TO_TS3D_OK;
  try {
    job.failureCode = FBX_TO_TS3D_NO_FILE;
    StoreSettings(job, rotationY, rotationX, boneRenameList, callbackContext, statusCallback);
    job.meshOptionMode = meshOptionMode;
    job.textureCallback = textureCallback;
    job.meshOptionList = TextOrEmpty(meshOptionList);
    // Hosts fill only the low byte of the flag's slot.
    if ((finishOnly & 0xff) != 0) {
      result = ConvertFBXFileFinish(fbxPath, scale, rotationY, rotationX, boneRenameList, nullptr,
                                    callbackContext, statusCallback);
      if (result != FBX_TO_TS3D_OK) job.vertexTotal = job.polygonTotal = 0;
    } else {
      result = static_cast<int32_t>(ts3d::RunConversion(job, {TextOrEmpty(fbxPath), {}}));
    }
  } catch (...) {
    // Out of memory, mostly; the code is that of the step that was running.
    result = job.failureCode;
    job.vertexTotal = job.polygonTotal = 0;
  }
  if (LeavesOutputsAlone(result)) return result;
  if (vertexTotalOut) *vertexTotalOut = job.vertexTotal;
  if (polygonTotalOut) *polygonTotalOut = job.polygonTotal;
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
