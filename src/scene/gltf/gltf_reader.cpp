// SPDX-License-Identifier: MIT
#include "scene/gltf/gltf_reader.h"

#include <cstdio>

#include "base/plain_text.h"
#include "scene/assemble/build_scene.h"
#include "scene/gltf/open_translated.h"
#include "scene/gltf/unpack_meshes.h"
#include "scene/gltf/write_scene.h"
#include "scene/readers/open_model.h"

namespace scene {
namespace {

/// Shares of an import when its text, and then its data, has been read.
constexpr double kTextRead = 0.2, kDataRead = 0.8;

/// The model's file and those beside it.
struct GltfFiles {
  std::string_view bytes;
  std::shared_ptr<const void> storage;  ///< of `bytes`; null where somebody else keeps them
  gltf::FileParts parts;
  std::unique_ptr<gltf::BufferBytes> buffers;
};

/// What the records of one scene point to.
struct SceneStorage {
  std::shared_ptr<GltfFiles> files;
  std::deque<gltf::Geometry> meshes;
};

/// How a model of glTF itself stands: like FBX characters, but for old avatars.
gltf::Conventions ConventionsOf(const gltf::Document& document) {
  gltf::Conventions conventions;
  conventions.axes = "its axes are those of FBX characters: Y is up, and they look along +Z";
  if (document.avatar.facesBack) {
    conventions.turn = {0, 180, 0};
    conventions.axes =
        "the avatar, which looks along -Z, is turned to look along +Z, as FBX characters do; Y is up";
  }
  return conventions;
}

/// For users, in centimetres or metres.
std::string LengthText(double centimetres) {
  char text[40];
  if (centimetres < 10) {
    std::snprintf(text, sizeof text, "%.2g cm", centimetres);
  } else if (centimetres < 1000) {
    std::snprintf(text, sizeof text, "%.0f cm", centimetres);
  } else {
    std::snprintf(text, sizeof text, "%.4g m", centimetres / 100);
  }
  return text;
}

class OpenGltfFile : public KFbxOpenFile {
 public:
  OpenGltfFile(std::shared_ptr<GltfFiles> files, gltf::Document document, gltf::Conventions conventions,
               std::string_view path, const KFbxProgress& progress)
      : files_(std::move(files)),
        document_(std::move(document)),
        conventions_(std::move(conventions)),
        path_(path),
        progress_(progress) {}

  KFbxImportStatus Read(KFbxScene& scene, const KFbxIOSettings& settings) override {
    try {
      auto tree = std::make_shared<RecordTree>();
      ReadRecords(settings, *tree);
      const auto tell = [this](double built) { Tell(kDataRead + (1.0 - kDataRead) * built); };
      if (const ParseError error = BuildScene(tree, scene, tell); error.Failed())
        return {EImportError::eFILE_CORRUPTED, error.text};
    } catch (const gltf::Fault& fault) {
      return {EImportError::eFILE_CORRUPTED, fault.what()};
    }
    Remark(scene);
    return {};
  }

 private:
  void Tell(double done) const {
    if (progress_) progress_(done);
  }

  void ReadRecords(const KFbxIOSettings& settings, RecordTree& tree) {
    // Unpacking changes the document, so it happens once, however many scenes are read.
    std::unique_ptr<gltf::BufferBytes> buffers = std::move(files_->buffers);
    const bool isNew = !buffers;
    if (isNew) {
      buffers = std::make_unique<gltf::BufferBytes>(files_->parts, gltf::FolderOfModel(settings, path_));
      buffers->Open(document_);
    }
    tree.bytes = conventions_.model.empty() ? files_->bytes : conventions_.model;
    tree.otherFiles = buffers->SizeOfOtherFiles();
    const auto storage = std::make_shared<SceneStorage>();
    storage->files = files_;
    tree.storage = storage;
    gltf::Budget budget(tree.MemoryAllowance() / 2);
    if (!conventions_.model.empty()) budget.Take(files_->bytes.size());
    if (isNew) Unpack(tree.bytes.size() + tree.otherFiles, budget, *buffers);
    files_->buffers = std::move(buffers);
    const gltf::AccessorReader accessors(document_, *files_->buffers, budget);
    scale_ = gltf::CentimetresIn(settings.GetStringProp(kModelUnitSetting, ""), conventions_);
    // From the world of the file into that of FBX characters.
    const KFbxXMatrix world{{}, conventions_.turn, {scale_, scale_, scale_}};
    const gltf::Rig rig = gltf::FindRig(document_, accessors, budget, world);
    isPosed_ = rig.isPosed;
    WriteScene(document_, *files_->buffers, rig, accessors, budget, tree, storage->meshes, addedRoot_);
    gltf::HeightRange heights;
    for (const gltf::Geometry& mesh : storage->meshes) mesh.points.AddHeights(mesh.place, heights);
    height_ = heights.Height();
    Tell(kDataRead);
  }

  void Unpack(uint64_t modelSize, gltf::Budget& budget, gltf::BufferBytes& buffers) {
    buffers.Unpack(document_, budget);
    UnpackMeshes(document_, buffers, modelSize, budget, [this] { Tell(kTextRead); });
  }

  void Remark(KFbxScene& scene) const {
    for (const std::string& path : files_->buffers->PathsOfOtherFiles()) scene.AddDataFile(path);
    scene.SetLicence(document_.avatar.licence);
    scene.AddRemark(UnitRemark());
    scene.AddRemark(conventions_.axes);
    if (!document_.unread.empty()) {
      scene.AddRemark("it has extensions that are not read, so something may be missing: " +
                      document_.unread);
    }
    if (isPosed_) {
      scene.AddRemark("its skeleton is posed, and the package has it as it stood when the skin was bound");
    }
    if (!addedRoot_.empty()) {
      scene.AddRemark("its skeleton has several top bones; they stand under a new bone \"" + addedRoot_ +
                      "\"");
    }
  }

  std::string UnitRemark() const {
    char unit[100] = "its lengths are taken for centimetres, as FBX characters have them";
    if (scale_ != 1.0) {
      std::snprintf(unit, sizeof unit,
                    "its lengths are multiplied by %g to be the centimetres of FBX characters", scale_);
    }
    return height_ > 0 ? std::string(unit) + ", so it is " + LengthText(height_) + " high" : unit;
  }

  std::shared_ptr<GltfFiles> files_;
  gltf::Document document_;
  gltf::Conventions conventions_;
  KString path_;
  KFbxProgress progress_;
  double scale_ = 1.0;
  bool isPosed_ = false;
  double height_ = 0.0;    ///< of the model, in centimetres
  std::string addedRoot_;  ///< name of the bone that joins several top bones
};

/// @param translated  null for a model of glTF itself
std::unique_ptr<KFbxOpenFile> OpenBytes(std::shared_ptr<GltfFiles> files, std::string_view path,
                                        gltf::Conventions* translated, const KFbxProgress& progress,
                                        KFbxFileVersion& version, KFbxImportStatus& status) {
  try {
    files->parts = gltf::SplitFile(files->bytes);
    gltf::Document document = gltf::ReadDocument(files->parts.json, files->bytes.size());
    version = {document.version.first, document.version.second, 0};
    if (progress) progress(kTextRead);
    gltf::Conventions conventions = translated ? std::move(*translated) : ConventionsOf(document);
    return std::make_unique<OpenGltfFile>(std::move(files), std::move(document), std::move(conventions), path,
                                          progress);
  } catch (const gltf::VersionFault& fault) {
    status = {EImportError::eVERSION_NOT_SUPPORTED, fault.what()};
  } catch (const gltf::Fault& fault) {
    status = {EImportError::eFILE_CORRUPTED, fault.what()};
  }
  return nullptr;
}

}  // namespace

namespace gltf {

double CentimetresIn(std::string_view unit, const Conventions& conventions) {
  if (unit.empty()) return conventions.centimetres;
  const double centimetres = unit == "cm" ? 1.0 : unit == "mm" ? 0.1 : unit == "inch" ? 2.54 : 100.0;
  return centimetres / conventions.unitsTaken;
}

std::string FolderOfModel(const KFbxIOSettings& settings, std::string_view path) {
  const std::string_view folder = path.substr(0, path.find_last_of("\\/") + 1);
  return settings.GetStringProp(kModelFolderSetting, folder.empty() ? ".\\" : folder);
}

std::unique_ptr<KFbxOpenFile> OpenTranslated(std::string_view glb, std::shared_ptr<const void> storage,
                                             Conventions conventions, std::string_view path,
                                             const KFbxProgress& progress, KFbxImportStatus& status) {
  auto files = std::make_shared<GltfFiles>();
  files->bytes = glb;
  files->storage = std::move(storage);
  KFbxFileVersion version;
  return OpenBytes(std::move(files), path, &conventions, progress, version, status);
}

}  // namespace gltf

bool GltfReader::Detects(std::string_view head) const {
  return head.starts_with("glTF") || base::TextStart(head).starts_with('{');
}

std::unique_ptr<KFbxOpenFile> GltfReader::Open(std::string_view path, const KFbxProgress& progress,
                                               KFbxFileVersion& version, KFbxImportStatus& status) const {
  auto file = OpenModelFile(path, status);
  if (!file) return nullptr;
  auto files = std::make_shared<GltfFiles>();
  files->bytes = file->Bytes();
  files->storage = std::move(file);
  return OpenBytes(std::move(files), path, nullptr, progress, version, status);
}

std::unique_ptr<KFbxOpenFile> GltfReader::OpenMemory(std::string_view path, std::string_view bytes,
                                                     const KFbxProgress& progress, KFbxFileVersion& version,
                                                     KFbxImportStatus& status) const {
  auto files = std::make_shared<GltfFiles>();
  files->bytes = bytes;
  return OpenBytes(std::move(files), path, nullptr, progress, version, status);
}

}  // namespace scene
