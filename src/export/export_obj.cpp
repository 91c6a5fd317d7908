// SPDX-License-Identifier: MIT
#include "export/export_obj.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

#include "core/names.h"

namespace actor {
namespace {

class ObjExport {
 public:
  ObjExport(const Actor& actor, const std::string& stem, const PictureEncoder& encode)
      : actor_(actor), stem_(stem), encode_(encode) {}

  std::vector<ExportedFile> Run() {
    obj_ = "mtllib " + stem_ + ".mtl\n";
    for (const Mesh& mesh : actor_.meshes) {
      if (IsVisible(mesh)) AddMesh(mesh);
    }
    files_.push_back({stem_ + ".mtl", std::move(mtl_)});
    files_.push_back({stem_ + ".obj", std::move(obj_)});
    return std::move(files_);
  }

 private:
  template <class Numbers>
  static void Line(std::string& text, const char* start, const Numbers& numbers) {
    text += start;
    for (const auto number : numbers) {
      char digits[32];
      const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
      text.append(" ").append(digits, end);
    }
    text += '\n';
  }

  /// A name that no other object or material has, whatever the letter case.
  std::string ObjectName(const Mesh& mesh) {
    std::string name = PlainWord(mesh.name);
    while (!objectNames_.insert(ts3d::LowerCase(name)).second) name += "_";
    return name;
  }

  void AddMesh(const Mesh& mesh) {
    const std::string name = ObjectName(mesh);
    AddMaterial(name, LookOf(actor_, mesh));
    obj_ += "o " + name + "\n";
    for (const Vertex& vertex : mesh.vertices) Line(obj_, "v", vertex.position);
    // Here v counts from the bottom.
    for (const Vertex& vertex : mesh.vertices) {
      Line(obj_, "vt", std::array<float, 2>{vertex.uv[0], 1.0f - vertex.uv[1]});
    }
    for (const Vertex& vertex : mesh.vertices) Line(obj_, "vn", UnitNormal(vertex.normal));
    obj_ += "usemtl " + name + "\n";
    for (const auto& face : FacesOutwards(mesh)) {
      obj_ += "f";
      for (const int32_t corner : face) {
        const std::string number = std::to_string(firstVertex_ + static_cast<size_t>(corner));
        obj_.append(" ").append(number).append("/").append(number).append("/").append(number);
      }
      obj_ += '\n';
    }
    firstVertex_ += mesh.vertices.size();
  }

  void AddMaterial(const std::string& name, const Look& look) {
    mtl_ += "newmtl " + name + "\n";
    Line(mtl_, "Ka", look.ambient);
    Line(mtl_, "Kd", look.diffuse);
    Line(mtl_, "Ks", look.specular);
    Line(mtl_, "Ns", std::array{look.shininess});
    if (!look.picture) return;
    const std::string file = PictureFile(*look.picture);
    if (!file.empty()) mtl_ += "map_Kd " + file + "\n";
  }

  /// The file of a picture; empty when it cannot be decoded.
  std::string PictureFile(const Picture& picture) {
    const auto [known, isNew] = pictureFiles_.try_emplace(&picture);
    if (!isNew) return known->second;
    EncodedPicture encoded = encode_(picture);
    if (encoded.png.empty()) return {};
    return known->second = AddPictureFile(stem_, picture, std::move(encoded.png), files_);
  }

  const Actor& actor_;
  const std::string& stem_;
  const PictureEncoder& encode_;
  std::map<const Picture*, std::string> pictureFiles_;
  std::set<std::string> objectNames_;  ///< in lower case
  std::vector<ExportedFile> files_;
  std::string obj_, mtl_;
  size_t firstVertex_ = 1;
};

}  // namespace

std::vector<ExportedFile> ExportObj(const Actor& actor, const std::string& stem,
                                    const PictureEncoder& encode) {
  return ObjExport(actor, stem, encode).Run();
}

}  // namespace actor
