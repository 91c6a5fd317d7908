// SPDX-License-Identifier: MIT
#include "preview/bone_shapes.h"

#include "preview/model.h"

namespace preview {
namespace {

constexpr Colour kBoneColour = {0.20, 0.42, 0.85};
constexpr Colour kJointColour = {1.0, 0.55, 0.05};
constexpr double kJointRadius = 0.014;    ///< of the model's radius
constexpr double kBoneWidth = 0.10;       ///< of the bone's length
constexpr double kLargestWidth = 0.035;   ///< of the model's radius
constexpr double kSmallestWidth = 0.006;  ///< likewise
constexpr double kBroadestAt = 0.18;      ///< of the bone's length from its joint

/// An octahedron: two tips and a ring of four corners between them.
struct Octahedron {
  Vector tail, head;
  std::array<Vector, 4> ring;
};

Octahedron MakeBone(const Vector& from, const Vector& to, double radius) {
  const Vector along = to - from;
  const Vector direction = Unit(along, {0, 1, 0});
  const Vector other = std::abs(direction[0]) < 0.9 ? Vector{1, 0, 0} : Vector{0, 1, 0};
  const double width =
      std::clamp(kBoneWidth * Length(along), kSmallestWidth * radius, kLargestWidth * radius);
  const Vector first = Unit(Cross(direction, other), {1, 0, 0}) * width;
  const Vector second = Cross(direction, first);
  const Vector middle = from + along * kBroadestAt;
  return {from, to, {middle + first, middle + second, middle - first, middle - second}};
}

Octahedron MakeJoint(const Vector& at, double radius) {
  const double r = kJointRadius * radius;
  const Vector x = {r, 0, 0}, y = {0, r, 0}, z = {0, 0, r};
  return {at - y, at + y, {at + x, at + z, at - x, at - z}};
}

class BonePainter {
 public:
  BonePainter(const Camera& camera, Canvas& canvas, int samples)
      : camera_(camera), canvas_(canvas), samples_(samples) {}

  void Draw(const Octahedron& shape, const Colour& colour) const {
    for (size_t i = 0; i < 4; ++i) {
      const Vector &a = shape.ring[i], &b = shape.ring[(i + 1) % 4];
      DrawFace(shape.tail, b, a, colour);
      DrawFace(shape.head, a, b, colour);
    }
  }

 private:
  Corner Project(const Vector& point) const {
    Corner corner;
    corner.seen = camera_.Look(point);
    corner.seen.x *= samples_;
    corner.seen.y *= samples_;
    return corner;
  }

  void DrawFace(const Vector& a, const Vector& b, const Vector& c, const Colour& colour) const {
    const Vector normal = Unit(Cross(b - a, c - a), {0, 0, 0});
    const double light = 0.62 + 0.38 * std::abs(Dot(normal, camera_.ToViewer()));
    const Colour shaded = colour * light;
    canvas_.Draw({Project(a), Project(b), Project(c)}, [&](const Corner&) { return std::optional(shaded); });
  }

  const Camera& camera_;
  Canvas& canvas_;
  int samples_;
};

}  // namespace

void DrawBones(const actor::Skeleton& skeleton, const Camera& camera, double radius, Canvas& canvas,
               int samples) {
  const BonePainter painter(camera, canvas, samples);
  const std::vector<Vector> origins = BoneOrigins(skeleton);
  for (size_t i = 0; i < origins.size(); ++i) {
    painter.Draw(MakeJoint(origins[i], radius), kJointColour);
    const int32_t parent = skeleton.bones[i].parent;
    if (parent < 0) continue;
    const Vector& from = origins[static_cast<size_t>(parent)];
    painter.Draw(MakeBone(from, origins[i], radius), kBoneColour);
  }
}

}  // namespace preview
