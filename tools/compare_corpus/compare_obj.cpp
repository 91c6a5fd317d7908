// SPDX-License-Identifier: MIT
#include "compare_corpus/compare_obj.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

#include "scene/model/mesh.h"

namespace corpus {
namespace {

using scene::KFbxMesh;
using scene::KFbxNode;
using scene::KFbxVector4;
using scene::KFbxXMatrix;
using Point = std::array<double, 3>;
using Polygon = std::vector<WorldCorner>;

constexpr double kPointTolerance = 1e-3;  ///< share of the model's size
constexpr double kUvTolerance = 1e-4;
constexpr double kUnitsPerMetre = 100.0;

/// Lines of a .obj file so far.
struct ObjFile {
  std::vector<Point> points;
  std::vector<std::array<double, 2>> uvs;
  bool countUvs = true;
};

/// Element that a one-based or, from the end, negative number of a face names; null when there is none.
template <typename T>
const T* Named(const std::vector<T>& list, const char* begin, const char* end) {
  int64_t number = 0;
  if (std::from_chars(begin, end, number).ec != std::errc()) return nullptr;
  const int64_t at = number < 0 ? number + static_cast<int64_t>(list.size()) : number - 1;
  return at >= 0 && static_cast<size_t>(at) < list.size() ? &list[static_cast<size_t>(at)] : nullptr;
}

/// "point", "point/uv", "point//normal" or "point/uv/normal".
bool ReadCorner(const ObjFile& obj, const std::string& word, WorldCorner& corner) {
  const char* end = word.data() + word.size();
  const Point* point = Named(obj.points, word.data(), end);
  if (!point) return false;
  corner.point = *point;
  const size_t slash = word.find('/');
  if (slash == std::string::npos || !obj.countUvs) return true;
  const auto* uv = Named(obj.uvs, word.data() + slash + 1, end);
  corner.hasUv = uv != nullptr;
  if (uv) corner.uv = *uv;
  return true;
}

bool ReadLine(const std::string& line, ObjFile& obj, WorldMesh& mesh) {
  if (line.starts_with("#") && line.find("bad_uvs") != std::string::npos) obj.countUvs = false;
  std::istringstream words(line);
  std::string word;
  words >> word;
  if (word == "v") {
    Point& point = obj.points.emplace_back();
    for (double& number : point) words >> number;
  } else if (word == "vt") {
    auto& uv = obj.uvs.emplace_back();
    for (double& number : uv) words >> number;
  } else if (word == "f") {
    Polygon& polygon = mesh.polygons.emplace_back();
    while (words >> word) {
      if (!ReadCorner(obj, word, polygon.emplace_back())) return false;
    }
  }
  return true;
}

KFbxXMatrix GlobalOf(const KFbxNode& node) { return node.GetGlobalFromDefaultTake(); }

/// World positions of the control points of the mesh on `node`.
class WorldPoints {
 public:
  WorldPoints(const KFbxNode& node, const KFbxMesh& mesh) : shaped_(ShapedPoints(mesh)) {
    sums_.resize(shaped_.size() / 3);
    weights_.resize(sums_.size());
    for (int s = 0; s < mesh.GetSkinCount(); ++s) {
      for (int c = 0; c < mesh.GetSkin(s)->GetClusterCount(); ++c) {
        Blend(*mesh.GetSkin(s)->GetCluster(c), node.GetGeometricTransform());
      }
    }
    unskinned_ = GlobalOf(node) * node.GetGeometricTransform();
  }

  Point At(size_t i) const {
    const KFbxVector4 p = weights_[i] != 0.0 ? sums_[i] * (1.0 / weights_[i]) : unskinned_.MultT(Shaped(i));
    return {p[0], p[1], p[2]};
  }

 private:
  KFbxVector4 Shaped(size_t i) const { return {shaped_[3 * i], shaped_[3 * i + 1], shaped_[3 * i + 2], 1.0}; }

  void Blend(const scene::KFbxCluster& cluster, const KFbxXMatrix& geometric) {
    const auto transform = cluster.GetTransformMatrix();
    const auto link = cluster.GetTransformLinkMatrix();
    if (!cluster.GetLink() || !transform || !link) return;
    const KFbxXMatrix toWorld = GlobalOf(*cluster.GetLink()) * link->Inverse() * *transform * geometric;
    const std::span<const int32_t> indices = cluster.GetControlPointIndices();
    for (size_t k = 0; k < indices.size(); ++k) {
      const auto i = static_cast<size_t>(indices[k]);
      if (indices[k] < 0 || i >= sums_.size()) continue;
      const double weight = cluster.GetControlPointWeights()[k];
      sums_[i] = sums_[i] + toWorld.MultT(Shaped(i)) * weight;
      weights_[i] += weight;
    }
  }

  std::vector<double> shaped_;
  std::vector<KFbxVector4> sums_;
  std::vector<double> weights_;
  KFbxXMatrix unskinned_;
};

void AddPolygons(const KFbxNode& node, const KFbxMesh& mesh, WorldMesh& world) {
  const WorldPoints points(node, mesh);
  const std::span<const int32_t> corners = mesh.GetPolygonVertices();
  const scene::KFbxLayerElementUV* uvs = mesh.GetUVs();
  for (uint32_t i = 0; i < mesh.GetPolygons().Count(); ++i) {
    const scene::KFbxPolygon polygon = mesh.GetPolygons()[i];
    Polygon& target = world.polygons.emplace_back();
    for (size_t k = polygon.firstCorner; k < polygon.firstCorner + polygon.size; ++k) {
      WorldCorner& corner = target.emplace_back();
      corner.point = points.At(static_cast<size_t>(corners[k]));
      const int32_t uv = uvs ? uvs->GetLookup()(k, corners[k]) : -1;
      corner.hasUv = uv >= 0;
      const auto at = static_cast<size_t>(uv);
      if (corner.hasUv) corner.uv = {uvs->GetDirectArray()[2 * at], uvs->GetDirectArray()[2 * at + 1]};
    }
  }
}

double SizeOf(const WorldMesh& mesh) {
  double size = 0.0;
  for (size_t axis = 0; axis < 3; ++axis) {
    double low = HUGE_VAL, high = -HUGE_VAL;
    for (const Polygon& polygon : mesh.polygons) {
      for (const WorldCorner& corner : polygon) {
        low = std::min(low, corner.point[axis]);
        high = std::max(high, corner.point[axis]);
      }
    }
    size = std::max(size, high - low);
  }
  return std::max(size, 1e-9);
}

/// Finds the polygons of a mesh by their places.
class PolygonFinder {
 public:
  PolygonFinder(const WorldMesh& mesh, double tolerance) : mesh_(mesh), tolerance_(tolerance) {
    for (size_t i = 0; i < mesh.polygons.size(); ++i) byHeight_.emplace(HeightOf(mesh.polygons[i]), i);
  }

  enum class Found { Nothing, Place, All };

  /// Takes a polygon that stands where `wanted` does, one with the same texture coordinates if there is any.
  Found Take(const Polygon& wanted) {
    const double height = HeightOf(wanted);
    auto best = byHeight_.end();
    const auto last = byHeight_.upper_bound(height + 3 * tolerance_);
    for (auto i = byHeight_.lower_bound(height - 3 * tolerance_); i != last; ++i) {
      const Found found = Compare(wanted, mesh_.polygons[i->second]);
      if (found == Found::Nothing) continue;
      best = i;
      if (found == Found::All) break;
    }
    if (best == byHeight_.end()) return Found::Nothing;
    const Found found = Compare(wanted, mesh_.polygons[best->second]);
    byHeight_.erase(best);
    return found;
  }

 private:
  /// A number that polygons in one place share.
  static double HeightOf(const Polygon& polygon) {
    double sum = 0.0;
    for (const WorldCorner& corner : polygon) {
      sum += 0.5 * corner.point[0] + corner.point[1] + 0.75 * corner.point[2];
    }
    return sum / std::max<double>(1.0, static_cast<double>(polygon.size()));
  }

  bool InOnePlace(const WorldCorner& a, const WorldCorner& b) const {
    for (size_t i = 0; i < 3; ++i) {
      if (!(std::abs(a.point[i] - b.point[i]) <= tolerance_)) return false;
    }
    return true;
  }

  static bool SameUv(const WorldCorner& wanted, const WorldCorner& found) {
    return !wanted.hasUv || (found.hasUv && std::abs(wanted.uv[0] - found.uv[0]) <= kUvTolerance &&
                             std::abs(wanted.uv[1] - found.uv[1]) <= kUvTolerance);
  }

  Found Compare(const Polygon& wanted, const Polygon& found) const {
    const size_t count = wanted.size();
    if (found.size() != count) return Found::Nothing;
    Found best = Found::Nothing;
    for (size_t first = 0; first < count; ++first) {
      bool place = true, uv = true;
      for (size_t i = 0; i < count && place; ++i) {
        place = InOnePlace(wanted[i], found[(first + i) % count]);
        uv = uv && SameUv(wanted[i], found[(first + i) % count]);
      }
      if (place && uv) return Found::All;
      if (place) best = Found::Place;
    }
    return best;
  }

  const WorldMesh& mesh_;
  double tolerance_;
  std::multimap<double, size_t> byHeight_;
};

Differences ComparePlaces(const WorldMesh& expected, const WorldMesh& actual) {
  Differences differences;
  const auto add = [&](const char* aspect, std::string text) {
    differences.push_back({aspect, "", std::move(text)});
  };
  const size_t count = expected.polygons.size();
  if (count != actual.polygons.size()) {
    add("polygons", std::to_string(count) + " polygons became " + std::to_string(actual.polygons.size()));
  }
  PolygonFinder finder(actual, kPointTolerance * SizeOf(expected));
  size_t missing = 0, otherUv = 0;
  for (const Polygon& polygon : expected.polygons) {
    const PolygonFinder::Found found = finder.Take(polygon);
    missing += found == PolygonFinder::Found::Nothing;
    otherUv += found == PolygonFinder::Found::Place;
  }
  const std::string of = " of " + std::to_string(count) + " polygons ";
  if (missing > 0) add("points", std::to_string(missing) + of + "stand nowhere");
  if (otherUv > 0) add("uv", std::to_string(otherUv) + of + "have other texture coordinates");
  return differences;
}

/// `mesh` after `quarters` quarter turns about x and scaled.
WorldMesh Turned(WorldMesh mesh, int quarters, double scale) {
  for (Polygon& polygon : mesh.polygons) {
    for (WorldCorner& corner : polygon) {
      const Point p = corner.point;
      if (quarters != 0) corner.point = {p[0], -quarters * p[2], quarters * p[1]};
      for (double& number : corner.point) number *= scale;
    }
  }
  return mesh;
}

}  // namespace

bool ReadObj(const std::string& path, WorldMesh& mesh, std::string& error) {
  std::ifstream file(path);
  if (!file) {
    error = "cannot be opened";
    return false;
  }
  ObjFile obj;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (ReadLine(line, obj, mesh)) continue;
    error = "line " + std::to_string(number) + " names what is not there";
    return false;
  }
  return true;
}

WorldMesh WorldPolygons(scene::KFbxScene& scene) {
  WorldMesh world;
  std::vector<const KFbxNode*> pending{scene.GetRootNode()};
  while (!pending.empty()) {
    const KFbxNode& node = *pending.back();
    pending.pop_back();
    if (node.GetMesh()) AddPolygons(node, *node.GetMesh(), world);
    for (int i = 0; i < node.GetChildCount(); ++i) pending.push_back(node.GetChild(i));
  }
  return world;
}

Differences CompareWithObj(const WorldMesh& expected, const WorldMesh& actual) {
  Differences plain = ComparePlaces(expected, actual);
  if (plain.empty()) return plain;
  for (const int turn : {0, 1, -1}) {
    for (const double scale : {SizeOf(actual) / SizeOf(expected), kUnitsPerMetre}) {
      Differences differences = ComparePlaces(Turned(expected, turn, scale), actual);
      if (differences.size() >= plain.size()) continue;
      differences.push_back({"axes", "",
                             "turned by " + std::to_string(90 * turn) + " degrees about x, scaled by " +
                                 std::to_string(scale)});
      return differences;
    }
  }
  return plain;
}

}  // namespace corpus
