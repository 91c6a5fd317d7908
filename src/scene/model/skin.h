// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "scene/math/matrix.h"
#include "scene/model/lazy.h"
#include "scene/model/object.h"

namespace scene {

class KFbxNode;

/// The influence of one bone on the control points of a mesh.
class KFbxCluster : public KFbxObject {
 public:
  enum class ELinkMode { eNORMALIZE = 0, eADDITIVE = 1, eTOTAL1 = 2 };

  KFbxCluster(std::string_view name, RecordRef record);

  /// The bone, or null.
  const KFbxNode* GetLink() const { return link_; }
  ELinkMode GetLinkMode() const { return mode_; }
  const KFbxNode* GetAssociateModel() const { return associate_; }

  RecordRef GetRecord() const { return record_; }
  int GetControlPointIndicesCount() const { return static_cast<int>(ReadPairs().indices.size()); }
  /// Not checked against the mesh.
  std::span<const int32_t> GetControlPointIndices() const { return ReadPairs().indices.View(); }
  /// One for each index.
  std::span<const double> GetControlPointWeights() const { return ReadPairs().weights.View(); }
  void ReleaseArrays() { pairs_.Release(); }
  /// Bytes that the arrays say they take when they are decoded.
  uint64_t GetClaim() const;

  struct Pairs {
    FbxArray<int32_t> indices;
    FbxArray<double> weights;
  };
  /// Both arrays, decoded for the caller alone.
  Pairs DecodePairs() const;

  /// World transform of the mesh node at bind time; none when the file has none. Files store it relative to
  /// the link, which this undoes.
  std::optional<KFbxXMatrix> GetTransformMatrix() const;
  /// World transform of the link at bind time.
  std::optional<KFbxXMatrix> GetTransformLinkMatrix() const { return transformLink_; }
  /// World transform of the associate model at bind time.
  std::optional<KFbxXMatrix> GetTransformAssociateModelMatrix() const { return transformAssociate_; }

  // For whoever builds a scene.
  void SetLink(const KFbxNode* link) {
    if (!link_) link_ = link;
  }
  void SetAssociateModel(const KFbxNode* associate) { associate_ = associate; }

 private:
  const Pairs& ReadPairs() const {
    return pairs_.Get([this] { return DecodePairs(); });
  }

  RecordRef record_;
  const KFbxNode* link_ = nullptr;
  const KFbxNode* associate_ = nullptr;
  ELinkMode mode_ = ELinkMode::eNORMALIZE;
  std::optional<KFbxXMatrix> storedTransform_, transformLink_, transformAssociate_;
  Lazy<Pairs> pairs_;
};

/// A skin deformer.
class KFbxSkin : public KFbxObject {
 public:
  using KFbxObject::KFbxObject;

  int GetClusterCount() const { return static_cast<int>(clusters_.size()); }
  const KFbxCluster* GetCluster(int i) const { return clusters_[static_cast<size_t>(i)]; }
  void AddCluster(KFbxCluster& cluster) { clusters_.push_back(&cluster); }
  void ReleaseArrays();

 private:
  std::vector<KFbxCluster*> clusters_;
};

/// One target of a blend shape at its default weight.
struct KFbxShape {
  RecordRef record;   ///< holds "Indexes" and "Vertices", offsets from the base mesh
  double factor = 0;  ///< 1 for fully on

  /// Bytes that the arrays say they take when they are decoded.
  uint64_t GetClaim() const;
};

/// Adds the offsets of `shape` to `points` (x, y, z each), once for each index that exists.
void ApplyShape(const KFbxShape& shape, std::span<double> points);

/// A matrix record of sixteen numbers; none when it is absent or has another count.
std::optional<KFbxXMatrix> ReadMatrix(RecordRef record);

}  // namespace scene
