// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "actor/actor.h"

namespace actor {

/// How a picture lets what is behind it show.
enum class Opacity { Opaque, Cutout, Blended };

/// A picture as other programs take it.
struct EncodedPicture {
  std::string png;  ///< empty when the picture cannot be decoded
  Opacity opacity = Opacity::Opaque;
};

/// Decodes a picture of a package and encodes it as PNG. Called once for each picture that is used.
using PictureEncoder = std::function<EncodedPicture(const Picture&)>;

/// A file to be written.
struct ExportedFile {
  std::string name;
  std::string bytes;
};

/// What is needed of a mesh's material, by itself or by default.
struct Look {
  std::array<double, 3> ambient{}, diffuse{0.5, 0.5, 0.5}, specular{};  ///< 0 to 1, as screens take them
  double shininess = 0.0;
  const Picture* picture = nullptr;  ///< null when there is none
  bool bothSides = false;
};

Look LookOf(const Actor& actor, const Mesh& mesh);

/// The mesh's faces as the runtime turns them: all of them the other way round when the first face
/// contradicts the normal of its first vertex.
std::vector<std::array<int32_t, 3>> FacesOutwards(const Mesh& mesh);

/// `normal` with length 1; upwards when it has none.
Vector3 UnitNormal(const Vector3& normal);

/// `name` without what cannot be in a word of a line or a part of a file name.
std::string PlainWord(std::string name);

/// Adds a picture to `files` as "<stem>_<picture>.png", or so that no other file has its name.
/// @return its name
std::string AddPictureFile(const std::string& stem, const Picture& picture, std::string png,
                           std::vector<ExportedFile>& files);

/// Whether there is anything of the mesh to be seen.
inline bool IsVisible(const Mesh& mesh) { return !mesh.vertices.empty() && !mesh.faces.empty(); }

}  // namespace actor
