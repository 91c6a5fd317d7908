// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>

#include "actor/actor.h"
#include "preview/camera.h"
#include "preview/canvas.h"
#include "preview/texture.h"

namespace preview {

/// How a mesh looks: its picture, or the colour of its material without one.
struct Surface {
  std::shared_ptr<const Texture> texture;  ///< null: `colour`
  Colour colour{};
};

/// Finds the surfaces of an actor's meshes; decodes each picture once.
class SurfaceFinder {
 public:
  SurfaceFinder(const actor::Actor& actor, const PictureDecoder& decode) : actor_(actor), decode_(decode) {}

  Surface Find(const actor::Mesh& mesh);

 private:
  std::shared_ptr<const Texture> FindTexture(const actor::Picture* picture);

  const actor::Actor& actor_;
  const PictureDecoder& decode_;
  std::map<const actor::Picture*, std::shared_ptr<const Texture>> textures_;
};

/// Draws the faces of a mesh. Both sides are drawn and lit alike.
void DrawMesh(const actor::Mesh& mesh, const Surface& surface, const Camera& camera, Canvas& canvas,
              int samples);

}  // namespace preview
