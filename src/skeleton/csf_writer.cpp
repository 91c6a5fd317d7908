// SPDX-License-Identifier: MIT
#include "skeleton/csf_writer.h"

#include "skeleton/bind_pose.h"
#include "skeleton/extract_bones.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

constexpr int32_t kSkeletonVersion = 900;

void AddDummyBone(BoneTree& bones) {
  BoneNode& dummy = bones.AddChild(bones.Root());
  dummy.name = "dummy_bone";
}

void WriteVector(const scene::KFbxVector4& v, ByteWriter& out) {
  for (size_t i = 0; i < 3; ++i) out.Float32(static_cast<float>(v[i]));
}

void WriteQuaternion(const scene::KFbxQuaternion& q, ByteWriter& out) {
  for (size_t i = 0; i < 4; ++i) out.Float32(static_cast<float>(q[i]));
}

void WriteBone(const BoneNode& bone, ByteWriter& out) {
  out.Int32(static_cast<int32_t>(bone.name.size()) + 1);
  out.Bytes(bone.name.c_str(), bone.name.size() + 1);
  WriteVector(bone.translation, out);
  WriteQuaternion(bone.rotation, out);
  WriteVector(bone.boneSpaceTranslation, out);
  WriteQuaternion(bone.boneSpaceRotation, out);
  out.Int32(bone.parent->id);
  out.Int32(static_cast<int32_t>(bone.children.size()));
  for (const BoneNode* child : bone.children) out.Int32(child->id);
}

}  // namespace

void WriteCsf(BoneTree& bones, ByteWriter& out) {
  if (bones.BoneCount() == 0) AddDummyBone(bones);
  out.Bytes("CSF", 4);
  out.Int32(kSkeletonVersion);
  out.Int32(bones.BoneCount());
  for (const BoneNode* bone : bones.PreOrder()) WriteBone(*bone, out);
}

void ExtractSkeleton(const ModelSource& model, SkeletonState& skeleton) {
  const RepairSettings& repairs = model.settings.repairs;
  if (!repairs.bindFromSkin || !TakeBindPoseOfSkins(model.scene, skeleton))
    ChooseBindPose(model.scene, skeleton);
  if (!skeleton.bindPose && model.isFbxFile) model.status.Send(Notice::NoBindPose);
  if (repairs.joinRoots) JoinRoots(model, skeleton);
  const scene::KFbxNode& root = *model.scene.GetRootNode();
  for (int i = 0; i < root.GetChildCount(); ++i) ExtractBones(*root.GetChild(i), model, skeleton);
  skeleton.hasExtractedBones = skeleton.bones.BoneCount() > 0;
  if (!skeleton.hasExtractedBones && model.isFbxFile) model.status.Send(Notice::NoSkeleton);
}

bool WriteSkeleton(const ModelSource& model, SkeletonState& skeleton, WorkFiles& files) {
  model.status.Send(Notice::WritingSkeleton);
  ExtractSkeleton(model, skeleton);
  WorkFileWriter out(files, "skeleton.csf");
  WriteCsf(skeleton.bones, out);
  return out.Finish();
}

}  // namespace ts3d
