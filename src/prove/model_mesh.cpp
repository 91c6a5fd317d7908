// SPDX-License-Identifier: MIT
#include "prove/model_mesh.h"

namespace prove {
namespace {

using scene::KFbxCluster;

std::vector<Point> ToPoints(std::span<const double> numbers) {
  std::vector<Point> points;
  points.reserve(numbers.size() / 3);
  for (size_t i = 0; i + 2 < numbers.size(); i += 3) {
    points.push_back({numbers[i], numbers[i + 1], numbers[i + 2]});
  }
  return points;
}

Affine BindOf(const KFbxCluster& cluster, const RigNode& link, const RigNode& mesh, const Affine& geometric) {
  const auto linkMatrix = cluster.GetTransformLinkMatrix();
  // Files have the place of the mesh relative to the link.
  const auto relative = scene::ReadMatrix(cluster.GetRecord().Child("Transform"));
  if (linkMatrix && relative) return Affine::From(*relative) * geometric;
  const Affine linkBound = linkMatrix ? Affine::From(*linkMatrix) : link.bound;
  return linkBound.Inverse() * mesh.bound * geometric;
}

Influence ReadInfluence(const KFbxCluster& cluster, const ModelRig& rig, const ModelMesh& mesh) {
  Influence influence;
  influence.link = rig.Find(cluster.GetLink());
  if (influence.link < 0) return influence;
  influence.bind = BindOf(cluster, rig.nodes[static_cast<size_t>(influence.link)],
                          rig.nodes[static_cast<size_t>(mesh.node)], mesh.geometric);
  if (cluster.GetLinkMode() == KFbxCluster::ELinkMode::eADDITIVE) {
    influence.associate = rig.Find(cluster.GetAssociateModel());
  }
  if (influence.associate >= 0) {
    const auto matrix = cluster.GetTransformAssociateModelMatrix();
    influence.associateBind =
        matrix ? Affine::From(*matrix) : rig.nodes[static_cast<size_t>(influence.associate)].bound;
  }
  return influence;
}

/// Calls `visit(point, weight)` for what `cluster` says about points that exist.
template <typename Visit>
void ForEachWeight(const KFbxCluster& cluster, size_t pointCount, const Visit& visit) {
  const auto indices = cluster.GetControlPointIndices();
  const auto weights = cluster.GetControlPointWeights();
  for (size_t i = 0; i < indices.size(); ++i) {
    if (indices[i] < 0 || static_cast<size_t>(indices[i]) >= pointCount) continue;
    visit(static_cast<size_t>(indices[i]), weights[i]);
  }
}

void ReadWeights(const std::vector<const KFbxCluster*>& clusters, ModelMesh& mesh) {
  mesh.ends.assign(mesh.points.size(), 0);
  mesh.isNamed.assign(mesh.points.size(), 0);
  for (const KFbxCluster* cluster : clusters) {
    ForEachWeight(*cluster, mesh.points.size(), [&](size_t point, double weight) {
      mesh.isNamed[point] = 1;
      if (weight != 0.0) ++mesh.ends[point];
    });
  }
  uint32_t sum = 0;
  for (uint32_t& end : mesh.ends) {
    const uint32_t count = end;
    end = sum;
    sum += count;
  }
  mesh.weights.resize(sum);
  for (size_t c = 0; c < clusters.size(); ++c) {
    ForEachWeight(*clusters[c], mesh.points.size(), [&](size_t point, double weight) {
      if (weight != 0.0) mesh.weights[mesh.ends[point]++] = {static_cast<uint32_t>(c), weight};
    });
  }
}

void DeformAdditively(const ModelMesh& mesh, const std::vector<Affine>& worlds, const Affine& own,
                      std::vector<Point>& points) {
  const Affine back = own.Inverse();
  std::vector<Affine> moves;
  for (const Influence& influence : mesh.influences) {
    const Affine& link = worlds[static_cast<size_t>(influence.link)];
    if (influence.associate < 0) {
      moves.push_back(link * influence.bind * back);
      continue;
    }
    const Affine& associate = worlds[static_cast<size_t>(influence.associate)];
    moves.push_back(influence.associateBind * associate.Inverse() * link * influence.bind * back);
  }
  for (size_t i = 0; i < points.size(); ++i) {
    Point p = own.Apply(mesh.points[i]);
    for (const Weight& each : mesh.WeightsOf(i)) {
      const Point moved = moves[each.influence].Apply(p);
      for (size_t k = 0; k < 3; ++k) p[k] = moved[k] * each.weight + p[k] * (1.0 - each.weight);
    }
    points[i] = p;
  }
}

}  // namespace

std::span<const Weight> ModelMesh::WeightsOf(size_t point) const {
  if (ends.empty()) return {};
  const size_t begin = point == 0 ? 0 : ends[point - 1];
  return std::span(weights).subspan(begin, ends[point] - begin);
}

ModelMesh ReadModelMesh(scene::KFbxNode& node, const ModelRig& rig) {
  scene::KFbxMesh& source = *node.GetMesh();
  ModelMesh mesh;
  mesh.node = rig.Find(&node);
  mesh.geometric = Affine::From(node.GetGeometricTransform());
  scene::FbxArray<double> numbers = source.TakeControlPoints();
  if (!source.GetShapes().empty()) mesh.modelled = ToPoints(numbers.View());
  for (const scene::KFbxShape& shape : source.GetShapes()) ApplyShape(shape, numbers);
  mesh.points = ToPoints(numbers.View());
  std::vector<const KFbxCluster*> clusters;
  for (int s = 0; s < source.GetSkinCount(); ++s) {
    for (int c = 0; c < source.GetSkin(s)->GetClusterCount(); ++c) {
      const KFbxCluster& cluster = *source.GetSkin(s)->GetCluster(c);
      if (s == 0 && c == 0) mesh.mode = cluster.GetLinkMode();
      const Influence influence = ReadInfluence(cluster, rig, mesh);
      if (influence.link < 0) continue;
      clusters.push_back(&cluster);
      mesh.influences.push_back(influence);
    }
  }
  if (!clusters.empty()) ReadWeights(clusters, mesh);
  return mesh;
}

void Deform(const ModelMesh& mesh, const std::vector<Affine>& worlds, std::vector<Point>& points) {
  points.resize(mesh.points.size());
  const Affine own = worlds[static_cast<size_t>(mesh.node)] * mesh.geometric;
  if (mesh.mode == ModelMesh::Mode::eADDITIVE) return DeformAdditively(mesh, worlds, own, points);
  std::vector<Affine> moves;
  for (const Influence& influence : mesh.influences) {
    moves.push_back(worlds[static_cast<size_t>(influence.link)] * influence.bind);
  }
  for (size_t i = 0; i < points.size(); ++i) {
    Point sum{};
    double total = 0.0;
    for (const Weight& each : mesh.WeightsOf(i)) {
      const Point moved = moves[each.influence].Apply(mesh.points[i]);
      for (size_t k = 0; k < 3; ++k) sum[k] += moved[k] * each.weight;
      total += each.weight;
    }
    if (mesh.mode == ModelMesh::Mode::eTOTAL1 || total == 0.0) {
      const Point still = own.Apply(mesh.points[i]);
      const double rest = total == 0.0 ? 1.0 : 1.0 - total;
      for (size_t k = 0; k < 3; ++k) points[i][k] = (total == 0.0 ? 0.0 : sum[k]) + still[k] * rest;
    } else {
      for (size_t k = 0; k < 3; ++k) points[i][k] = sum[k] / total;
    }
  }
}

}  // namespace prove
