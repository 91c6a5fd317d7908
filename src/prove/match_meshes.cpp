// SPDX-License-Identifier: MIT
#include "prove/match_meshes.h"

#include <algorithm>
#include <map>

#include "core/names.h"
#include "scene/geometry/triangulate.h"
#include "scene/model/walk_nodes.h"

namespace prove {
namespace {

constexpr uint32_t kNone = 0xffffffff;

using Corners = std::array<uint32_t, 3>;

/// The triangles of a mesh, by the number of their material.
class SlicedTriangles {
 public:
  SlicedTriangles(scene::KFbxMesh& mesh, int materialCount) : isWhole_(materialCount < 2) {
    const scene::KFbxTriangles triangles = scene::TriangulateMesh(mesh);
    const scene::KFbxLayerElementMaterial* materials = isWhole_ ? nullptr : mesh.GetMaterials();
    for (size_t t = 0; t < triangles.Count(); ++t) {
      int32_t material = 0;
      if (materials) {
        const scene::KFbxPolygon polygon = mesh.GetPolygons()[triangles.Polygon(t)];
        material = materials->GetMaterialIndex(polygon.number, polygon.firstCorner);
      }
      Corners corners;
      for (size_t k = 0; k < 3; ++k) corners[k] = static_cast<uint32_t>(triangles.corners[3 * t + k]);
      byMaterial_[material].push_back(corners);
    }
  }

  /// @return the control point of each vertex of `file`; none when it is not made of these triangles
  std::vector<uint32_t> Match(const actor::Mesh& file, int material, size_t pointCount) {
    std::vector<uint32_t> points(file.vertices.size(), kNone);
    if (isWhole_) {
      // All points are there, used or not, and first.
      if (points.size() < pointCount) return {};
      for (size_t i = 0; i < pointCount; ++i) points[i] = static_cast<uint32_t>(i);
    }
    size_t next = 0;
    for (const Corners& corners : byMaterial_[material]) {
      if (!isWhole_ && IsLeftOut(corners, file, next)) continue;
      if (next == file.faces.size() || !Take(corners, file.faces[next++], points)) return {};
    }
    const bool isComplete = next == file.faces.size() && std::count(points.begin(), points.end(), kNone) == 0;
    return isComplete ? points : std::vector<uint32_t>();
  }

 private:
  /// Triangles that use a vertex twice are left out, unless their corners differ in texture coordinates: then
  /// they have vertices at one place.
  static bool IsLeftOut(const Corners& corners, const actor::Mesh& file, size_t next) {
    for (size_t k = 0; k < 3; ++k) {
      const size_t other = (k + 1) % 3;
      if (corners[k] != corners[other]) continue;
      if (next == file.faces.size()) return true;
      const auto& face = file.faces[next];
      const auto& a = file.vertices[static_cast<size_t>(face[k])];
      const auto& b = file.vertices[static_cast<size_t>(face[other])];
      if (a.position != b.position || face[k] == face[other]) return true;
    }
    return false;
  }

  static bool Take(const Corners& corners, const std::array<int32_t, 3>& face,
                   std::vector<uint32_t>& points) {
    for (size_t k = 0; k < 3; ++k) {
      uint32_t& point = points[static_cast<size_t>(face[k])];
      if (point != kNone && point != corners[k]) return false;
      point = corners[k];
    }
    return true;
  }

  bool isWhole_;
  std::map<int32_t, std::vector<Corners>> byMaterial_;
};

std::string FileName(const std::string& mesh, int material) {
  return material == 0 ? mesh : mesh + "_" + ts3d::LetterSuffix(material - 1);
}

class Matcher {
 public:
  Matcher(const ModelRig& rig, const actor::Actor& actor) : rig_(rig), actor_(actor) {
    for (size_t i = 0; i < actor.meshes.size(); ++i) fileOf_[actor.meshes[i].name] = i;
    found_.resize(actor.meshes.size());
  }

  void Try(scene::KFbxNode& node) {
    scene::KFbxMesh* mesh = node.GetMesh();
    if (!mesh) return;
    const std::string name = ts3d::SanitizeMeshName(node.GetName());
    const int materialCount = node.GetMaterialCount();
    std::vector<std::pair<size_t, int>> wanted;
    for (int material = 0; material < std::max(materialCount, 1); ++material) {
      const auto file = fileOf_.find(FileName(name, material));
      if (file != fileOf_.end() && !found_[file->second].file) wanted.emplace_back(file->second, material);
    }
    if (wanted.empty()) return;
    SlicedTriangles triangles(*mesh, materialCount);
    const auto pointCount = static_cast<size_t>(mesh->GetControlPointsCount());
    const size_t model = matches_.models.size();
    for (const auto& [file, material] : wanted) {
      std::vector<uint32_t> points = triangles.Match(actor_.meshes[file], material, pointCount);
      if (!points.empty()) found_[file] = {&actor_.meshes[file], model, std::move(points)};
      if (found_[file].file && matches_.models.size() == model) {
        matches_.models.push_back(ReadModelMesh(node, rig_));
      }
    }
    mesh->ReleaseArrays();
  }

  Matches Take() {
    for (size_t i = 0; i < found_.size(); ++i) {
      if (found_[i].file) {
        matches_.meshes.push_back(std::move(found_[i]));
      } else if (!actor_.meshes[i].vertices.empty()) {
        matches_.unmatched.push_back(actor_.meshes[i].name);
      }
    }
    return std::move(matches_);
  }

 private:
  const ModelRig& rig_;
  const actor::Actor& actor_;
  std::map<std::string, size_t> fileOf_;
  std::vector<MatchedMesh> found_;  ///< by file
  Matches matches_;
};

}  // namespace

Matches MatchMeshes(scene::KFbxScene& scene, const ModelRig& rig, const actor::Actor& actor) {
  Matcher matcher(rig, actor);
  std::vector<scene::KFbxNode*> nodes;
  scene::WalkNodes(*scene.GetRootNode(), [&](scene::KFbxNode& node) {
    if (node.GetMesh()) nodes.push_back(&node);
    return scene::Below::Visit;
  });
  // Of meshes that make files of one name, the last one stays in the package.
  for (size_t i = nodes.size(); i-- > 0;) matcher.Try(*nodes[i]);
  return matcher.Take();
}

}  // namespace prove
