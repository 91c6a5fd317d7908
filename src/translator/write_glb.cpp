// SPDX-License-Identifier: MIT
#include "translator/write_glb.h"

#include <stdexcept>

#include "translator/write_materials.h"
#include "translator/write_meshes.h"

namespace translator {
namespace {

std::string Matrix(const aiMatrix4x4& matrix) {
  JsonList numbers;
  for (unsigned i = 0; i < 16; ++i) numbers.Add(Number(matrix[i % 4][i / 4]));
  return numbers.Text();
}

/// Names that the library makes up begin with a dollar, or are in angle brackets, as those of Collada files may be.
bool IsMadeUp(std::string_view name, const FormatTraits& format) {
  const bool hasBrackets = std::string_view(format.ending) != "dae" && name.starts_with('<');
  return name.empty() || hasBrackets || name.starts_with('$');
}

/// Whether it is more than the pose that some formats tell in this way.
bool Moves(const aiAnimation& motion) {
  for (unsigned i = 0; i < motion.mNumChannels; ++i) {
    const aiNodeAnim& channel = *motion.mChannels[i];
    if (channel.mNumPositionKeys > 1 || channel.mNumRotationKeys > 1 || channel.mNumScalingKeys > 1)
      return true;
  }
  return false;
}

constexpr const char* kUnnamed = "mesh";

class SceneWriter {
 public:
  SceneWriter(const aiScene& scene, const NodeTree& tree, const FormatTraits& format)
      : scene_(scene), tree_(tree), format_(format), meshes_(scene, tree, format, data_) {}

  std::string Write() {
    for (size_t i = 0; i < tree_.Count(); ++i) WriteNode(i);
    for (const std::string& node : laterNodes_) nodes_.Add(node);
    meshes_.WriteJointsWithoutSkin();
    JsonList motions;
    for (unsigned i = 0; i < scene_.mNumAnimations; ++i) {
      if (Moves(*scene_.mAnimations[i]))
        motions.Add("{\"name\":" + Quoted(View(scene_.mAnimations[i]->mName)) + "}");
    }
    const std::string materials = WriteMaterials(scene_, format_.isTextureAlone, data_);
    return Join("{\"asset\":{\"version\":\"2.0\"},\"scene\":0,\"scenes\":[{\"nodes\":[0]}],\"nodes\":" +
                nodes_.Text() + ",\"meshes\":" + meshes_.Meshes() + ",\"skins\":" + meshes_.Skins() +
                ",\"animations\":" + motions.Text() + "," + materials + "," + data_.Members() + "}");
  }

 private:
  void WriteNode(size_t number) {
    const aiNode& node = tree_.At(number);
    const std::vector<MeshWriter::Held> held = meshes_.Write(number);
    JsonList children;
    for (const size_t child : tree_.ChildrenOf(number)) children.Add(std::to_string(child));
    const bool isShared = held.size() > 1 || (!held.empty() && tree_.IsJoint(number));
    for (size_t i = 0; isShared && i < held.size(); ++i) {
      children.Add(std::to_string(tree_.Count() + laterNodes_.size()));
      laterNodes_.push_back("{\"name\":" + Quoted(NameOf(number, held[i])) + "," + held[i].members + "}");
    }
    const bool holdsOne = !isShared && !held.empty();
    nodes_.Add("{\"name\":" + Quoted(holdsOne ? NameOf(number, held[0]) : tree_.NameOf(number)) +
               ",\"matrix\":" + Matrix(node.mTransformation) +
               (children.Count() > 0 ? ",\"children\":" + children.Text() : "") +
               (holdsOne ? "," + held[0].members : "") + "}");
  }

  /// Meshes that have no name are called after their material where it is theirs alone.
  std::string NameOf(size_t node, const MeshWriter::Held& held) const {
    if (!IsMadeUp(tree_.NameOf(node), format_) && !format_.hasApartMeshes) return tree_.NameOf(node);
    const aiMesh& mesh = *scene_.mMeshes[held.first];
    if (!format_.hasApartMeshes)
      return IsMadeUp(View(mesh.mName), format_) ? kUnnamed : std::string(View(mesh.mName));
    aiString path;
    if (aiGetMaterialTexture(scene_.mMaterials[mesh.mMaterialIndex], aiTextureType_DIFFUSE, 0, &path) !=
        aiReturn_SUCCESS)
      return kUnnamed;
    std::string_view name = View(path);
    name.remove_prefix(name.find_last_of("/\\") + 1);
    name = name.substr(0, name.rfind('.'));
    return name.empty() ? kUnnamed : std::string(name);
  }

  /// The two chunks behind their headers.
  std::string Join(std::string json) const {
    json.resize((json.size() + 3) / 4 * 4, ' ');
    const size_t padded = (data_.Bytes().size() + 3) / 4 * 4;
    constexpr uint64_t kMost = 0xffffffff - 1024;
    if (uint64_t{json.size()} + padded > kMost) throw std::runtime_error("it is too large");
    std::string file = "glTF";
    const auto word = [&](size_t number) {
      for (unsigned shift = 0; shift < 32; shift += 8) file += static_cast<char>(number >> shift & 0xff);
    };
    file.reserve(28 + json.size() + padded);
    word(2);
    word(28 + json.size() + padded);
    word(json.size());
    file += "JSON" + json;
    word(padded);
    file.append("BIN\0", 4).append(data_.Bytes()).append(padded - data_.Bytes().size(), '\0');
    return file;
  }

  const aiScene& scene_;
  const NodeTree& tree_;
  const FormatTraits& format_;
  GlbData data_;
  MeshWriter meshes_;
  JsonList nodes_;
  std::vector<std::string> laterNodes_;  ///< behind those of the scene
};

}  // namespace

std::string WriteGlb(const aiScene& scene, const NodeTree& tree, const FormatTraits& format) {
  return SceneWriter(scene, tree, format).Write();
}

}  // namespace translator
