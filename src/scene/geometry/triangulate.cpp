// SPDX-License-Identifier: MIT
#include "scene/geometry/triangulate.h"

#include <algorithm>
#include <cmath>

namespace scene {
namespace {

/// Corner tests that a mesh may always spend on its concave polygons.
constexpr size_t kConcaveWork = 100'000'000;

struct Point2 {
  double x, y;
};

/// Twice the signed area of a triangle; positive when it turns left.
double Cross(const Point2& a, const Point2& b, const Point2& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool Same(const Point2& a, const Point2& b) { return a.x == b.x && a.y == b.y; }

/// Cuts polygons into triangles of local corner numbers.
class PolygonCutter {
 public:
  /// @param cornerCount  of the whole mesh; bounds the work that all its concave polygons may take
  PolygonCutter(std::span<const double> points, size_t cornerCount)
      : points_(points), work_(static_cast<int64_t>(kConcaveWork + 64 * cornerCount)) {}

  /// Calls `add` with the corners of each triangle of the polygon with these control points.
  template <typename Add>
  void Cut(std::span<const int32_t> corners, const Add& add) {
    const auto n = static_cast<uint32_t>(corners.size());
    if (n < 3) return;
    if (n == 3) return add(0, 1, 2);
    if ((n == 4 && IsClearlyConvexQuad(corners)) || !Project(corners)) return Fan(n, add);
    if (n == 4) return CutQuad(add);
    if (IsConvex()) return Fan(n, add);
    ClipEars(n, add);
  }

 private:
  KFbxVector4 PointOf(int32_t controlPoint) const {
    const double* p = &points_[3 * static_cast<size_t>(controlPoint)];
    return {p[0], p[1], p[2]};
  }

  template <typename Add>
  static void Fan(uint32_t n, const Add& add) {
    for (uint32_t i = 2; i < n; ++i) add(0, i - 1, i);
  }

  /// Whether the diagonal from the first corner lies inside by so much that CutQuad would find the same. Most
  /// polygons are such quads, and this takes a third of the time.
  bool IsClearlyConvexQuad(std::span<const int32_t> corners) const {
    const KFbxVector4 origin = PointOf(corners[0]);
    const KFbxVector4 a = PointOf(corners[1]) - origin, b = PointOf(corners[2]) - origin,
                      c = PointOf(corners[3]) - origin;
    const KFbxVector4 first = a.CrossProduct(b), second = b.CrossProduct(c), normal = first + second;
    const double length = a.DotProduct(a) + b.DotProduct(b) + c.DotProduct(c);
    const double least = 1e-10 * length * std::sqrt(normal.DotProduct(normal));
    return first.DotProduct(normal) > least && second.DotProduct(normal) > least;
  }

  /// Lays the polygon into its own plane, turning left; false when it has no area.
  bool Project(std::span<const int32_t> corners) {
    KFbxVector4 normal;
    const KFbxVector4 origin = PointOf(corners[0]);
    for (size_t i = 0; i < corners.size(); ++i) {
      const KFbxVector4 a = PointOf(corners[i]) - origin;
      const KFbxVector4 b = PointOf(corners[(i + 1) % corners.size()]) - origin;
      normal = normal + a.CrossProduct(b);
    }
    const double length = normal.Length();
    if (!(length > 0.0) || !std::isfinite(length)) return false;
    normal = normal * (1.0 / length);
    const bool nearX = std::abs(normal[0]) > 0.7;
    KFbxVector4 u = normal.CrossProduct(nearX ? KFbxVector4(0, 1, 0) : KFbxVector4(1, 0, 0));
    u = u * (1.0 / u.Length());
    const KFbxVector4 v = normal.CrossProduct(u);
    flat_.clear();
    flat_.reserve(corners.size());
    for (const int32_t corner : corners) {
      const KFbxVector4 p = PointOf(corner) - origin;
      flat_.push_back({p.DotProduct(u), p.DotProduct(v)});
    }
    return true;
  }

  /// The diagonal from the first corner unless it lies outside.
  template <typename Add>
  void CutQuad(const Add& add) const {
    const auto& p = flat_;
    const bool firstFits = Cross(p[0], p[1], p[2]) >= 0.0 && Cross(p[0], p[2], p[3]) >= 0.0;
    const bool secondFits = Cross(p[1], p[2], p[3]) >= 0.0 && Cross(p[1], p[3], p[0]) >= 0.0;
    if (firstFits || !secondFits) {
      add(0, 1, 2);
      add(0, 2, 3);
    } else {
      add(1, 2, 3);
      add(1, 3, 0);
    }
  }

  bool IsConvex() const {
    const size_t n = flat_.size();
    double turn = 0.0;
    for (size_t i = 0; i < n; ++i) {
      const Point2 &a = flat_[i], &b = flat_[(i + 1) % n], &c = flat_[(i + 2) % n];
      if (Cross(a, b, c) < 0.0) return false;
      turn += std::atan2(Cross(a, b, c), (b.x - a.x) * (c.x - b.x) + (b.y - a.y) * (c.y - b.y));
    }
    // A star turns left everywhere too, but more than once around.
    return turn < 7.0;
  }

  /// Cuts off corners whose triangle holds no other corner, as long as there is one. When there is none,
  /// because the outline crosses or touches itself, the corner that bends least the wrong way goes.
  template <typename Add>
  void ClipEars(uint32_t n, const Add& add) {
    Link(n);
    uint32_t current = 0, sinceLastEar = 0, left = n;
    while (left > 3) {
      --work_;
      const bool stuck = sinceLastEar >= left || work_ <= 0;
      if (stuck) current = LeastBad(current, left);
      if (stuck || IsEar(current)) {
        add(previous_[current], current, next_[current]);
        next_[previous_[current]] = next_[current];
        previous_[next_[current]] = previous_[current];
        --left;
        sinceLastEar = 0;
        // Going on behind the next corner keeps the triangles from becoming one thin fan.
        current = next_[next_[current]];
      } else {
        current = next_[current];
        ++sinceLastEar;
      }
    }
    add(previous_[current], current, next_[current]);
  }

  void Link(uint32_t n) {
    previous_.resize(n);
    next_.resize(n);
    reflex_.clear();
    for (uint32_t i = 0; i < n; ++i) {
      previous_[i] = i == 0 ? n - 1 : i - 1;
      next_[i] = i + 1 == n ? 0 : i + 1;
    }
    // A corner that does not bend inward now never will, so only these can lie inside an ear.
    for (uint32_t i = 0; i < n; ++i) {
      if (Turn(i) <= 0.0) reflex_.push_back(i);
    }
  }

  double Turn(uint32_t i) const { return Cross(flat_[previous_[i]], flat_[i], flat_[next_[i]]); }

  bool IsEar(uint32_t i) {
    if (Turn(i) <= 0.0) return false;
    const Point2 &a = flat_[previous_[i]], &b = flat_[i], &c = flat_[next_[i]];
    work_ -= static_cast<int64_t>(reflex_.size());
    return std::none_of(reflex_.begin(), reflex_.end(), [&](uint32_t k) {
      const Point2& p = flat_[k];
      return !Same(p, a) && !Same(p, b) && !Same(p, c) && Cross(a, b, p) >= 0.0 && Cross(b, c, p) >= 0.0 &&
             Cross(c, a, p) >= 0.0;
    });
  }

  uint32_t LeastBad(uint32_t from, uint32_t left) {
    // Out of work: whatever comes first.
    if (work_ <= 0) return from;
    work_ -= left;
    uint32_t best = from;
    for (uint32_t i = next_[from], k = 1; k < left; ++k, i = next_[i]) {
      if (Turn(i) > Turn(best)) best = i;
    }
    return best;
  }

  std::span<const double> points_;
  int64_t work_;
  std::vector<Point2> flat_;
  std::vector<uint32_t> previous_, next_, reflex_;
};

/// Triangles of all polygons of `mesh`.
/// @throws KFbxMeshExcess when cutting them takes more memory than the mesh may
size_t CountTriangles(const KFbxMesh& mesh) {
  // Bytes of a triangle, and of a corner of the polygon that is being cut.
  constexpr uint64_t kTriangle = 28, kCorner = 40;
  size_t count = 0;
  uint32_t largest = 2;
  const KFbxPolygonTable& polygons = mesh.GetPolygons();
  for (uint32_t i = 0; i < polygons.Count(); ++i) {
    const uint32_t size = std::max(polygons[i].size, 2u);
    count += size - 2;
    largest = std::max(largest, size);
  }
  if (kTriangle * count + kCorner * largest > mesh.GetMemoryLeft()) throw KFbxMeshExcess();
  return count;
}

}  // namespace

KFbxTriangles TriangulateMesh(KFbxMesh& mesh) {
  KFbxTriangles triangles;
  if (mesh.GetPolygons().IsPlainTriangles()) {
    triangles.corners = mesh.TakePolygonVertices();
    return triangles;
  }
  const std::span<const int32_t> table = mesh.GetPolygonVertices();
  const KFbxPolygonTable& sourcePolygons = mesh.GetPolygons();
  const size_t triangleCount = CountTriangles(mesh);
  int32_t* points = triangles.corners.Allocate(3 * triangleCount);
  uint32_t* sources = triangles.sourceCorners.Allocate(3 * triangleCount);
  uint32_t* polygons = triangles.polygons.Allocate(triangleCount);
  PolygonCutter cutter(mesh.GetControlPoints(), table.size());
  for (uint32_t i = 0; i < sourcePolygons.Count(); ++i) {
    const KFbxPolygon polygon = sourcePolygons[i];
    const std::span<const int32_t> corners = table.subspan(polygon.firstCorner, polygon.size);
    cutter.Cut(corners, [&](uint32_t a, uint32_t b, uint32_t c) {
      for (const uint32_t corner : {a, b, c}) {
        *points++ = corners[corner];
        *sources++ = polygon.firstCorner + corner;
      }
      *polygons++ = i;
    });
  }
  return triangles;
}

}  // namespace scene
