// SPDX-License-Identifier: MIT
#include "scene/gltf/write_materials.h"

#include <algorithm>

#include "base/plain_text.h"
#include "platform/files.h"
#include "scene/gltf/file_reference.h"

namespace scene::gltf {
namespace {

std::string_view NamePart(std::string_view path) { return path.substr(path.find_last_of("\\/") + 1); }

/// Ending of a picture file by its content, which types and names may contradict.
const char* EndingOf(std::string_view content, std::string_view mimeType) {
  if (content.starts_with("\x89PNG")) return ".png";
  if (content.starts_with("\xff\xd8")) return ".jpg";
  if (content.size() > 8 && content.substr(8).starts_with("WEBP")) return ".webp";
  return mimeType == "image/jpeg" ? ".jpg" : mimeType == "image/ktx2" ? ".ktx2" : ".png";
}

/// `name` as that of a file: what separates folders or means something to a system becomes "_".
std::string AsFileName(std::string name) {
  constexpr size_t kLongest = 100;
  name.resize(std::min(name.size(), kLongest));
  for (char& c : name) {
    if (static_cast<unsigned char>(c) < 0x20 ||
        std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos)
      c = '_';
  }
  return name;
}

}  // namespace

int64_t MaterialWriter::IdOf(uint32_t material) {
  const auto [known, isNew] = materials_.try_emplace(material);
  if (isNew) known->second = Write(material == kNone ? Material() : document_.materials[material]);
  return known->second;
}

void MaterialWriter::WriteColour(const char* property, double r, double g, double b) {
  writer_.Begin("P").Bytes(property).Bytes("").Bytes("").Bytes("").Real(r).Real(g).Real(b).End();
}

int64_t MaterialWriter::Write(const Material& material) {
  const int64_t id = links_.NewId();
  const auto& [r, g, b, alpha] = material.colour;
  writer_.Begin("Material").Integer(id).Text(material.name).Bytes("");
  writer_.Begin("ShadingModel").Bytes("lambert").End();
  writer_.Begin("Properties70");
  WriteColour("DiffuseColor", r, g, b);
  WriteColour("EmissiveColor", material.emissive[0], material.emissive[1], material.emissive[2]);
  if (material.isBlended) {
    writer_.Begin("P").Bytes("TransparencyFactor").Bytes("").Bytes("").Bytes("");
    writer_.Real(1.0 - std::clamp(alpha, 0.0, 1.0)).End();
  }
  writer_.End();
  writer_.End();
  if (material.image != kNone) WriteTexture(material.image, id);
  return id;
}

void MaterialWriter::WriteTexture(uint32_t image, int64_t material) {
  const auto [known, isNew] = textures_.try_emplace(image);
  if (isNew) known->second = WritePicture(image);
  links_.Connect(known->second, material, "DiffuseColor");
}

/// What the file of an embedded picture would be called.
std::string MaterialWriter::NameFor(const Image& image, std::string_view content) {
  std::string stem = AsFileName(image.name.empty() ? "picture" : image.name);
  // Images are called after the files that they were made of.
  for (const std::string_view known :
       {".png", ".jpg", ".jpeg", ".tga", ".tif", ".tiff", ".bmp", ".psd", ".webp"}) {
    if (base::LowerCase(stem).ends_with(known)) stem.resize(stem.size() - known.size());
  }
  // What comes behind a point would be taken for an ending.
  std::replace(stem.begin(), stem.end(), '.', '_');
  std::string name = stem;
  for (int i = 2; !pictureNames_.insert(base::LowerCase(name)).second; ++i)
    name = stem + "_" + std::to_string(i);
  return name + EndingOf(content, image.mimeType);
}

int64_t MaterialWriter::WriteTextureObject(const std::string& name) {
  const int64_t texture = links_.NewId();
  writer_.Begin("Texture").Integer(texture).Bytes("").Bytes("");
  writer_.Begin("FileName").Text(name).End();
  writer_.Begin("RelativeFilename").Text(name).End();
  writer_.End();
  return texture;
}

int64_t MaterialWriter::WritePicture(uint32_t index) {
  const Image& image = document_.images[index];
  const bool isData = IsDataUri(image.uri);
  if (image.view == kNone && !isData) {
    // One that does not lie below the model's folder is looked for by its name, as those of FBX files are.
    const std::string below = PathBelowModel(image.uri);
    return WriteTextureObject(below.empty() ? std::string(NamePart(image.uri)) : below);
  }
  std::string decoded;
  try {
    if (image.view == kNone) decoded = DecodeDataUri(image.uri);
  } catch (const Fault&) {
    // Like any damaged picture it is told by who decodes it.
  }
  const std::string_view content = image.view == kNone ? decoded : bytes_.View(document_, image.view);
  const std::string name = NameFor(image, content);
  const int64_t texture = WriteTextureObject(name);
  const int64_t video = links_.NewId();
  writer_.Begin("Video").Integer(video).Bytes("").Bytes("");
  writer_.Begin("FileName").Text(name).End();
  writer_.Begin("Nameless").End();
  writer_.Begin("Content");
  if (image.view == kNone) {
    writer_.Data(std::move(decoded));
  } else {
    writer_.Bytes(content);
  }
  writer_.End();
  writer_.End();
  links_.Connect(video, texture);
  return texture;
}

}  // namespace scene::gltf
