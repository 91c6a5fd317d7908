// SPDX-License-Identifier: MIT
//
// Why packages move otherwise than their models. docs/prove.md lists the codes.
#pragma once

#include <string_view>

namespace prove {

/// Why a vertex is not where the model has it. Most are faults of rigs, which the format cannot hold.
enum class Cause {
  None,
  NoSkeleton,
  NoBindPose,
  MeshNotBound,
  BoneNotBound,
  ParentNotBound,
  LocalMatrix,
  NodeBetween,
  RootScale,
  ScaledBones,
  MirroredBone,
  UnevenScale,
  ScaledNow,
  OtherBindPose,
  SeveralBindPoses,
  SecondRoot,
  HiddenBones,
  Namesake,
  SameBoneName,
  UnnamedBone,
  UnknownLink,
  NoSkin,
  UnweightedVertices,
  AdditiveSkin,
  TotalOneSkin,
  BadWeights,
  SinglePrecision,
  MostInfluences,  ///< no fault at all: it was asked for
  // Errors of ours.
  WrongPlace,    ///< a vertex lies where neither the model nor the rules put it
  WrongBone,     ///< so does a bone
  WrongWeights,  ///< so does a weight
  Unexplained
};

inline constexpr size_t kCauseCount = static_cast<size_t>(Cause::Unexplained) + 1;

struct CauseWords {
  std::string_view code;  ///< stable; the same as that of `check` where it tells of the same
  bool isAboutBones;      ///< else about meshes
  std::string_view text;
  std::string_view fix;
};

const CauseWords& WordsOf(Cause cause);

/// Whether the converter is at fault.
inline bool IsOurs(Cause cause) { return cause >= Cause::WrongPlace; }

}  // namespace prove
