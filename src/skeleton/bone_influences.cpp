// SPDX-License-Identifier: MIT
#include "skeleton/bone_influences.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numeric>

#include "core/names.h"
#include "scene/model/node.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

constexpr float kUsedWeight = 0.05f;

/// Identifier of the bone that `cluster` follows, or -1.
int32_t FindBone(const scene::KFbxCluster& cluster, const ModelSource& model, const SkeletonState& skeleton) {
  if (!cluster.GetLink()) return -1;
  std::string name;
  const int32_t id = BoneOfLink(*cluster.GetLink(), model, skeleton, name);
  if (id < 0 && !SanitizeMeshName(cluster.GetLink()->GetName()).empty())
    model.status.Send(Notice::UnknownLink, name);
  return id;
}

/// A cluster that follows a bone.
struct BoneCluster {
  const scene::KFbxCluster* cluster;
  int32_t bone;
};

/// Puts what each cluster says about each control point into one row per control point. Counts first and
/// fills then, so that nothing is held twice; linear in the pairs.
class InfluenceRows {
 public:
  /// @param most  influences of a control point; 0: all
  InfluenceRows(int32_t controlPointCount, int32_t most)
      : most_(most <= 0 ? kNone : static_cast<uint32_t>(most)),
        lastOf_(static_cast<size_t>(controlPointCount), kNone),
        ends_(static_cast<size_t>(controlPointCount)) {}

  /// Makes room for the pairs of `cluster`. False when all clusters together have more than can be numbered.
  bool Count(const scene::KFbxCluster& cluster) {
    for (const int32_t index : cluster.GetControlPointIndices()) {
      if (!IsControlPoint(index)) continue;
      if (total_ == kNone - 1) return false;
      ++ends_[static_cast<size_t>(index)];
      ++total_;
    }
    return true;
  }

  void Allocate() {
    weights_.Allocate(total_);
    uint32_t sum = 0;
    for (uint32_t& end : ends_) {
      const uint32_t count = end;
      end = sum;
      sum += count;
    }
    begins_ = ends_;
  }

  /// @return whether some control point's weight makes the bone count as used
  bool Fill(const BoneCluster& source) {
    const std::span<const int32_t> indices = source.cluster->GetControlPointIndices();
    const std::span<const double> weights = source.cluster->GetControlPointWeights();
    const uint32_t number = clusterCount_++;
    for (size_t i = 0; i < indices.size(); ++i) {
      if (!IsControlPoint(indices[i])) continue;
      const auto point = static_cast<size_t>(indices[i]);
      const auto weight = static_cast<float>(weights[i]);
      if (lastOf_[point] == number) {
        weights_[ends_[point] - 1].weight += weight;
      } else {
        lastOf_[point] = number;
        weights_[ends_[point]++] = {source.bone, weight};
      }
    }
    return std::any_of(indices.begin(), indices.end(), [&](int32_t index) {
      return IsControlPoint(index) && weights_[ends_[static_cast<size_t>(index)] - 1].weight > kUsedWeight;
    });
  }

  InfluenceTable Take() {
    uint32_t written = 0;
    for (size_t point = 0; point < ends_.size(); ++point) {
      written = MergeRow(begins_[point], ends_[point], written);
      ends_[point] = written;
    }
    weights_.Shorten(written);
    return {std::move(ends_), std::move(weights_)};
  }

 private:
  static constexpr uint32_t kNone = 0xffffffff;

  using Row = BoneWeight*;

  static void SortRow(Row begin, Row end) {
    const auto byBone = [](const BoneWeight& a, const BoneWeight& b) { return a.bone < b.bone; };
    constexpr std::ptrdiff_t kShort = 16;
    if (end - begin > kShort) return std::stable_sort(begin, end, byBone);
    for (Row i = begin; i != end; ++i) {
      // Clusters mostly come in the order of their bones.
      if (i != begin && byBone(*i, *(i - 1))) std::rotate(std::upper_bound(begin, i, *i, byBone), i, i + 1);
    }
  }

  bool IsControlPoint(int32_t index) const { return index >= 0 && static_cast<size_t>(index) < ends_.size(); }

  bool IsMerged(uint32_t begin, uint32_t end) {
    for (uint32_t i = begin + 1; i < end; ++i) {
      if (weights_[i - 1].bone >= weights_[i].bone) return false;
    }
    return true;
  }

  /// Orders a row by bone, adds up what two clusters of one bone say, and moves it to `written`.
  /// @return the end of the moved row
  uint32_t MergeRow(uint32_t begin, uint32_t end, uint32_t written) {
    if (begin == written && IsMerged(begin, end)) return KeepStrongest(begin, end);
    SortRow(weights_.begin() + begin, weights_.begin() + end);
    const uint32_t first = written;
    for (uint32_t i = begin; i < end; ++i) {
      if (written > first && weights_[written - 1].bone == weights_[i].bone) {
        weights_[written - 1].weight += weights_[i].weight;
      } else {
        weights_[written++] = weights_[i];
      }
    }
    return KeepStrongest(first, written);
  }

  /// Of equally strong ones the first; they keep their order.
  /// @return the end of what is left of the row
  uint32_t KeepStrongest(uint32_t begin, uint32_t end) {
    if (end - begin <= most_) return end;
    strongest_.resize(end - begin);
    std::iota(strongest_.begin(), strongest_.end(), begin);
    const auto strength = [&](uint32_t i) {
      const float weight = weights_[i].weight;
      return std::isnan(weight) ? -std::numeric_limits<float>::infinity() : weight;
    };
    const auto last = strongest_.begin() + static_cast<std::ptrdiff_t>(most_);
    std::nth_element(strongest_.begin(), last, strongest_.end(), [&](uint32_t a, uint32_t b) {
      return strength(a) != strength(b) ? strength(a) > strength(b) : a < b;
    });
    std::sort(strongest_.begin(), last);
    for (uint32_t i = 0; i < most_; ++i) weights_[begin + i] = weights_[strongest_[i]];
    return begin + most_;
  }

  uint32_t most_;
  std::vector<uint32_t> strongest_;
  std::vector<uint32_t> lastOf_;  ///< the last cluster that named each control point
  std::vector<uint32_t> begins_, ends_;
  scene::FbxArray<BoneWeight> weights_;
  uint32_t total_ = 0;
  uint32_t clusterCount_ = 0;
};

/// Clusters of all skins whose link is a bone, in order.
std::vector<BoneCluster> FindBoneClusters(const scene::KFbxMesh& mesh, const ModelSource& model,
                                          const SkeletonState& skeleton) {
  std::vector<BoneCluster> found;
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    const scene::KFbxSkin& skin = *mesh.GetSkin(s);
    for (int c = 0; c < skin.GetClusterCount(); ++c) {
      const int32_t bone = FindBone(*skin.GetCluster(c), model, skeleton);
      if (bone >= 0) found.push_back({skin.GetCluster(c), bone});
    }
  }
  return found;
}

}  // namespace

int32_t BoneOfLink(const scene::KFbxNode& link, const ModelSource& model, const SkeletonState& skeleton,
                   std::string& name) {
  name = SanitizeMeshName(link.GetName());
  if (model.settings.repairs.joinRoots) {
    // Joined armatures often have the same names.
    if (const auto own = skeleton.boneOf.find(&link); own != skeleton.boneOf.end()) return own->second;
  }
  if (name.empty()) return -1;
  const int32_t id = skeleton.bones.IdByName(name);
  if (id >= 0) return id;
  // Namespaces that cleaning left in front.
  name.erase(0, name.rfind(':') + 1);
  return skeleton.bones.IdByName(name);
}

InfluenceTable GatherBoneInfluences(const scene::KFbxMesh& mesh, const ModelSource& model,
                                    SkeletonState& skeleton) {
  const std::vector<BoneCluster> clusters = FindBoneClusters(mesh, model, skeleton);
  InfluenceRows rows(mesh.GetControlPointsCount(), model.settings.mostInfluences);
  for (const BoneCluster& source : clusters) {
    if (!rows.Count(*source.cluster)) throw std::bad_alloc();
  }
  rows.Allocate();
  for (const BoneCluster& source : clusters) {
    if (rows.Fill(source)) skeleton.bones.MarkById(source.bone);
  }
  return rows.Take();
}

}  // namespace ts3d
