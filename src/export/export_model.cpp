// SPDX-License-Identifier: MIT
#include "export/export_model.h"

#include <algorithm>
#include <cmath>

#include "actor/rigid_transform.h"
#include "core/names.h"

namespace actor {
namespace {

Double3 ToUnitRange(const std::array<int32_t, 4>& colour) {
  Double3 result;
  for (size_t i = 0; i < 3; ++i) result[i] = std::clamp(colour[i], 0, 255) / 255.0;
  return result;
}

bool IsShownFromBothSides(const Actor& actor, const Mesh& mesh) {
  const std::string file = mesh.name + ".cmf";
  return std::any_of(
      actor.document.meshes.begin(), actor.document.meshes.end(),
      [&](const DocumentMesh& line) { return line.bothSides && ts3d::EqualsIgnoreCase(line.file, file); });
}

}  // namespace

Look LookOf(const Actor& actor, const Mesh& mesh) {
  Look look;
  look.bothSides = IsShownFromBothSides(actor, mesh);
  const Material* material = actor.MaterialOf(mesh);
  if (!material) return look;
  look.ambient = ToUnitRange(material->ambient);
  look.diffuse = ToUnitRange(material->diffuse);
  look.specular = ToUnitRange(material->specular);
  look.shininess = std::isfinite(material->shininess) ? std::clamp(material->shininess, 0.0, 1000.0) : 0.0;
  if (material->hasMap) look.picture = actor.FindPicture(material->map);
  return look;
}

std::vector<std::array<int32_t, 3>> FacesOutwards(const Mesh& mesh) {
  std::vector<std::array<int32_t, 3>> faces = mesh.faces;
  if (faces.empty()) return faces;
  const auto corner = [&](size_t i) -> const Vertex& {
    return mesh.vertices[static_cast<size_t>(faces[0][i])];
  };
  const Double3 a = base::Minus(base::ToVector(corner(1).position), base::ToVector(corner(0).position));
  const Double3 b = base::Minus(base::ToVector(corner(2).position), base::ToVector(corner(0).position));
  const Vector3& normal = corner(0).normal;
  const double along = (a[1] * b[2] - a[2] * b[1]) * static_cast<double>(normal[0]) +
                       (a[2] * b[0] - a[0] * b[2]) * static_cast<double>(normal[1]) +
                       (a[0] * b[1] - a[1] * b[0]) * static_cast<double>(normal[2]);
  if (along < 0.0) {
    for (auto& face : faces) std::swap(face[1], face[2]);
  }
  return faces;
}

Vector3 UnitNormal(const Vector3& normal) {
  const Double3 exact = base::ToVector(normal);
  const double length = std::hypot(exact[0], exact[1], exact[2]);
  if (length < 1e-12) return {0.0f, 1.0f, 0.0f};
  Vector3 unit;
  for (size_t i = 0; i < 3; ++i) unit[i] = static_cast<float>(exact[i] / length);
  return unit;
}

std::string PlainWord(std::string name) {
  std::replace_if(
      name.begin(), name.end(),
      [](char c) {
        return static_cast<unsigned char>(c) <= ' ' || std::string_view("/\\:#\x7f").find(c) < 5;
      },
      '_');
  return name.empty() ? "_" : name;
}

std::string AddPictureFile(const std::string& stem, const Picture& picture, std::string png,
                           std::vector<ExportedFile>& files) {
  std::string name = PlainWord(stem + "_" + picture.name.substr(0, picture.name.size() - 4));
  const auto isTaken = [&](const ExportedFile& file) {
    return ts3d::EqualsIgnoreCase(file.name, name + ".png");
  };
  while (std::any_of(files.begin(), files.end(), isTaken)) name += "_";
  files.push_back({name + ".png", std::move(png)});
  return files.back().name;
}

}  // namespace actor
