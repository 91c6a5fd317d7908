// SPDX-License-Identifier: MIT
#include "scene/gltf/open_gltf.h"

#include "scene/assemble/build_scene.h"
#include "scene/gltf/model_remarks.h"
#include "scene/gltf/unpack_meshes.h"
#include "scene/gltf/write_scene.h"

namespace scene::gltf {
namespace {

/// Shares of an import when its text, and then its data, has been read.
constexpr double kTextRead = 0.2, kDataRead = 0.8;

/// The model's file and those beside it.
struct GltfFiles {
  FileBytes file;
  FileParts parts;
  std::unique_ptr<BufferBytes> buffers;
};

/// What the records of one scene point to.
struct SceneStorage {
  std::shared_ptr<GltfFiles> files;
  std::deque<Geometry> meshes;
};

/// How a model of glTF itself stands: like FBX characters, but for old avatars.
Conventions ConventionsOf(const Document& document) {
  Conventions conventions;
  conventions.axes = "its axes are those of FBX characters: Y is up, and they look along +Z";
  if (document.avatar.facesBack) {
    conventions.turn = {0, 180, 0};
    conventions.axes =
        "the avatar, which looks along -Z, is turned to look along +Z, as FBX characters do; Y is up";
  }
  return conventions;
}

double HeightOf(const std::deque<Geometry>& meshes) {
  HeightRange heights;
  for (const Geometry& mesh : meshes) mesh.points.AddHeights(mesh.place, heights);
  return heights.Height();
}

class OpenGltfFile : public KFbxOpenFile {
 public:
  OpenGltfFile(std::shared_ptr<GltfFiles> files, Document document, Conventions conventions,
               std::string_view path, const KFbxProgress& progress)
      : files_(std::move(files)),
        document_(std::move(document)),
        conventions_(std::move(conventions)),
        path_(path),
        progress_(progress) {}

  KFbxImportStatus Read(KFbxScene& scene, const KFbxIOSettings& settings) override {
    try {
      auto tree = std::make_shared<RecordTree>();
      const ModelFacts facts = ReadRecords(settings, *tree);
      const auto tell = [this](double built) { Tell(kDataRead + (1.0 - kDataRead) * built); };
      if (const ParseError error = BuildScene(tree, scene, tell); error.Failed())
        return {EImportError::eFILE_CORRUPTED, error.text};
      for (const std::string& path : files_->buffers->PathsOfOtherFiles()) scene.AddDataFile(path);
      scene.SetLicence(document_.avatar.licence);
      AddRemarks(document_, conventions_, facts, scene);
    } catch (const Fault& fault) {
      return {EImportError::eFILE_CORRUPTED, fault.what()};
    }
    return {};
  }

 private:
  void Tell(double done) const {
    if (progress_) progress_(done);
  }

  ModelFacts ReadRecords(const KFbxIOSettings& settings, RecordTree& tree) {
    const auto storage = std::make_shared<SceneStorage>();
    storage->files = files_;
    tree.storage = storage;
    tree.bytes = conventions_.model.empty() ? files_->file.bytes : conventions_.model;
    Budget budget = OpenBuffers(settings, tree);
    const AccessorReader accessors(document_, *files_->buffers, budget);
    ModelFacts facts;
    facts.scale = CentimetresIn(settings.GetStringProp(kModelUnitSetting, ""), conventions_);
    // From the world of the file into that of FBX characters.
    const KFbxXMatrix world{{}, conventions_.turn, {facts.scale, facts.scale, facts.scale}};
    const Rig rig = FindRig(document_, accessors, budget, world);
    facts.isPosed = rig.isPosed;
    WriteScene(document_, *files_->buffers, rig, accessors, budget, tree, storage->meshes, facts.addedRoot);
    facts.height = HeightOf(storage->meshes);
    Tell(kDataRead);
    return facts;
  }

  /// Makes the data ready, and says how large it is.
  /// @return the memory that is left for what is made of it
  Budget OpenBuffers(const KFbxIOSettings& settings, RecordTree& tree) {
    // Unpacking changes the document, so it happens once, however many scenes are read.
    std::unique_ptr<BufferBytes> buffers = std::move(files_->buffers);
    const bool isNew = !buffers;
    if (isNew) {
      buffers = std::make_unique<BufferBytes>(files_->parts, FolderOfModel(settings, path_));
      buffers->Open(document_);
    }
    tree.otherFiles = buffers->SizeOfOtherFiles();
    Budget budget(tree.MemoryAllowance() / 2);
    if (!conventions_.model.empty()) budget.Take(files_->file.bytes.size());
    if (isNew) Unpack(tree.bytes.size() + tree.otherFiles, budget, *buffers);
    files_->buffers = std::move(buffers);
    return budget;
  }

  void Unpack(uint64_t modelSize, Budget& budget, BufferBytes& buffers) {
    buffers.Unpack(document_, budget);
    UnpackMeshes(document_, buffers, modelSize, budget, [this] { Tell(kTextRead); });
  }

  std::shared_ptr<GltfFiles> files_;
  Document document_;
  Conventions conventions_;
  KString path_;
  KFbxProgress progress_;
};

}  // namespace

std::unique_ptr<KFbxOpenFile> OpenGltf(FileBytes file, std::string_view path, Conventions* translated,
                                       const KFbxProgress& progress, KFbxFileVersion& version,
                                       KFbxImportStatus& status) {
  try {
    auto files = std::make_shared<GltfFiles>();
    files->parts = SplitFile(file.bytes);
    Document document = ReadDocument(files->parts.json, file.bytes.size());
    files->file = std::move(file);
    version = {document.version.first, document.version.second, 0};
    if (progress) progress(kTextRead);
    Conventions conventions = translated ? std::move(*translated) : ConventionsOf(document);
    return std::make_unique<OpenGltfFile>(std::move(files), std::move(document), std::move(conventions), path,
                                          progress);
  } catch (const VersionFault& fault) {
    status = {EImportError::eVERSION_NOT_SUPPORTED, fault.what()};
  } catch (const Fault& fault) {
    status = {EImportError::eFILE_CORRUPTED, fault.what()};
  }
  return nullptr;
}

}  // namespace scene::gltf
