// SPDX-License-Identifier: MIT
#include <algorithm>

#include "scene/assemble/scene_builder.h"

namespace scene {
namespace {

/// Weights of a channel's targets at `percent`. `full` holds the percentage at which each target is fully on,
/// in ascending order; between two of them both count in part.
std::vector<double> TargetFactors(double percent, std::span<const double> full) {
  std::vector<double> factors(full.size());
  size_t upper = 0;
  while (upper < full.size() && full[upper] < percent) ++upper;
  if (upper == full.size()) {
    factors.back() = percent / full.back();
    return factors;
  }
  const double lowerWeight = upper == 0 ? 0.0 : full[upper - 1];
  const double range = full[upper] - lowerWeight;
  const double part = range != 0.0 ? (percent - lowerWeight) / range : 0.0;
  factors[upper] = part;
  if (upper > 0) factors[upper - 1] = 1.0 - part;
  return factors;
}

bool IsUsable(std::span<const double> full) {
  return std::is_sorted(full.begin(), full.end()) && !full.empty() && full.front() > 0.0;
}

}  // namespace

void SceneBuilder::CreateShapes() {
  const size_t count = made_.size();
  constexpr uint32_t kNone = 0xffffffff;
  struct Links {
    uint32_t blend = kNone, mesh = kNone;  ///< of a channel, of a blend
    std::vector<uint32_t> targets;         ///< of a channel
  };
  std::vector<Links> links(count);
  const auto isA = [&](uint32_t index, ObjectKind kind, std::string_view subType) {
    return index != ObjectTable::kRoot && table_[index].kind == kind && table_[index].subType == subType;
  };
  for (const auto& [source, destination, property] : table_.Connections()) {
    if (!property.empty()) continue;
    if (isA(source, ObjectKind::Geometry, "Shape") &&
        isA(destination, ObjectKind::Deformer, "BlendShapeChannel")) {
      links[destination].targets.push_back(source);
    } else if (isA(source, ObjectKind::Deformer, "BlendShapeChannel") &&
               isA(destination, ObjectKind::Deformer, "BlendShape")) {
      links[source].blend = destination;
    } else if (isA(source, ObjectKind::Deformer, "BlendShape") && Made<KFbxMesh>(destination)) {
      links[source].mesh = destination;
    }
  }
  for (uint32_t i = 0; i < count; ++i) {
    if (auto* mesh = Made<KFbxMesh>(i)) AddInlineShapes(table_[i], *mesh);
    const auto& [blend, own, targets] = links[i];
    if (blend == kNone || links[blend].mesh == kNone || targets.empty()) continue;
    AddChannel(i, targets, *Made<KFbxMesh>(links[blend].mesh));
  }
}

void SceneBuilder::AddChannel(uint32_t channel, std::span<const uint32_t> targets, KFbxMesh& mesh) {
  const RecordRef record = table_[channel].record;
  const double percent =
      Properties(record).Number("DeformPercent", record.Child("DeformPercent").Number(0, 0.0));
  if (percent == 0.0) return;
  FbxArray<double> full;
  // Some exporters write one weight for each control point there; then a target is fully on at 100.
  if (targets.size() == 1 || !ReadArray(record.Child("FullWeights"), full, targets.size()) ||
      full.size() != targets.size() || !IsUsable(full.View())) {
    for (const uint32_t target : targets.last(1)) mesh.AddShape({table_[target].record, percent / 100.0});
    return;
  }
  const std::vector<double> factors = TargetFactors(percent, full.View());
  for (size_t i = 0; i < targets.size(); ++i) mesh.AddShape({table_[targets[i]].record, factors[i]});
}

/// Version 7.1 and older: "Shape" records inside the geometry, weighted by its property of the same name.
void SceneBuilder::AddInlineShapes(const FbxObject& geometry, KFbxMesh& mesh) {
  std::unordered_map<std::string_view, double> percents;
  bool read = false;
  for (const RecordRef shape : geometry.record) {
    if (shape.Name() != "Shape") continue;
    if (!read) percents = Properties(geometry.record).Numbers();
    read = true;
    const auto percent = percents.find(shape.Text(0));
    if (percent != percents.end() && percent->second != 0.0) mesh.AddShape({shape, percent->second / 100.0});
  }
}

}  // namespace scene
