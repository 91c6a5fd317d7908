// SPDX-License-Identifier: MIT
#include "skeleton/bone_influences.h"

#include <algorithm>

#include "core/names.h"
#include "core/status.h"
#include "scene/model/node.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

constexpr float kUsedWeight = 0.05f;

struct Influence {
  int32_t controlPoint;
  BoneWeight weight;
};

/// Identifier of the bone that `cluster` follows, or -1.
int32_t FindBone(const scene::KFbxCluster& cluster, const ConversionJob& job) {
  if (!cluster.GetLink()) return -1;
  std::string name = SanitizeMeshName(cluster.GetLink()->GetName());
  if (name.empty()) return -1;
  const BoneTree& bones = job.skeleton->bones;
  int32_t id = bones.IdByName(name);
  if (id < 0) {
    // Namespaces that cleaning left in front.
    name.erase(0, name.rfind(':') + 1);
    id = bones.IdByName(name);
  }
  if (id >= 0) return id;
  StatusLog(job, ComposeMessage(">>> Unable to Find BoneID for ", name));
  return -1;
}

/// Sums up what each cluster says about each control point, in time linear in its pairs.
class InfluenceCollector {
 public:
  explicit InfluenceCollector(int32_t controlPointCount)
      : lastOf_(static_cast<size_t>(controlPointCount), kNone) {}

  /// @return whether some control point's weight makes the bone count as used
  bool Add(scene::KFbxCluster& cluster, int32_t bone) {
    const std::span<const int32_t> indices = cluster.GetControlPointIndices();
    const std::span<const double> weights = cluster.GetControlPointWeights();
    const size_t first = influences_.size();
    for (size_t i = 0; i < indices.size(); ++i) {
      if (indices[i] < 0 || static_cast<size_t>(indices[i]) >= lastOf_.size()) continue;
      uint32_t& last = lastOf_[static_cast<size_t>(indices[i])];
      const auto weight = static_cast<float>(weights[i]);
      if (last != kNone && last >= first) {
        influences_[last].weight.weight += weight;
      } else {
        last = static_cast<uint32_t>(influences_.size());
        influences_.push_back({indices[i], {bone, weight}});
      }
    }
    return std::any_of(influences_.begin() + static_cast<std::ptrdiff_t>(first), influences_.end(),
                       [](const Influence& influence) { return influence.weight.weight > kUsedWeight; });
  }

  InfluenceTable Take() {
    std::vector<uint32_t> ends(lastOf_.size());
    for (const Influence& influence : influences_) ++ends[static_cast<size_t>(influence.controlPoint)];
    uint32_t sum = 0;
    for (uint32_t& end : ends) {
      const uint32_t count = end;
      end = sum;
      sum += count;
    }
    std::vector<BoneWeight> rows(influences_.size());
    for (const Influence& influence : influences_) {
      rows[ends[static_cast<size_t>(influence.controlPoint)]++] = influence.weight;
    }
    influences_ = {};
    MergeRows(ends, rows);
    return {std::move(ends), std::move(rows)};
  }

 private:
  static constexpr uint32_t kNone = 0xffffffff;

  using Row = std::vector<BoneWeight>::iterator;

  static void SortRow(Row begin, Row end) {
    const auto byBone = [](const BoneWeight& a, const BoneWeight& b) { return a.bone < b.bone; };
    constexpr std::ptrdiff_t kShort = 16;
    if (end - begin > kShort) return std::stable_sort(begin, end, byBone);
    for (Row i = begin; i != end; ++i) std::rotate(std::upper_bound(begin, i, *i, byBone), i, i + 1);
  }

  /// Orders each row by bone and adds up what two clusters of one bone say.
  static void MergeRows(std::vector<uint32_t>& ends, std::vector<BoneWeight>& rows) {
    uint32_t begin = 0, written = 0;
    for (uint32_t& end : ends) {
      const auto row = rows.begin() + begin;
      SortRow(row, rows.begin() + end);
      const uint32_t first = written;
      for (uint32_t i = begin; i < end; ++i) {
        if (written > first && rows[written - 1].bone == rows[i].bone) {
          rows[written - 1].weight += rows[i].weight;
        } else {
          rows[written++] = rows[i];
        }
      }
      begin = end;
      end = written;
    }
    rows.resize(written);
  }

  std::vector<Influence> influences_;
  std::vector<uint32_t> lastOf_;  ///< last influence of each control point
};

}  // namespace

InfluenceTable GatherBoneInfluences(scene::KFbxMesh& mesh, ConversionJob& job) {
  InfluenceCollector collector(mesh.GetControlPointsCount());
  for (int s = 0; s < mesh.GetSkinCount(); ++s) {
    scene::KFbxSkin& skin = *mesh.GetSkin(s);
    for (int c = 0; c < skin.GetClusterCount(); ++c) {
      scene::KFbxCluster& cluster = *skin.GetCluster(c);
      const int32_t bone = FindBone(cluster, job);
      if (bone >= 0 && collector.Add(cluster, bone)) job.skeleton->bones.MarkById(bone);
    }
  }
  return collector.Take();
}

}  // namespace ts3d
