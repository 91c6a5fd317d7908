// SPDX-License-Identifier: MIT
// Registers a reader for files that start with "PLUGIN". It opens them, but reading asks for a password.
#include "scene/readers/reader_registry.h"

namespace {

class OpenPluginFile : public scene::KFbxOpenFile {
 public:
  scene::KFbxImportStatus Read(scene::KFbxScene&, const scene::KFbxIOSettings&) override {
    return {scene::EImportError::ePASSWORD_ERROR, "said by the plug-in"};
  }
};

class PluginReader : public scene::KFbxReader {
 public:
  bool Detects(std::string_view head) const override { return head.starts_with("PLUGIN"); }
  std::unique_ptr<scene::KFbxOpenFile> Open(std::string_view, const scene::KFbxProgress&,
                                            scene::KFbxFileVersion& version,
                                            scene::KFbxImportStatus&) const override {
    version = {1, 2, 3};
    return std::make_unique<OpenPluginFile>();
  }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) void FbxSceneRegisterReaders(
    scene::KFbxReaderRegistry& registry) {
  registry.Register(std::make_unique<PluginReader>());
}
