// SPDX-License-Identifier: MIT
#include "scene/other/other_reader.h"

#include "scene/gltf/open_translated.h"
#include "scene/other/translate.h"
#include "scene/other/utf16_text.h"
#include "scene/readers/open_model.h"

namespace scene {
namespace {

/// Share of an import that translating the model is.
constexpr double kTranslated = 0.4;

/// The model, and what it became.
struct ModelBytes {
  std::string_view model;
  std::shared_ptr<const void> storage = nullptr;  ///< of `model`; null where somebody else keeps it
  translation::Answer answer = {};
};

class OpenOtherFile : public KFbxOpenFile {
 public:
  OpenOtherFile(const other::ModelKind& kind, std::shared_ptr<ModelBytes> bytes, std::string_view path,
                const KFbxProgress& progress)
      : kind_(kind), bytes_(std::move(bytes)), path_(path), progress_(progress) {}

  KFbxImportStatus Read(KFbxScene& scene, const KFbxIOSettings& settings) override {
    const std::string folder = gltf::FolderOfModel(settings, path_);
    const std::optional<std::string> text = other::FromUtf16(bytes_->model);
    const std::string_view model = text ? *text : bytes_->model;
    try {
      bytes_->answer = other::Translate(kind_, model, folder, [this] { Tell(0); });
    } catch (const translation::Fault& fault) {
      return {EImportError::eFILE_CORRUPTED, fault.what()};
    }
    KFbxImportStatus status;
    const auto tell = [this](double read) { Tell(kTranslated + (1 - kTranslated) * read); };
    const std::unique_ptr<KFbxOpenFile> file =
        gltf::OpenTranslated(bytes_->answer.Data(), bytes_, MakeConventions(model), path_, tell, status);
    if (file) status = file->Read(scene, settings);
    for (const std::string& other : bytes_->answer.otherFiles) scene.AddDataFile(folder + other);
    for (const translation::LostJoint& lost : bytes_->answer.lostJoints)
      scene.AddLostJoint(lost.name, lost.points);
    return status;
  }

 private:
  void Tell(double done) const {
    if (progress_) progress_(done);
  }

  gltf::Conventions MakeConventions(std::string_view model) const {
    gltf::Conventions conventions;
    conventions.centimetres = kind_.centimetres;
    conventions.turn = {kind_.turn[0], kind_.turn[1], 0};
    conventions.axes = kind_.looks;
    conventions.model = bytes_->model;
    if (kind_.name == std::string_view("Collada")) conventions.unitsTaken = other::ColladaUnit(model);
    return conventions;
  }

  const other::ModelKind& kind_;
  std::shared_ptr<ModelBytes> bytes_;
  KString path_;
  KFbxProgress progress_;
};

}  // namespace

bool OtherReader::Detects(std::string_view head) const {
  const std::optional<std::string> text = other::FromUtf16(head);
  return kind_.detects(text ? *text : head);
}

std::unique_ptr<KFbxOpenFile> OtherReader::Open(std::string_view path, const KFbxProgress& progress,
                                                KFbxFileVersion&, KFbxImportStatus& status) const {
  const auto file = OpenModelFile(path, status);
  if (!file) return nullptr;
  auto bytes = std::make_shared<ModelBytes>(ModelBytes{file->Bytes(), file});
  return std::make_unique<OpenOtherFile>(kind_, std::move(bytes), path, progress);
}

std::unique_ptr<KFbxOpenFile> OtherReader::OpenMemory(std::string_view path, std::string_view model,
                                                      const KFbxProgress& progress, KFbxFileVersion&,
                                                      KFbxImportStatus&) const {
  auto bytes = std::make_shared<ModelBytes>(ModelBytes{model});
  return std::make_unique<OpenOtherFile>(kind_, std::move(bytes), path, progress);
}

}  // namespace scene
