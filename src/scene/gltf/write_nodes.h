// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/gltf/bytes.h"
#include "scene/gltf/object_links.h"
#include "scene/math/matrix.h"

namespace scene::gltf {

inline constexpr int64_t kSceneRoot = 0;

void WriteMatrix(RecordWriter& writer, const char* name, const KFbxXMatrix& matrix);

/// Writes nodes, and the pose in which they were bound.
class NodeWriter {
 public:
  NodeWriter(RecordWriter& writer, ObjectLinks& links, Budget& budget)
      : writer_(writer), links_(links), budget_(budget) {}

  /// A node of a mesh whose points stand in the world.
  /// @return its identifier
  int64_t WriteMesh(const std::string& name);
  /// @param parent     kSceneRoot, or a bone
  /// @param above      where that one stood when the skins were bound; rigid
  /// @param world      where it stood itself; rigid
  /// @param humanBone  which bone of a human it is; empty: none
  int64_t WriteBone(const std::string& name, int64_t parent, const KFbxXMatrix& above,
                    const KFbxXMatrix& world, std::string_view humanBone = {});
  /// Writes the bind pose of all of them.
  void WritePose();

 private:
  struct PoseEntry {
    int64_t node;
    KFbxXMatrix matrix;
  };

  int64_t Write(const std::string& name, const char* type, int64_t parent, const KFbxXMatrix& local,
                std::string_view humanBone);
  void WriteVector(const char* property, const KFbxVector4& vector);

  RecordWriter& writer_;
  ObjectLinks& links_;
  Budget& budget_;
  std::vector<PoseEntry> pose_;
};

}  // namespace scene::gltf
