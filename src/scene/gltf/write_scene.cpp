// SPDX-License-Identifier: MIT
#include "scene/gltf/write_scene.h"

#include <algorithm>
#include <bit>

#include "scene/gltf/check_place.h"
#include "scene/gltf/unique_names.h"
#include "scene/gltf/write_geometry.h"
#include "scene/gltf/write_materials.h"
#include "scene/gltf/write_skin.h"

namespace scene::gltf {
namespace {

class SceneWriter {
 public:
  SceneWriter(const Document& document, const BufferBytes& bytes, const Rig& rig,
              const AccessorReader& accessors, Budget& budget, RecordTree& tree, std::deque<Geometry>& meshes)
      : document_(document),
        rig_(rig),
        accessors_(accessors),
        budget_(budget),
        tree_(tree),
        meshes_(meshes),
        writer_(tree),
        nodes_(writer_, links_, budget),
        materials_(document, bytes, writer_, links_),
        skins_(document, rig, bones_, writer_, links_) {
    tree.version = 7400;
    tree.bigEndian = std::endian::native == std::endian::big;
  }

  std::string Write() {
    writer_.Begin("Objects");
    bones_ = WriteBones(document_, rig_, nodes_);
    for (const uint32_t node : rig_.order) {
      if (document_.nodes[node].mesh != kNone) WriteMesh(node);
    }
    nodes_.WritePose();
    WriteMotions();
    writer_.End();
    links_.Write(writer_);
    return bones_.addedRoot;
  }

 private:
  /// Tools that pack models leave the name with an empty node above.
  std::string NameOfMesh(const Node& node) const {
    const bool hasGroup = node.parent != kNone && !rig_.bones.isBone[node.parent];
    std::string name = node.name.empty() ? document_.meshes[node.mesh].name : node.name;
    if (name.empty() && hasGroup) name = document_.nodes[node.parent].name;
    return name.empty() ? "Mesh_" + std::to_string(node.mesh) : name;
  }

  void WriteMesh(uint32_t index) {
    const Node& node = document_.nodes[index];
    const std::vector<Primitive>& primitives = document_.meshes[node.mesh].primitives;
    const auto hasInfluences = [](const Primitive& p) { return !p.joints.empty() && !p.weights.empty(); };
    const bool isSkinned =
        node.skin != kNone && std::any_of(primitives.begin(), primitives.end(), hasInfluences);
    // Which way triangles turn is said by the node, also where the skin takes the points elsewhere.
    const MeshPlace place{isSkinned ? rig_.skins[node.skin].place : rig_.places[index],
                          rig_.places[index].Determinant() < 0.0};
    const size_t jointCount = isSkinned ? document_.skins[node.skin].joints.size() : 0;
    Geometry& geometry =
        meshes_.emplace_back(JoinPrimitives(document_, accessors_, budget_, node, place, jointCount));
    if (geometry.TriangleCount() == 0) return;
    CheckPlace(document_, index, place.points);
    const int64_t id = nodes_.WriteMesh(meshNames_.Take(NameOfMesh(node)));
    const int64_t mesh = WriteGeometry(document_, node, geometry, budget_, writer_, links_);
    links_.Connect(mesh, id);
    if (geometry.materials != std::vector<uint32_t>{kNone}) {
      for (const uint32_t material : geometry.materials) links_.Connect(materials_.IdOf(material), id);
    }
    if (isSkinned) {
      skins_.WriteSkin(node.skin, geometry, mesh);
    } else if (rig_.bones.boneAbove[index] != kNone) {
      skins_.WriteHold(rig_.bones.boneAbove[index], geometry, mesh);
    }
    tree_.unpackedBytes += geometry.Memory();
  }

  /// Of motions no more is read than that they are there.
  void WriteMotions() {
    static constexpr double kTwoKeys[] = {0, 1};
    for (const std::string& name : document_.motions) {
      writer_.Begin("AnimationStack").Integer(links_.NewId()).Text(name).Bytes("").End();
    }
    if (document_.motions.empty()) return;
    writer_.Begin("AnimationCurve").Integer(links_.NewId()).Bytes("").Bytes("");
    writer_.Begin("KeyTime").Copy(kTwoKeys).End();
    writer_.End();
  }

  const Document& document_;
  const Rig& rig_;
  const AccessorReader& accessors_;
  Budget& budget_;
  RecordTree& tree_;
  std::deque<Geometry>& meshes_;
  RecordWriter writer_;
  ObjectLinks links_;
  NodeWriter nodes_;
  MaterialWriter materials_;
  WrittenBones bones_;
  SkinWriter skins_;
  UniqueNames meshNames_;
};

}  // namespace

void WriteScene(const Document& document, const BufferBytes& bytes, const Rig& rig,
                const AccessorReader& accessors, Budget& budget, RecordTree& tree,
                std::deque<Geometry>& meshes, std::string& root) {
  root = SceneWriter(document, bytes, rig, accessors, budget, tree, meshes).Write();
}

}  // namespace scene::gltf
