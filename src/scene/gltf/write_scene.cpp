// SPDX-License-Identifier: MIT
#include "scene/gltf/write_scene.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "scene/gltf/check_place.h"
#include "scene/gltf/rigid_transform.h"
#include "scene/gltf/unique_names.h"
#include "scene/gltf/write_bones.h"
#include "scene/gltf/write_materials.h"
#include "scene/gltf/write_shapes.h"

namespace scene::gltf {
namespace {

constexpr int32_t kFirst[] = {0};

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
        materials_(document, bytes, writer_, links_) {
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
    const int64_t mesh = WriteGeometry(node, geometry);
    links_.Connect(mesh, id);
    if (geometry.materials != std::vector<uint32_t>{kNone}) {
      for (const uint32_t material : geometry.materials) links_.Connect(materials_.IdOf(material), id);
    }
    if (isSkinned) {
      WriteSkin(node.skin, geometry, mesh);
    } else if (rig_.bones.boneAbove[index] != kNone) {
      WriteHold(rig_.bones.boneAbove[index], geometry, mesh);
    }
    tree_.unpackedBytes += geometry.Memory();
  }

  int64_t WriteGeometry(const Node& node, const Geometry& geometry) {
    const int64_t id = links_.NewId();
    writer_.Begin("Geometry").Integer(id).Bytes("").Bytes("Mesh");
    WriteShapes(document_, node, budget_, writer_);
    const size_t triangles = geometry.TriangleCount();
    writer_.Begin("Vertices")
        .Later(3 * size_t{geometry.points.size()},
               [&geometry] { return geometry.points.Placed(geometry.place); })
        .End();
    writer_.Begin("PolygonVertexIndex")
        .Later(3 * triangles, [&geometry] { return geometry.MakeCorners(); })
        .End();
    const auto beginElement = [&](const char* name, const char* mapping) {
      writer_.Begin(name).Integer(0);
      writer_.Begin("MappingInformationType").Bytes(mapping).End();
      writer_.Begin("ReferenceInformationType").Bytes("IndexToDirect").End();
    };
    if (!geometry.uvs.empty()) {
      beginElement("LayerElementUV", "ByPolygonVertex");
      writer_.Begin("UV").Later(2 * geometry.uvs.size(), [&geometry] { return geometry.MakePairs(); }).End();
      writer_.Begin("UVIndex").Later(3 * triangles, [&geometry] { return geometry.MakeCoordinates(); }).End();
      writer_.End();
    }
    const bool isOne = geometry.materials.size() == 1;
    beginElement("LayerElementMaterial", isOne ? "AllSame" : "ByPolygon");
    writer_.Begin("Materials");
    if (isOne) {
      writer_.Array(kFirst);
    } else {
      writer_.Later(triangles, [&geometry] { return geometry.MakeMaterials(); });
    }
    writer_.End();
    writer_.End();
    writer_.End();
    return id;
  }

  /// Begins a cluster; its control points and weights follow.
  void BeginCluster(int64_t bone, const KFbxXMatrix& transform, const KFbxXMatrix& link, int64_t skin) {
    const int64_t id = links_.NewId();
    links_.Connect(id, skin);
    links_.Connect(bone, id);
    writer_.Begin("Deformer").Integer(id).Bytes("").Bytes("Cluster");
    WriteMatrix(writer_, "Transform", transform);
    WriteMatrix(writer_, "TransformLink", link);
  }

  int64_t WriteSkinObject(int64_t mesh) {
    const int64_t id = links_.NewId();
    writer_.Begin("Deformer").Integer(id).Bytes("").Bytes("Skin").End();
    links_.Connect(id, mesh);
    return id;
  }

  void WriteSkin(uint32_t index, Geometry& geometry, int64_t mesh) {
    const Skin& skin = document_.skins[index];
    const BoundSkin& bound = rig_.skins[index];
    const KFbxXMatrix fromWorld = bound.place.Inverse();
    const int64_t id = WriteSkinObject(mesh);
    for (size_t i = 0; i < skin.joints.size(); ++i) {
      const uint32_t joint = skin.joints[i];
      const size_t count = geometry.influences.MostOf(i);
      if (count == 0 || bones_.ids[joint] == kSceneRoot) continue;
      const KFbxXMatrix link = WithoutScale(rig_.places[joint]);
      // Of a skin that does not fit the others each joint takes its points from another place.
      const KFbxXMatrix mesh2bone = link.Inverse() * rig_.places[joint] * bound.inverseBind[i] * fromWorld;
      BeginCluster(bones_.ids[joint], mesh2bone, link, id);
      writer_.Begin("Indexes")
          .Later(count, [&geometry, i] { return geometry.influences.TakePoints(geometry.points, i); })
          .End();
      writer_.Begin("Weights")
          .Later(count, [&geometry, i] { return geometry.influences.TakeWeights(geometry.points, i); })
          .End();
      writer_.End();
    }
  }

  /// A mesh without a skin goes along with the bone that it hangs on.
  void WriteHold(uint32_t bone, const Geometry& geometry, int64_t mesh) {
    const size_t count = geometry.points.size();
    const KFbxXMatrix link = WithoutScale(rig_.places[bone]);
    BeginCluster(bones_.ids[bone], link.Inverse(), link, WriteSkinObject(mesh));
    const auto makeAll = [count] {
      FbxArray<int32_t> points;
      points.Allocate(count);
      std::iota(points.begin(), points.end(), 0);
      return points;
    };
    const auto makeFull = [count] {
      FbxArray<double> weights;
      weights.Allocate(count);
      std::fill(weights.begin(), weights.end(), 1.0);
      return weights;
    };
    writer_.Begin("Indexes").Later(count, makeAll).End();
    writer_.Begin("Weights").Later(count, makeFull).End();
    writer_.End();
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
  UniqueNames meshNames_;
};

}  // namespace

void WriteScene(const Document& document, const BufferBytes& bytes, const Rig& rig,
                const AccessorReader& accessors, Budget& budget, RecordTree& tree,
                std::deque<Geometry>& meshes, std::string& root) {
  root = SceneWriter(document, bytes, rig, accessors, budget, tree, meshes).Write();
}

}  // namespace scene::gltf
