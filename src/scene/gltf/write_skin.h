// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/geometry.h"
#include "scene/gltf/write_bones.h"

namespace scene::gltf {

/// Writes which bones hold the points of meshes.
class SkinWriter {
 public:
  /// @param bones  are there when the first skin is written
  SkinWriter(const Document& document, const Rig& rig, const WrittenBones& bones, RecordWriter& writer,
             ObjectLinks& links)
      : document_(document), rig_(rig), bones_(bones), writer_(writer), links_(links) {}

  /// What the joints of a skin hold.
  /// @param index     of the skin
  /// @param geometry  of the mesh; stays as long as the records, and gives its influences up to them
  /// @param mesh      its identifier
  void WriteSkin(uint32_t index, Geometry& geometry, int64_t mesh);
  /// A mesh without a skin goes along with the bone that it hangs on.
  void WriteHold(uint32_t bone, const Geometry& geometry, int64_t mesh);

 private:
  void BeginCluster(int64_t bone, const KFbxXMatrix& transform, const KFbxXMatrix& link, int64_t skin);
  int64_t WriteSkinObject(int64_t mesh);

  const Document& document_;
  const Rig& rig_;
  const WrittenBones& bones_;
  RecordWriter& writer_;
  ObjectLinks& links_;
};

}  // namespace scene::gltf
