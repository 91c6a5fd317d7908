// SPDX-License-Identifier: MIT
#include "scene/model/skin.h"

#include <algorithm>

namespace scene {
namespace {

KFbxCluster::ELinkMode ReadLinkMode(RecordRef cluster) {
  const std::string_view mode = cluster.Child("Mode").Text(0);
  if (mode == "Additive") return KFbxCluster::ELinkMode::eADDITIVE;
  if (mode == "Total1" || mode == "TotalOne") return KFbxCluster::ELinkMode::eTOTAL1;
  return KFbxCluster::ELinkMode::eNORMALIZE;
}

std::optional<KFbxXMatrix> ReadInvertibleMatrix(RecordRef record) {
  std::optional<KFbxXMatrix> matrix = ReadMatrix(record);
  if (matrix && matrix->Determinant() == 0.0) matrix.reset();
  return matrix;
}

}  // namespace

std::optional<KFbxXMatrix> ReadMatrix(RecordRef record) {
  FbxArray<double> numbers;
  if (!ReadArray(record, numbers, 16) || numbers.size() != 16) return std::nullopt;
  KFbxXMatrix matrix;
  for (size_t i = 0; i < 16; ++i) {
    if (i % 4 != 3) matrix.At(i) = numbers[i];
  }
  return matrix;
}

KFbxCluster::KFbxCluster(std::string_view name, RecordRef record)
    : KFbxObject(name),
      record_(record),
      mode_(ReadLinkMode(record)),
      storedTransform_(ReadMatrix(record.Child("Transform"))),
      transformLink_(ReadInvertibleMatrix(record.Child("TransformLink"))),
      transformAssociate_(ReadInvertibleMatrix(record.Child("TransformAssociateModel"))) {}

KFbxCluster::Pairs KFbxCluster::DecodePairs() const {
  Pairs pairs{ArrayOf<int32_t>(record_.Child("Indexes")), ArrayOf<double>(record_.Child("Weights"))};
  const size_t count = std::min(pairs.indices.size(), pairs.weights.size());
  pairs.indices.Shorten(count);
  pairs.weights.Shorten(count);
  return pairs;
}

uint64_t KFbxCluster::GetClaim() const {
  return 4 * ClaimedCount(record_.Child("Indexes")) + 8 * ClaimedCount(record_.Child("Weights"));
}

std::optional<KFbxXMatrix> KFbxCluster::GetTransformMatrix() const {
  if (!storedTransform_ || !transformLink_) return std::nullopt;
  return *transformLink_ * *storedTransform_;
}

void KFbxSkin::ReleaseArrays() {
  for (KFbxCluster* cluster : clusters_) cluster->ReleaseArrays();
}

uint64_t KFbxShape::GetClaim() const {
  return 4 * ClaimedCount(record.Child("Indexes")) + 8 * ClaimedCount(record.Child("Vertices"));
}

void ApplyShape(const KFbxShape& shape, std::span<double> points) {
  FbxArray<int32_t> indices;
  FbxArray<double> offsets;
  if (shape.factor == 0.0 || !ReadArray(shape.record.Child("Indexes"), indices) ||
      !ReadArray(shape.record.Child("Vertices"), offsets)) {
    return;
  }
  const size_t count = std::min(indices.size(), offsets.size() / 3);
  for (size_t i = 0; i < count; ++i) {
    if (indices[i] < 0 || static_cast<size_t>(indices[i]) >= points.size() / 3) continue;
    double* point = &points[3 * static_cast<size_t>(indices[i])];
    for (size_t k = 0; k < 3; ++k) point[k] += shape.factor * offsets[3 * i + k];
  }
}

}  // namespace scene
