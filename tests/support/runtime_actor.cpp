// SPDX-License-Identifier: MIT
#include "support/runtime_actor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "support/temp_folder.h"

namespace support {
namespace {

CalVector ToVector(const Floats3& v) { return {v[0], v[1], v[2]}; }
Floats3 ToFloats(const CalVector& v) { return {v.x, v.y, v.z}; }

double Distance(const Floats3& a, const Floats3& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// The runtime's way to turn a vector.
CalVector Turned(const CalQuaternion& q, CalVector v) {
  v *= q;
  return v;
}

std::string WithPicture(std::string material) {
  const size_t empty = material.find("<MAP></MAP>");
  if (empty != std::string::npos) material.insert(empty + 5, "0");
  return material;
}

void Require(bool holds, const std::string& what) {
  if (!holds) throw std::runtime_error("the runtime refuses " + what + ": " + CalError::getLastErrorText());
}

double Diagonal(const std::vector<RuntimeActor::Mesh>& meshes) {
  Floats3 low{1e38f, 1e38f, 1e38f}, high{-1e38f, -1e38f, -1e38f};
  for (const auto& mesh : meshes) {
    for (const CmfVertex& vertex : mesh.file.vertices) {
      for (size_t i = 0; i < 3; ++i) {
        low[i] = std::min(low[i], vertex.position[i]);
        high[i] = std::max(high[i], vertex.position[i]);
      }
    }
  }
  return std::max(Distance(low, high), 1e-6);
}

double WeightBelow(const CmfVertex& vertex, const RuntimeActor& actor, size_t top) {
  double sum = 0;
  for (const auto& [bone, weight] : vertex.influences) {
    if (actor.IsBelow(static_cast<size_t>(bone), top)) sum += weight;
  }
  return sum;
}

/// A bone, not the root, that carries vertices and leaves others alone; 0 when there is none.
size_t FindLimb(const RuntimeActor& actor) {
  for (size_t bone = 1; bone < actor.Bones().size(); ++bone) {
    size_t on = 0, off = 0;
    for (const auto& mesh : actor.Meshes()) {
      for (const CmfVertex& vertex : mesh.file.vertices) {
        const double weight = WeightBelow(vertex, actor, bone);
        on += weight > 0.99 ? 1 : 0;
        off += weight == 0.0 ? 1 : 0;
      }
    }
    if (on > 0 && off > 0) return bone;
  }
  return 0;
}

class RuntimeCheck {
 public:
  RuntimeCheck(const Package& package, const Floats3& offset)
      : actor_(package), offset_(offset), diagonal_(Diagonal(actor_.Meshes())) {}

  RuntimeFigures Run(int limb) {
    // Displaced skeletons lose digits to the displacement.
    tolerance_ = (1e-4 * diagonal_ + 1e-5 * Distance(offset_, {})) / diagonal_;
    for (const auto& mesh : actor_.Meshes()) CheckBindPose(mesh);
    const size_t top = limb < 0 ? FindLimb(actor_) : static_cast<size_t>(limb);
    if (top > 0) CheckLimb(top);
    EXPECT_LE(figures_.deviation, tolerance_) << worst_;
    return figures_;
  }

 private:
  void Compare(const Floats3& actual, const Floats3& expected, const std::string& what) {
    const double deviation = Distance(actual, expected) / diagonal_;
    if (deviation <= figures_.deviation) return;
    figures_.deviation = deviation;
    worst_ = what;
  }

  void CheckBindPose(const RuntimeActor::Mesh& mesh) {
    const std::vector<Floats3> skinned = actor_.Skinned(mesh);
    ++figures_.meshes;
    figures_.vertices += skinned.size();
    for (size_t i = 0; i < skinned.size(); ++i) {
      const Floats3& own = mesh.file.vertices[i].position;
      Compare(skinned[i], {own[0] + offset_[0], own[1] + offset_[1], own[2] + offset_[2]},
              mesh.name + ", bind pose, vertex " + std::to_string(i));
    }
  }

  void CheckLimb(size_t top) {
    std::vector<std::vector<Floats3>> before;
    for (const auto& mesh : actor_.Meshes()) before.push_back(actor_.Skinned(mesh));
    const CalVector pivot = actor_.Bone(top).getTranslationAbsolute();
    const CalQuaternion old = actor_.Bone(top).getRotationAbsolute();
    actor_.Turn(top, {0.5f, 0.5f, 0.5f, 0.5f});
    const CalQuaternion now = actor_.Bone(top).getRotationAbsolute();
    const CalQuaternion back(-old.x, -old.y, -old.z, old.w);
    EXPECT_LE(Distance(ToFloats(actor_.Bone(top).getTranslationAbsolute()), ToFloats(pivot)),
              1e-4 * diagonal_);
    ++figures_.limbs;
    for (size_t m = 0; m < before.size(); ++m) {
      const auto& mesh = actor_.Meshes()[m];
      const std::vector<Floats3> after = actor_.Skinned(mesh);
      for (size_t i = 0; i < after.size(); ++i) {
        const auto weight = static_cast<float>(WeightBelow(mesh.file.vertices[i], actor_, top));
        const CalVector from = ToVector(before[m][i]);
        const CalVector turned = Turned(now, Turned(back, from - pivot)) + pivot;
        Compare(after[i], ToFloats(turned * weight + from * (1.0f - weight)),
                mesh.name + ", turned limb " + actor_.Bones()[top].name + ", vertex " + std::to_string(i));
        figures_.moved += Distance(after[i], before[m][i]) > 1e-3 * diagonal_ ? 1 : 0;
      }
    }
  }

  RuntimeActor actor_;
  Floats3 offset_;
  double diagonal_;
  double tolerance_ = 0.0;
  RuntimeFigures figures_;
  std::string worst_;
};

}  // namespace

RuntimeActor::RuntimeActor(const Package& package) : core_(new CalCoreModel("actor")) {
  const TempFolder folder;
  bones_ = ReadCsf(package["skeleton.csf"]);
  const std::string skeleton = folder.Write("skeleton.csf", package["skeleton.csf"]);
  Require(core_->loadCoreSkeleton(skeleton), "skeleton.csf");
  Require(core_->getCoreSkeleton()->getVectorCoreBone().size() == bones_.size(), "some bones");
  for (const auto& [name, bytes] : package.Members()) {
    if (name.ends_with(".cmf") && !bytes.empty()) {
      Mesh mesh{name.substr(0, name.size() - 4), ReadCmf(bytes),
                core_->loadCoreMesh(folder.Write("m.cmf", bytes))};
      Require(mesh.id >= 0, name);
      meshes_.push_back(std::move(mesh));
    } else if (name.ends_with(".xrf") && !bytes.empty()) {
      Require(core_->loadCoreMaterial(folder.Write("m.xrf", WithPicture(bytes))) >= 0, name);
    }
  }
  model_ = std::make_unique<CalModel>(core_.get());
  for (const Mesh& mesh : meshes_) Require(model_->attachMesh(mesh.id), mesh.name);
  model_->getSkeleton()->calculateState();
}

std::vector<Floats3> RuntimeActor::Skinned(const Mesh& mesh) const {
  std::vector<Floats3> points(mesh.file.vertices.size());
  CalSubmesh& submesh = *model_->getMesh(mesh.id)->getSubmesh(0);
  EXPECT_EQ(submesh.getVertexCount(), static_cast<int>(points.size()));
  if (!points.empty()) model_->getPhysique()->calculateVertices(&submesh, points[0].data());
  return points;
}

void RuntimeActor::Turn(size_t i, const CalQuaternion& turn) {
  CalSkeleton& skeleton = *model_->getSkeleton();
  skeleton.clearState();
  CalQuaternion rotation = turn;
  rotation *= Bone(i).getCoreBone()->getRotation();
  Bone(i).blendState(1.0f, Bone(i).getCoreBone()->getTranslation(), rotation);
  skeleton.lockState();
  skeleton.calculateState();
}

void RuntimeActor::Pose(const std::vector<std::pair<CalVector, CalQuaternion>>& places) {
  CalSkeleton& skeleton = *model_->getSkeleton();
  skeleton.clearState();
  for (size_t i = 0; i < places.size(); ++i) Bone(i).blendState(1.0f, places[i].first, places[i].second);
  skeleton.lockState();
  skeleton.calculateState();
}

bool RuntimeActor::IsBelow(size_t i, size_t top) const {
  while (i != top && bones_[i].parent >= 0) i = static_cast<size_t>(bones_[i].parent);
  return i == top;
}

RuntimeFigures CheckInRuntime(const Package& package, const Floats3& offset, int limb) {
  return RuntimeCheck(package, offset).Run(limb);
}

}  // namespace support
