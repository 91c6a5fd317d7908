// SPDX-License-Identifier: MIT
//
// What is compared is what other programs draw: the runtime, and a reader of exports that is not ours.
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <assimp/Importer.hpp>

#include "export/export_gltf.h"
#include "prove/compare.h"
#include "prove/runtime_pose.h"
#include "support/arm.h"
#include "support/runtime_actor.h"

namespace {

using prove::Affine;
using prove::BonePlace;
using prove::Point;
using support::Arm;
using support::ModelAndPackage;

/// Poses a model and its package, and holds what another program draws against the model.
class Poser {
 public:
  /// @param isActor  the package stands turned up
  explicit Poser(const ModelAndPackage& converted, bool isActor = false)
      : skeleton_(converted.actor.skeleton),
        rig_(prove::ReadModelRig(*converted.scene, skeleton_, isActor)),
        matches_(prove::MatchMeshes(*converted.scene, rig_, converted.actor)),
        diagonal_(prove::MeasureDiagonal(rig_, matches_)) {}

  /// Calls `draw(places, mesh)` in several poses for each mesh file, which gives the places of its vertices.
  template <typename Draw>
  void ExpectTheModel(const Draw& draw) const {
    EXPECT_FALSE(matches_.meshes.empty());
    EXPECT_TRUE(matches_.unmatched.empty());
    for (const prove::Pose& pose : prove::MakePoses(skeleton_, rig_, 3, 12)) {
      const auto places = pose.kind == prove::Pose::Kind::Present
                              ? prove::PlacesOf(skeleton_, rig_, prove::PresentWorlds(rig_))
                              : prove::SkeletonPlaces(skeleton_, rig_, pose.turns);
      std::vector<Point> points;
      for (const prove::MatchedMesh& mesh : matches_.meshes) {
        prove::Deform(matches_.models[mesh.model], prove::PoseModel(rig_, pose), points);
        const std::vector<Point> drawn = draw(places, mesh.file->name);
        ASSERT_EQ(drawn.size(), mesh.points.size());
        double worst = 0.0;
        for (size_t v = 0; v < drawn.size(); ++v) {
          const Point model = rig_.actorTurn.Apply(points[mesh.points[v]]);
          worst = std::max(worst, prove::Distance(drawn[v], model));
        }
        EXPECT_LT(worst, prove::kLimit * diagonal_) << pose.name << ", " << mesh.file->name;
      }
    }
  }

 private:
  const actor::Skeleton& skeleton_;
  prove::ModelRig rig_;
  prove::Matches matches_;
  double diagonal_;
};

TEST(ProveReaders, TheRuntimeDrawsWhatIsCompared) {
  const ModelAndPackage converted(Arm({}));
  support::RuntimeActor runtime(converted.host.ReadPackage());
  Poser(converted).ExpectTheModel([&](const std::vector<BonePlace>& places, const std::string& name) {
    std::vector<std::pair<CalVector, CalQuaternion>> animated;
    for (const auto& [turn, at] : places) {
      const auto f = [](double x) { return static_cast<float>(x); };
      animated.emplace_back(CalVector(f(at[0]), f(at[1]), f(at[2])),
                            CalQuaternion(f(turn[0]), f(turn[1]), f(turn[2]), f(-turn[3])));
    }
    runtime.Pose(animated);
    const auto& mesh = *std::find_if(runtime.Meshes().begin(), runtime.Meshes().end(),
                                     [&](const auto& each) { return each.name == name; });
    std::vector<Point> points;
    for (const auto& [x, y, z] : runtime.Skinned(mesh)) points.push_back({x, y, z});
    return points;
  });
}

/// An export as the reader has it.
class ReadExport {
 public:
  explicit ReadExport(const actor::Actor& actor) : actor_(actor) {
    const std::string glb =
        ExportGlb(actor, "test", [](const actor::Picture&) { return actor::EncodedPicture(); });
    scene_ = importer_.ReadFileFromMemory(glb.data(), glb.size(), 0, "glb");
    if (!scene_) throw std::runtime_error(importer_.GetErrorString());
  }

  std::vector<Point> Draw(const std::vector<BonePlace>& places, const std::string& name) {
    for (size_t i = 0; i < places.size(); ++i) {
      const auto& [turn, at] = places[i];
      const auto f = [](double x) { return static_cast<ai_real>(x); };
      const aiVector3D place(f(at[0]), f(at[1]), f(at[2]));
      Node(actor_.skeleton.bones[i].name).mTransformation = aiMatrix4x4(
          aiVector3D(1, 1, 1), aiQuaternion(f(turn[3]), f(turn[0]), f(turn[1]), f(turn[2])), place);
    }
    const aiMesh& mesh = Mesh(name);
    std::vector<Point> points(mesh.mNumVertices);
    for (unsigned b = 0; b < mesh.mNumBones; ++b) {
      const aiBone& bone = *mesh.mBones[b];
      const aiMatrix4x4 move = World(&Node(bone.mName.C_Str())) * bone.mOffsetMatrix;
      for (unsigned i = 0; i < bone.mNumWeights; ++i) {
        const auto& [vertex, weight] = bone.mWeights[i];
        const aiVector3D moved = move * mesh.mVertices[vertex];
        for (unsigned k = 0; k < 3; ++k)
          points[vertex][k] += static_cast<double>(weight) * static_cast<double>(moved[k]);
      }
    }
    return points;
  }

 private:
  aiNode& Node(const std::string& name) const { return *scene_->mRootNode->FindNode(name.c_str()); }
  const aiMesh& Mesh(const std::string& name) const {
    return **std::find_if(scene_->mMeshes, scene_->mMeshes + scene_->mNumMeshes,
                          [&](const aiMesh* mesh) { return name == mesh->mName.C_Str(); });
  }
  static aiMatrix4x4 World(const aiNode* node) {
    aiMatrix4x4 matrix;
    for (; node; node = node->mParent) matrix = node->mTransformation * matrix;
    return matrix;
  }

  const actor::Actor& actor_;
  Assimp::Importer importer_;
  const aiScene* scene_ = nullptr;
};

TEST(ProveReaders, ExportsMoveAsTheModel) {
  const auto expect = [](const ModelAndPackage& converted, bool isActor) {
    ReadExport exported(converted.actor);
    Poser(converted, isActor).ExpectTheModel([&](const auto& places, const std::string& name) {
      return exported.Draw(places, name);
    });
  };
  expect(ModelAndPackage(Arm({})), false);
  expect(ModelAndPackage(support::ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx")), false);
  expect(ModelAndPackage(Arm({}).Text(), "Actor (Male).fbx"), true);
}

}  // namespace
