// SPDX-License-Identifier: MIT
#include "scene/fbx_reader.h"

#include "scene/assemble/build_scene.h"
#include "scene/container/container.h"
#include "scene/readers/open_model.h"

namespace scene {
namespace {

constexpr int kOldestVersion = 2000;
constexpr int kNewestVersion = 8999;

KFbxFileVersion SplitVersion(int version) {
  return {version / 1000, version % 1000 / 100, version % 100 / 10};
}

KString Describe(int version) {
  const KFbxFileVersion v = SplitVersion(version);
  return "FBX version " + std::to_string(v.major) + "." + std::to_string(v.minor) + "." +
         std::to_string(v.revision);
}

/// Binary files older than 6.0 all claim to be 3.0 (or 2.0) at their start.
int TrueVersion(const RecordTree& tree) {
  constexpr int kClaimedByOldFiles = 3000, kFirstHonestVersion = 6000;
  if (tree.ascii || tree.version > kClaimedByOldFiles) return tree.version;
  const int64_t version = tree.Find("FBXHeaderExtension").Child("FBXVersion").Integer(0, 0);
  return version > tree.version && version < kFirstHonestVersion ? static_cast<int>(version) : tree.version;
}

/// Share of an import that reading the records is; the rest is what is made of them.
constexpr double kRecordsRead = 0.7;

class OpenFbxFile : public KFbxOpenFile {
 public:
  OpenFbxFile(std::shared_ptr<RecordTree> tree, const KFbxProgress& progress)
      : tree_(std::move(tree)), progress_(progress) {}

  KFbxImportStatus Read(KFbxScene& scene, const KFbxIOSettings&) override {
    // How protected files are encrypted is not known, so no password opens them.
    if (tree_->Find("FBXHeaderExtension").Child("EncryptionType").Integer(0, 0) != 0) {
      return {EImportError::ePASSWORD_ERROR, "the file is protected by a password"};
    }
    const auto tell = [this](double built) {
      if (progress_) progress_(kRecordsRead + (1.0 - kRecordsRead) * built);
    };
    if (const ParseError error = BuildScene(tree_, scene, tell); error.Failed()) {
      return {EImportError::eFILE_CORRUPTED, error.text};
    }
    return {};
  }

 private:
  std::shared_ptr<RecordTree> tree_;
  KFbxProgress progress_;
};

KFbxImportStatus CheckVersion(int version) {
  if (version == 0) return {EImportError::eVERSION_NOT_READABLE, "the file's FBX version cannot be read"};
  if (version > kNewestVersion) {
    return {EImportError::eVERSION_NOT_READABLE, Describe(version) + " is not known"};
  }
  if (version < kOldestVersion) {
    return {EImportError::eVERSION_NOT_SUPPORTED,
            Describe(version) + " is too old; save the model as FBX 6.1 or later"};
  }
  return {};
}

std::unique_ptr<KFbxOpenFile> OpenRecords(std::shared_ptr<RecordTree> tree, const KFbxProgress& progress,
                                          KFbxFileVersion& version, KFbxImportStatus& status) {
  if (progress) tree->onRead = [&](double read) { progress(kRecordsRead * read); };
  status = ReadFbxRecords(*tree);
  tree->onRead = nullptr;
  version = SplitVersion(tree->version);
  if (!status.Succeeded()) return nullptr;
  return std::make_unique<OpenFbxFile>(std::move(tree), progress);
}

}  // namespace

bool FbxReader::Detects(std::string_view head) const { return DetectContainer(head) != ContainerKind::None; }

std::unique_ptr<KFbxOpenFile> FbxReader::Open(std::string_view path, const KFbxProgress& progress,
                                              KFbxFileVersion& version, KFbxImportStatus& status) const {
  auto file = OpenModelFile(path, status);
  if (!file) return nullptr;
  auto tree = std::make_shared<RecordTree>();
  tree->bytes = file->Bytes();
  tree->releasePages = [mapped = file.get()] { mapped->ReleasePages(); };
  tree->storage = std::move(file);
  return OpenRecords(std::move(tree), progress, version, status);
}

std::unique_ptr<KFbxOpenFile> FbxReader::OpenMemory(std::string_view, std::string_view bytes,
                                                    const KFbxProgress& progress, KFbxFileVersion& version,
                                                    KFbxImportStatus& status) const {
  auto tree = std::make_shared<RecordTree>();
  tree->bytes = bytes;
  return OpenRecords(std::move(tree), progress, version, status);
}

KFbxImportStatus ReadFbxRecords(RecordTree& tree) {
  const ContainerKind kind = DetectContainer(tree.bytes);
  tree.ascii = kind == ContainerKind::Ascii;
  tree.version = DetectVersion(tree.bytes, kind);
  KFbxImportStatus status = CheckVersion(tree.version);
  if (!status.Succeeded()) return status;
  const ParseError error = tree.ascii ? ReadAsciiRecords(tree) : ReadBinaryRecords(tree);
  if (error.Failed()) return {EImportError::eFILE_CORRUPTED, error.text};
  tree.version = TrueVersion(tree);
  return status;
}

}  // namespace scene
