// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "fbx_to_ts3d.h"

namespace ts3d {

/// What a result code means, as a sentence without its point.
constexpr const char* DescribeResult(int32_t code) {
  switch (code) {
    case FBX_TO_TS3D_OK:
      return "success";
    case FBX_TO_TS3D_NO_FILE:
      return "the model file does not exist";
    case FBX_TO_TS3D_LOAD_FAILED:
      return "the model could not be loaded; it is damaged or of a format that is not read";
    case FBX_TO_TS3D_PACKAGE_FAILED:
      return "the package could not be written; is its folder writable and the disk not full?";
    case FBX_TO_TS3D_SKELETON_FAILED:
      return "the skeleton file could not be written; is the model's folder writable?";
    case FBX_TO_TS3D_NO_MESH:
      return "the model has no mesh to convert";
    case FBX_TO_TS3D_DOCUMENT_UNREADABLE:
      return "the .xfg document beside the model is missing, cannot be read or lacks a section; convert the "
             "model again";
    case FBX_TO_TS3D_DOCUMENT_UNWRITABLE:
      return "the .xfg document could not be written; is its folder writable?";
    case FBX_TO_TS3D_UPDATE_FAILED:
      return "the package could not be opened or extended; it is as it was";
    case FBX_TO_TS3D_BUSY:
      return "called out of a callback of the same converter";
    case FBX_TO_TS3D_INVALID_ARGUMENT:
      return "an argument makes no sense";
    case FBX_TO_TS3D_CANCELLED:
      return "cancelled; nothing half done is left";
    case FBX_TO_TS3D_OUTPUT_FAILED:
      return "the package could not be put into its place";
    case FBX_TO_TS3D_OUT_OF_MEMORY:
      return "there is not enough memory";
    default:
      return "unknown error";
  }
}

/// The code of the message that tells of a failure; empty for success.
constexpr const char* NameOfResult(int32_t code) {
  switch (code) {
    case FBX_TO_TS3D_OK:
      return "";
    case FBX_TO_TS3D_NO_FILE:
      return "no-file";
    case FBX_TO_TS3D_LOAD_FAILED:
      return "not-loaded";
    case FBX_TO_TS3D_PACKAGE_FAILED:
      return "package-not-written";
    case FBX_TO_TS3D_SKELETON_FAILED:
      return "skeleton-not-written";
    case FBX_TO_TS3D_NO_MESH:
      return "no-mesh";
    case FBX_TO_TS3D_DOCUMENT_UNREADABLE:
      return "document-unreadable";
    case FBX_TO_TS3D_DOCUMENT_UNWRITABLE:
      return "document-not-written";
    case FBX_TO_TS3D_UPDATE_FAILED:
      return "package-not-updated";
    case FBX_TO_TS3D_BUSY:
      return "busy";
    case FBX_TO_TS3D_INVALID_ARGUMENT:
      return "invalid-argument";
    case FBX_TO_TS3D_CANCELLED:
      return "cancelled";
    case FBX_TO_TS3D_OUTPUT_FAILED:
      return "output-failed";
    case FBX_TO_TS3D_OUT_OF_MEMORY:
      return "out-of-memory";
    default:
      return "failed";
  }
}

}  // namespace ts3d
