// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "fbx_to_ts3d.h"

namespace ts3d {

/// What a conversion, or the final settings of one, came to; the numbers are those of the exported functions.
enum class ConversionResult : int32_t {
  Success = FBX_TO_TS3D_OK,
  NoFile = FBX_TO_TS3D_NO_FILE,
  LoadFailed = FBX_TO_TS3D_LOAD_FAILED,
  PackageFailed = FBX_TO_TS3D_PACKAGE_FAILED,
  SkeletonFailed = FBX_TO_TS3D_SKELETON_FAILED,
  NoMesh = FBX_TO_TS3D_NO_MESH,
  DocumentUnreadable = FBX_TO_TS3D_DOCUMENT_UNREADABLE,
  DocumentUnwritable = FBX_TO_TS3D_DOCUMENT_UNWRITABLE,
  UpdateFailed = FBX_TO_TS3D_UPDATE_FAILED
};

}  // namespace ts3d
