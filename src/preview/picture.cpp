// SPDX-License-Identifier: MIT
#include "preview/picture.h"

#include "preview/bone_shapes.h"
#include "preview/model.h"
#include "preview/surface.h"

namespace preview {
namespace {

constexpr Colour kBackground = {0.955, 0.96, 0.97};
constexpr double kBoneOpacity = 0.85;

/// Pixels of the canvas for each of the picture, along a side.
int SamplesFor(int size) { return size <= 1024 ? 3 : 2; }

/// Everything that has to be in the frame.
std::vector<Vector> FramedPoints(const actor::Actor& actor, bool withBones) {
  std::vector<Vector> points = BulkPoints(actor);
  // A bone alone stands for none in models without a skeleton, and may be far off.
  if ((withBones && actor.skeleton.bones.size() > 1) || points.empty()) {
    for (const Vector& origin : BoneOrigins(actor.skeleton)) points.push_back(origin);
  }
  return points;
}

std::vector<Camera> PlaceCameras(const actor::Actor& actor, const PictureOptions& options) {
  const std::vector<Vector> points = FramedPoints(actor, options.bones);
  base::Box framed;
  for (const Vector& point : points) framed.Add(point);
  const Stand stand = FindStand(actor, options.up);
  std::vector<Camera> cameras;
  for (const View& view : options.views) cameras.emplace_back(stand, view, framed);
  Camera::Fit(cameras, points, options.size);
  return cameras;
}

}  // namespace

void DrawPictures(const actor::Actor& source, const PictureOptions& options, const PictureDecoder& decode,
                  const TakePicture& take) {
  const actor::Actor actor = Drawable(source);
  const std::vector<Camera> cameras = PlaceCameras(actor, options);
  const double radius = 0.5 * Length(ModelBounds(actor).Extent());
  const int samples = SamplesFor(options.size);
  SurfaceFinder surfaces(actor, decode);
  for (size_t i = 0; i < cameras.size(); ++i) {
    Canvas canvas(options.size * samples);
    for (const actor::Mesh& mesh : actor.meshes)
      DrawMesh(mesh, surfaces.Find(mesh), cameras[i], canvas, samples);
    if (options.bones) {
      Canvas layer(options.size * samples);
      DrawBones(actor.skeleton, cameras[i], radius, layer, samples);
      canvas.Overlay(layer, kBoneOpacity);
    }
    take(i, canvas.Reduce(samples, kBackground));
  }
}

}  // namespace preview
