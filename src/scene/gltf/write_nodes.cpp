// SPDX-License-Identifier: MIT
#include "scene/gltf/write_nodes.h"

namespace scene::gltf {

void WriteMatrix(RecordWriter& writer, const char* name, const KFbxXMatrix& matrix) {
  double numbers[16];
  for (size_t i = 0; i < 16; ++i) numbers[i] = matrix.At(i);
  writer.Begin(name).Copy(numbers).End();
}

int64_t NodeWriter::WriteMesh(const std::string& name) {
  const int64_t id = Write(name, "Mesh", kSceneRoot, {}, {});
  pose_.push_back({id, {}});
  return id;
}

int64_t NodeWriter::WriteBone(const std::string& name, int64_t parent, const KFbxXMatrix& above,
                              const KFbxXMatrix& world, std::string_view humanBone) {
  const int64_t bone = Write(name, "LimbNode", parent, above.Inverse() * world, humanBone);
  const int64_t attribute = links_.NewId();
  writer_.Begin("NodeAttribute").Integer(attribute).Bytes("").Bytes("LimbNode").End();
  links_.Connect(attribute, bone);
  pose_.push_back({bone, world});
  return bone;
}

int64_t NodeWriter::Write(const std::string& name, const char* type, int64_t parent, const KFbxXMatrix& local,
                          std::string_view humanBone) {
  // Its records, an attribute, an entry of the pose, and as much again for the objects made of them.
  constexpr uint64_t kNodeMemory = 4096;
  budget_.Take(kNodeMemory);
  const int64_t id = links_.NewId();
  writer_.Begin("Model").Integer(id).Text(name).Bytes(type);
  if (!humanBone.empty()) writer_.Begin("HumanBone").Text(humanBone).End();
  writer_.Begin("Properties70");
  WriteVector("Lcl Translation", local.GetT());
  WriteVector("Lcl Rotation", local.GetR());
  writer_.End();
  writer_.End();
  links_.Connect(id, parent);
  return id;
}

void NodeWriter::WriteVector(const char* property, const KFbxVector4& vector) {
  static constexpr const char* kNoLabels[] = {"", "", ""};
  writer_.Begin("P").Bytes(property);
  for (const char* label : kNoLabels) writer_.Bytes(label);
  for (size_t i = 0; i < 3; ++i) writer_.Real(vector[i]);
  writer_.End();
}

void NodeWriter::WritePose() {
  if (pose_.empty()) return;
  writer_.Begin("Pose").Integer(links_.NewId()).Bytes("").Bytes("BindPose");
  for (const auto& [node, matrix] : pose_) {
    writer_.Begin("PoseNode");
    writer_.Begin("Node").Integer(node).End();
    WriteMatrix(writer_, "Matrix", matrix);
    writer_.End();
  }
  writer_.End();
}

}  // namespace scene::gltf
