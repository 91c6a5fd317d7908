// SPDX-License-Identifier: MIT
#include "preview/heat_actor.h"

#include <algorithm>
#include <cmath>

#include "prove/compare.h"

namespace preview {
namespace {

using actor::Actor;

constexpr const char* kGradient = "heat.tga";
constexpr double kHottest = 0.1;  ///< of the diagonal
/// Between the two bodies, in parts of the wider one.
constexpr double kBetweenBodies = 0.15;

/// Blue, cyan, green, yellow, red from left to right, as a picture file.
std::string GradientFile() {
  constexpr int kWidth = 256, kHeight = 4;
  constexpr Vector kColours[] = {{40, 70, 200}, {0, 190, 220}, {40, 180, 70}, {240, 210, 0}, {220, 30, 20}};
  std::string file(18, '\0');
  file[2] = 2;  // plain colours
  file[13] = 1;
  file[14] = kHeight;
  file[16] = 24;
  for (int i = 0; i < kWidth * kHeight; ++i) {
    const double at = 4.0 * (i % kWidth) / (kWidth - 1);
    const auto left = std::min(static_cast<size_t>(at), size_t{3});
    const double share = at - static_cast<double>(left);
    const Vector colour = kColours[left] * (1.0 - share) + kColours[left + 1] * share;
    for (const size_t part : {2u, 1u, 0u})
      file += static_cast<char>(static_cast<unsigned char>(colour[part]));
  }
  return file;
}

/// Where the colour of an error is in the gradient, away from its edges.
float PlaceOf(double error) {
  const double powers = std::log10(std::max(error, prove::kLimit) / prove::kLimit);
  const double part = std::min(powers / std::log10(kHottest / prove::kLimit), 1.0);
  return static_cast<float>(0.01 + 0.98 * part);
}

/// Builds both bodies in a space that stands upright.
class HeatBuilder {
 public:
  HeatBuilder(const prove::HeatMap& heat, const Stand& stand, double diagonal)
      : stand_(stand), diagonal_(diagonal) {
    base::Box bounds;
    for (const prove::HeatMesh& mesh : heat.meshes) {
      for (const auto* points : {&mesh.model, &mesh.package}) {
        for (const Vector& point : *points) {
          if (IsUsable(point)) bounds.Add(Upright(point));
        }
      }
    }
    beside_ = (1.0 + kBetweenBodies) * bounds.Extent()[0];
    actor::Bone bone;
    bone.name = "model";
    bone.rotation = bone.boneSpaceRotation = {0, 0, 0, -1};
    actor_.skeleton.bones.push_back(bone);
    actor_.pictures.push_back({kGradient, GradientFile()});
  }

  void Add(const actor::Mesh& mesh, const prove::HeatMesh& heat) {
    actor::Mesh& model = AddMesh(mesh, heat.model, -beside_ / 2, "model ");
    AddMaterial(model.name, false);
    actor::Mesh& package = AddMesh(mesh, heat.package, beside_ / 2, "package ");
    AddMaterial(package.name, true);
    for (size_t v = 0; v < package.vertices.size(); ++v) {
      const double error = Length(heat.package[v] - heat.model[v]) / diagonal_;
      package.vertices[v].uv = {std::isfinite(error) ? PlaceOf(error) : PlaceOf(1.0), 0.5f};
    }
  }

  Actor Take() { return std::move(actor_); }

 private:
  static bool IsUsable(const Vector& p) {
    return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
  }
  Vector Upright(const Vector& p) const {
    return {Dot(stand_.side, p), Dot(stand_.up, p), Dot(stand_.front, p)};
  }

  actor::Mesh& AddMesh(const actor::Mesh& mesh, const std::vector<Vector>& points, double beside,
                       const char* prefix) {
    actor::Mesh& copy = actor_.meshes.emplace_back();
    copy.name = prefix + mesh.name;
    copy.faces = mesh.faces;
    copy.influences = {{0, 1.0f}};
    std::vector<Vector> places;
    for (const Vector& point : points) {
      const Vector at = IsUsable(point) ? Upright(point) + Vector{beside, 0, 0} : Vector{beside, 0, 0};
      places.push_back(at);
      actor::Vertex& vertex = copy.vertices.emplace_back();
      for (size_t k = 0; k < 3; ++k) vertex.position[k] = static_cast<float>(at[k]);
      vertex.influenceCount = 1;
    }
    SetNormals(places, copy);
    return copy;
  }

  static void SetNormals(const std::vector<Vector>& places, actor::Mesh& mesh) {
    std::vector<Vector> normals(places.size());
    for (const auto& face : mesh.faces) {
      const auto at = [&](size_t k) { return static_cast<size_t>(face[k]); };
      const Vector normal = Cross(places[at(1)] - places[at(0)], places[at(2)] - places[at(0)]);
      for (size_t k = 0; k < 3; ++k) normals[at(k)] = normals[at(k)] + normal;
    }
    for (size_t v = 0; v < normals.size(); ++v) {
      const Vector normal = Unit(normals[v], {0, 0, 1});
      for (size_t k = 0; k < 3; ++k) mesh.vertices[v].normal[k] = static_cast<float>(normal[k]);
    }
  }

  void AddMaterial(const std::string& name, bool isHot) {
    actor::Material& material = actor_.materials.emplace_back();
    material.name = name;
    material.diffuse =
        isHot ? std::array<int32_t, 4>{255, 255, 255, 255} : std::array<int32_t, 4>{170, 170, 170, 255};
    material.hasMap = isHot;
    if (isHot) material.map = kGradient;
  }

  Stand stand_;
  double diagonal_, beside_ = 0.0;
  Actor actor_;
};

}  // namespace

Actor HeatActor(const Actor& package, const prove::HeatMap& heat, const Stand& stand, double diagonal) {
  HeatBuilder builder(heat, stand, diagonal);
  for (const prove::HeatMesh& drawn : heat.meshes) {
    const auto mesh = std::find_if(package.meshes.begin(), package.meshes.end(),
                                   [&](const actor::Mesh& each) { return each.name == drawn.name; });
    if (mesh != package.meshes.end()) builder.Add(*mesh, drawn);
  }
  return builder.Take();
}

}  // namespace preview
