// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/container/record_tree.h"
#include "scene/model/object.h"

namespace scene {

/// Decodes a whole base64 text; empty when it is none.
KString DecodeBase64(std::string_view text);

/// A picture file that may be embedded in the model.
class KFbxVideo : public KFbxObject {
 public:
  KFbxVideo(std::string_view name, RecordRef record);

  const KString& GetFileName() const { return fileName_; }
  const KString& GetRelativeFileName() const { return relativeFileName_; }
  /// Whether the file name was made up: nothing of that name on disk is this picture.
  bool IsNamelessFile() const { return isNameless_; }
  /// The embedded file; empty when there is none or it is damaged.
  KString ReadContent() const;

 private:
  RecordRef record_;
  KString fileName_, relativeFileName_;
  bool isNameless_;
};

/// A file texture.
class KFbxTexture : public KFbxObject {
 public:
  KFbxTexture(std::string_view name, RecordRef record);

  const KString& GetFileName() const { return fileName_; }
  const KString& GetRelativeFileName() const { return relativeFileName_; }
  KFbxVideo* GetVideo() const { return video_; }
  /// Whether the picture is embedded in the model; the file name is then that of the picture taken out of it.
  bool IsEmbedded() const { return isEmbedded_; }
  /// Name of the texture coordinates that the texture is made for; empty when it does not say.
  const KString& GetUVSet() const { return uvSet_; }

  // For whoever builds a scene.
  void SetEmbeddedFile(std::string_view fileName) {
    fileName_ = fileName;
    isEmbedded_ = true;
  }
  void SetVideo(KFbxVideo& video) {
    if (!video_) video_ = &video;
  }

 private:
  KString fileName_, relativeFileName_, uvSet_;
  KFbxVideo* video_ = nullptr;
  bool isEmbedded_ = false;
};

/// A stack of textures; not a file texture itself.
class KFbxLayeredTexture : public KFbxObject {
 public:
  using KFbxObject::KFbxObject;

  int GetLayerCount() const { return static_cast<int>(layers_.size()); }
  /// The lowest layer that names a picture, or null.
  KFbxTexture* GetBaseTexture() const;

  // For whoever builds a scene: the file textures among the layers, from the lowest on.
  void AddLayer(KFbxTexture& texture) { layers_.push_back(&texture); }

 private:
  std::vector<KFbxTexture*> layers_;
};

}  // namespace scene
