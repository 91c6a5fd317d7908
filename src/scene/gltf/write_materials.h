// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <set>
#include <string>

#include "scene/gltf/bytes.h"
#include "scene/gltf/object_links.h"

namespace scene::gltf {

/// Writes the materials that meshes use and their pictures, each once.
class MaterialWriter {
 public:
  MaterialWriter(const Document& document, const BufferBytes& bytes, RecordWriter& writer, ObjectLinks& links)
      : document_(document), bytes_(bytes), writer_(writer), links_(links) {}

  /// Identifier of the material; the one of the format's default for kNone.
  int64_t IdOf(uint32_t material);

 private:
  int64_t Write(const Material& material);
  void WriteColour(const char* property, double r, double g, double b);
  void WriteTexture(uint32_t image, int64_t material);
  int64_t WritePicture(uint32_t image);
  int64_t WriteTextureObject(const std::string& name);
  std::string NameFor(const Image& image, std::string_view content);

  const Document& document_;
  const BufferBytes& bytes_;
  RecordWriter& writer_;
  ObjectLinks& links_;
  std::map<uint32_t, int64_t> materials_;
  std::map<uint32_t, int64_t> textures_;
  std::set<std::string> pictureNames_;
};

}  // namespace scene::gltf
