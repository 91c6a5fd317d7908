// SPDX-License-Identifier: MIT
#include "material/extract_material.h"

#include "material/diffuse_texture.h"
#include "material/texture_files.h"
#include "material/xrf_writer.h"

namespace ts3d {
namespace {

void ExtractColours(const scene::KFbxSurfaceMaterial& material, MaterialRecord& record,
                    const Settings& settings, const StatusChannel& status) {
  // The two classes do not derive from each other, so at most one test succeeds.
  if (const auto* lambert = dynamic_cast<const scene::KFbxSurfaceLambert*>(&material)) {
    record.ambient = lambert->ambient;
    record.diffuse = lambert->diffuse;
    record.specular = {0, 0, 0, 1};
    record.opacity = lambert->transparencyFactor;
    record.shininess = 0.0;
  } else if (const auto* phong = dynamic_cast<const scene::KFbxSurfacePhong*>(&material)) {
    record.ambient = phong->ambient;
    record.diffuse = phong->diffuse;
    record.specular = phong->specular;
    record.opacity = phong->transparencyFactor;
    record.shininess = phong->shininess;
  } else {
    status.Send(Notice::UnknownMaterial);
    // Its colours are not known, and the picture would be multiplied by the default: black.
    if (settings.findsBaseColours && record.hasMap && DiffuseTexture(material, settings)) {
      record.ambient = record.diffuse = {1, 1, 1};
    }
  }
}

}  // namespace

MaterialRecord ReadMaterial(const std::string& name, const scene::KFbxSurfaceMaterial& material, bool hasMap,
                            const Settings& settings, const StatusChannel& status) {
  MaterialRecord record;
  record.name = name;
  record.hasMap = hasMap;
  ExtractColours(material, record, settings, status);
  return record;
}

void WriteMaterial(const std::string& name, const scene::KFbxSurfaceMaterial& material, bool hasMap,
                   MaterialOutput& out) {
  out.status.Send(Notice::WritingMaterial, name);
  MaterialRecord record = ReadMaterial(name, material, hasMap, out.settings, out.status);
  const scene::KFbxTexture* texture = DiffuseTexture(material, out.settings);
  if (hasMap && texture) record.mapName = PackTexture(*texture, out);
  WriteXrfFile(record, out);
}

void WriteDefaultMaterial(const std::string& name, bool hasMap, MaterialOutput& out) {
  MaterialRecord record;
  record.name = name;
  record.ambient = record.diffuse = record.specular = {0.5, 0.5, 0.5};
  record.shininess = 0.25;
  record.hasMap = hasMap;
  if (hasMap) record.mapName = "0";
  WriteXrfFile(record, out);
}

}  // namespace ts3d
