// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace ts3d {

/// All that a run says to its host. The texts are in notices.cpp; the values that a text takes come with it.
enum class Notice {
  // The run as a whole.
  InitializingEngine,
  PluginLoaded,  ///< path
  LoadingFbxModel,
  LoadingModel,
  ModelLoaded,
  SdkVersion,    ///< "7.4.0"
  ModelVersion,  ///< the same
  GeneratingSkeleton,
  CreatingPackage,
  ArrayDamaged,  ///< which one
  ModelRefused,  ///< why
  PackageIncomplete,
  PackageCreated,
  // The final settings.
  UpdatingPackage,
  DocumentUnreadable,
  DocumentUnwritable,
  PackageNotOpened,
  PackageNotUpdated,
  // The skeleton. The first value is the bone.
  WritingSkeleton,
  NoBindPose,
  NoSkeleton,
  SeveralRoots,
  MirroredBone,
  UnevenScale,
  LocalMatrix,
  BoneNotInBindPose,
  UnknownLink,
  // Meshes. The first value is the mesh where nothing else is said.
  MeshNotInBindPose,
  PointsDeformed,
  PolygonsLeftOut,  ///< number, mesh
  Triangulated,
  NormalsRecreated,
  WritingMeshHeader,
  WritingMesh,
  DegenerateRemoved,  ///< number
  MeshProgress,       ///< per cent
  BadVertex,
  UnweightedVertices,
  MissingCoordinates,
  // Materials.
  WritingMaterial,  ///< name
  UnknownMaterial,
  PictureToConvert,   ///< source, name in the package
  ConvertingPicture,  ///< path
  // Members of the package. The value is the name.
  MemberNotOpened,
  MemberNotWritten,
  MemberNotClosed,
  FileNotOpened,
  FileNotRead,
  NoMemory
};

/// What a host is told as one notice.
struct NoticeText {
  Notice notice;
  const char* tag;                   ///< of the coded warning that comes first, or null
  std::array<const char*, 5> lines;  ///< null from the end on; values take the places of "{}"
};

const NoticeText& TextOf(Notice notice);

/// Whether a notice only tells how far a run is, which nobody wants to read when it is done.
bool IsProgress(Notice notice);
/// Whether a notice tells of a fault; those have marks in front of their lines.
bool IsFault(Notice notice);

}  // namespace ts3d
