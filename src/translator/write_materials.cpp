// SPDX-License-Identifier: MIT
#include "translator/write_materials.h"

#include <assimp/material.h>

#include <algorithm>
#include <map>
#include <vector>

#include "translator/node_tree.h"

namespace translator {
namespace {

/// As the URI of a file; nothing in it means more than it says.
std::string AsUri(std::string_view path) {
  std::string uri = path.starts_with("data:") ? "./" : "";
  for (const char c : path) uri += c == '%' ? std::string("%25") : std::string(1, c);
  return uri;
}

class MaterialsWriter {
 public:
  MaterialsWriter(const aiScene& scene, bool isTextureAlone, GlbData& data)
      : scene_(scene), isTextureAlone_(isTextureAlone), data_(data) {}

  std::string Write() {
    JsonList materials;
    const std::vector<unsigned> sets = CountSets();
    for (unsigned i = 0; i < scene_.mNumMaterials; ++i) materials.Add(Write(*scene_.mMaterials[i], sets[i]));
    return "\"materials\":" + materials.Text() + ",\"textures\":" + textures_.Text() +
           ",\"images\":" + images_.Text();
  }

 private:
  /// Sets of texture coordinates that the meshes of each material have.
  std::vector<unsigned> CountSets() const {
    std::vector<unsigned> sets(scene_.mNumMaterials);
    for (unsigned i = 0; i < scene_.mNumMeshes; ++i) {
      unsigned& most = sets[scene_.mMeshes[i]->mMaterialIndex];
      most = std::max(most, scene_.mMeshes[i]->GetNumUVChannels());
    }
    return sets;
  }

  std::string Write(const aiMaterial& material, unsigned sets) {
    aiString name, path;
    aiColor4D diffuse(1, 1, 1, 1), emissive(0, 0, 0, 1);
    float opacity = 1;
    unsigned coordinates = 0;
    aiGetMaterialString(&material, AI_MATKEY_NAME, &name);
    aiGetMaterialColor(&material, AI_MATKEY_COLOR_EMISSIVE, &emissive);
    aiGetMaterialFloatArray(&material, AI_MATKEY_OPACITY, &opacity, nullptr);
    const bool hasPicture = aiGetMaterialTexture(&material, aiTextureType_DIFFUSE, 0, &path, nullptr,
                                                 &coordinates) == aiReturn_SUCCESS &&
                            path.length > 0;
    // One that is not there stands for the only one.
    if (coordinates >= sets) coordinates = 0;
    if (!hasPicture || !isTextureAlone_) aiGetMaterialColor(&material, AI_MATKEY_COLOR_DIFFUSE, &diffuse);
    std::string colour = "{\"baseColorFactor\":[" + Number(diffuse.r) + "," + Number(diffuse.g) + "," +
                         Number(diffuse.b) + "," + Number(opacity) + "]";
    if (hasPicture) {
      colour += ",\"baseColorTexture\":{\"index\":" + std::to_string(TextureOf(View(path))) +
                ",\"texCoord\":" + std::to_string(coordinates) + "}";
    }
    return "{\"name\":" + Quoted(View(name)) + ",\"pbrMetallicRoughness\":" + colour + "}" +
           ",\"emissiveFactor\":[" + Number(emissive.r) + "," + Number(emissive.g) + "," +
           Number(emissive.b) + "]" + (opacity < 1 ? ",\"alphaMode\":\"BLEND\"}" : "}");
  }

  size_t TextureOf(std::string_view path) {
    const auto [known, isNew] = known_.try_emplace(std::string(path), textures_.Count());
    if (isNew) {
      const size_t image = images_.Add(Image(known->first));
      textures_.Add("{\"source\":" + std::to_string(image) + "}");
    }
    return known->second;
  }

  /// A picture in the model has a name like "*0". Of those that are no files it has only pixels, which are left out.
  std::string Image(const std::string& path) {
    const aiTexture* picture = scene_.GetEmbeddedTexture(path.c_str());
    if (!picture || picture->mHeight != 0) return "{\"uri\":" + Quoted(AsUri(path)) + "}";
    const size_t view = data_.AddView({reinterpret_cast<const char*>(picture->pcData), picture->mWidth});
    return "{\"bufferView\":" + std::to_string(view) + ",\"name\":" + Quoted(View(picture->mFilename)) +
           ",\"mimeType\":\"image/" + (picture->CheckFormat("jpg") ? "jpeg" : "png") + "\"}";
  }

  const aiScene& scene_;
  const bool isTextureAlone_;
  GlbData& data_;
  JsonList textures_, images_;
  std::map<std::string, size_t> known_;  ///< textures of paths
};

}  // namespace

std::string WriteMaterials(const aiScene& scene, bool isTextureAlone, GlbData& data) {
  return MaterialsWriter(scene, isTextureAlone, data).Write();
}

}  // namespace translator
