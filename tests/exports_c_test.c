/* SPDX-License-Identifier: MIT */
/* The header has to serve hosts that are written in C. */
#include "fbx_to_ts3d.h"

int32_t ConvertFromC(const char* path, int32_t* vertexTotal, int32_t* polygonTotal);

int32_t ConvertFromC(const char* path, int32_t* vertexTotal, int32_t* polygonTotal) {
  FbxToTs3dStatusCallback status = 0;
  FbxToTs3dTextureCallback texture = 0;
  enum FbxToTs3dResult result = (enum FbxToTs3dResult)ConvertFBXFile(path, 100.0f, 0, 0, 0, 0, vertexTotal,
                                                                     polygonTotal, 0, status, texture);
  return (int32_t)result;
}
