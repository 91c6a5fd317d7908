// SPDX-License-Identifier: MIT
#include "preview/surface.h"

#include "export/export_model.h"

namespace preview {
namespace {

/// Light from the upper left in front and from the right, and a little from everywhere. The lights move along
/// with the viewer.
double Brightness(const Vector& normal, const Camera& camera) {
  const Vector key = camera.ToViewer() * 0.7 + camera.Up() * 0.55 - camera.Right() * 0.45;
  const Vector fill = camera.ToViewer() * 0.6 - camera.Up() * 0.1 + camera.Right() * 0.8;
  Vector facing = Unit(normal, camera.ToViewer());
  if (Dot(facing, camera.ToViewer()) < 0.0) facing = facing * -1.0;
  return 0.46 + 0.5 * std::max(Dot(facing, key), 0.0) + 0.14 * std::max(Dot(facing, fill), 0.0);
}

/// How many pixels of the texture lie side by side in one of the canvas.
double TexelsPerPixel(const std::array<Corner, 3>& corners, const Texture& texture) {
  const auto area = [](double ax, double ay, double bx, double by) { return std::abs(ax * by - ay * bx); };
  const Corner &a = corners[0], &b = corners[1], &c = corners[2];
  const double onCanvas =
      area(b.seen.x - a.seen.x, b.seen.y - a.seen.y, c.seen.x - a.seen.x, c.seen.y - a.seen.y);
  const auto [width, height] = texture.Size();
  const double onTexture = area(b.u - a.u, b.v - a.v, c.u - a.u, c.v - a.v) * width * height;
  return onCanvas > 0.0 ? std::sqrt(onTexture / onCanvas) : 1.0;
}

Corner MakeCorner(const actor::Vertex& vertex, const Vector& faceNormal, const Camera& camera, int samples) {
  Corner corner;
  corner.seen = camera.Look(ToVector(vertex.position));
  corner.seen.x *= samples;
  corner.seen.y *= samples;
  corner.normal = Unit(ToVector(vertex.normal), faceNormal);
  corner.u = vertex.uv[0];
  corner.v = vertex.uv[1];
  return corner;
}

}  // namespace

Surface SurfaceFinder::Find(const actor::Mesh& mesh) {
  const actor::Look look = actor::LookOf(actor_, mesh);
  constexpr double kDarkest = 0.1;  // black would show no shape
  Surface surface;
  for (size_t i = 0; i < 3; ++i) surface.colour[i] = std::clamp(look.diffuse[i], kDarkest, 1.0);
  surface.texture = FindTexture(look.picture);
  return surface;
}

std::shared_ptr<const Texture> SurfaceFinder::FindTexture(const actor::Picture* picture) {
  if (!picture) return nullptr;
  const auto [entry, isNew] = textures_.try_emplace(picture);
  if (isNew) {
    std::optional<Pixels> pixels = decode_(*picture);
    if (pixels && !pixels->rgba.empty()) entry->second = std::make_shared<Texture>(std::move(*pixels));
  }
  return entry->second;
}

void DrawMesh(const actor::Mesh& mesh, const Surface& surface, const Camera& camera, Canvas& canvas,
              int samples) {
  for (const auto& face : mesh.faces) {
    std::array<const actor::Vertex*, 3> vertices{};
    for (size_t i = 0; i < 3; ++i) vertices[i] = &mesh.vertices[static_cast<size_t>(face[i])];
    const Vector origin = ToVector(vertices[0]->position);
    const Vector across =
        Cross(ToVector(vertices[1]->position) - origin, ToVector(vertices[2]->position) - origin);
    const Vector faceNormal = Unit(across, camera.ToViewer());
    std::array<Corner, 3> corners;
    for (size_t i = 0; i < 3; ++i) corners[i] = MakeCorner(*vertices[i], faceNormal, camera, samples);
    const double shrunk = surface.texture ? TexelsPerPixel(corners, *surface.texture) : 1.0;
    canvas.Draw(corners, [&](const Corner& point) -> std::optional<Colour> {
      const double light = Brightness(point.normal, camera);
      if (!surface.texture) return surface.colour * light;
      const auto [red, green, blue, opacity] = surface.texture->Sample(point.u, point.v, shrunk);
      if (opacity < 0.5) return std::nullopt;
      return Colour{red, green, blue} * light;
    });
  }
}

}  // namespace preview
