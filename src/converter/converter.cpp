// SPDX-License-Identifier: MIT
#include "converter/converter.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <system_error>
#include <utility>

#include "converter/check_textures.h"
#include "converter/describe_result.h"
#include "converter/work_folder.h"
#include "core/names.h"
#include "driver/converted_document.h"
#include "platform/files.h"
#include "platform/replacement.h"
#include "rig_check/check_rig.h"
#include "rig_check/choose_repairs.h"
#include "rig_check/rig_faults.h"

namespace ts3d {
namespace fs = platform::fs;
namespace {

/// Ends a run from inside a callback. No std::exception, so that nothing on the way takes it for a failure.
struct Cancelled {};

fs::path BesideModel(const fs::path& model) { return WithExtension(model, "czp"); }

/// What stands for a file of the model's name in a folder.
std::string PathOf(const ModelInput& model) {
  return model.bytes ? ".\\" + model.path.string() : ConverterPath(model.path);
}

std::optional<std::string> DocumentOf(const fs::path& package) {
  std::optional<PackageMember> document = ReadLastMember(package.string(), ".xfg");
  return document ? std::optional(std::move(document->bytes)) : std::nullopt;
}

/// However a run ends: its scene goes, as the model's bytes are the host's, and so does what its callbacks refer to.
class RunEnd {
 public:
  explicit RunEnd(Conversion& conversion) : conversion_(conversion) {}
  ~RunEnd() {
    conversion_.Release();
    ConversionJob& job = conversion_.Job();
    job.onProgress = nullptr;
    job.onMesh = nullptr;
    job.status.onLine = nullptr;
    job.textureCallback = nullptr;
  }
  RunEnd(const RunEnd&) = delete;
  RunEnd& operator=(const RunEnd&) = delete;

 private:
  Conversion& conversion_;
};

}  // namespace

/// What the callbacks of one run need.
struct Converter::Run {
  Converter& converter;
  textures::TextureConverter* pictures;
};

void Converter::SetUp(ConverterOptions options, ConverterHost host) {
  options_ = std::move(options);
  host_ = std::move(host);
}

int32_t Converter::Refuse(int32_t code, std::string reason) {
  error_ = std::move(reason);
  json_ = ResultAsJson(code, error_);
  return code;
}

int32_t Converter::RefuseWithoutMemory() noexcept {
  json_.clear();
  error_.clear();
  // So short a text has its place in the string itself.
  error_ = "out of memory";
  return FBX_TO_TS3D_OUT_OF_MEMORY;
}

int32_t Converter::Convert(const ModelInput& model, const fs::path& package) {
  error_.clear();
  lastDocument_.reset();
  if (!model.bytes && !platform::FileExists(model.path.string())) {
    return Refuse(FBX_TO_TS3D_NO_FILE, DescribeResult(FBX_TO_TS3D_NO_FILE));
  }
  const fs::path target =
      package.empty() && !host_.onPackage && !model.bytes ? BesideModel(model.path) : package;
  if (!target.empty() && !model.bytes && platform::IsSameFile(target.string(), model.path.string())) {
    return Refuse(FBX_TO_TS3D_INVALID_ARGUMENT, "the package would take the place of the model");
  }
  try {
    if (!model.bytes) return ConvertIn(WorkFolder(model.path), model, target);
    return ConvertIn(WorkFolder(options_.pictureFolder, model.path), model, target);
  } catch (const fs::filesystem_error& error) {
    return Refuse(FBX_TO_TS3D_OUTPUT_FAILED, error.what());
  }
}

int32_t Converter::ConvertIn(const WorkFolder& work, const ModelInput& model, const fs::path& package) {
  RunNotes notes;
  const RunEnd end(conversion_);
  ConversionJob& job = conversion_.Job();
  int32_t result = FBX_TO_TS3D_CANCELLED;
  try {
    result = RunIn(work, model, notes);
    if (result == FBX_TO_TS3D_OK) {
      const fs::path made = BesideModel(work.Model());
      notes.members = ListMembers(made.string());
      notes.packageBytes = fs::file_size(made);
      lastDocument_ = DocumentOf(made);
      // Nothing may fail or be cancelled once the package is in its place.
      Advance(1);
      json_ = ConversionAsJson(result, error_, job, notes);
      result = Deliver(made, package);
    }
  } catch (const Cancelled&) {
    error_ = DescribeResult(result = FBX_TO_TS3D_CANCELLED);
  }
  if (result == FBX_TO_TS3D_OK) return result;
  job.vertexTotal = job.polygonTotal = 0;
  json_ = ConversionAsJson(result, error_, job, notes);
  return result;
}

int32_t Converter::RunIn(const WorkFolder& work, const ModelInput& model, RunNotes& notes) {
  const fs::path pictures = model.bytes && !options_.pictureFolder.empty()
                                ? options_.pictureFolder / model.path
                            : model.bytes ? work.Model()
                                          : model.path;
  textures::TextureConverter converter(pictures, options_.longestPictureSide);
  Run run{*this, &converter};
  ConversionJob& job = conversion_.Job();
  PrepareJob();
  job.status.callbackContext = &run;
  job.status.onLine = [this, &notes](const StatusLine& line) { TakeLine(line, notes); };
  job.textureCallback = options_.convertsPictures ? TakeTexture : nullptr;
  job.onProgress = [this](double fraction) { Advance(fraction); };
  fraction_ = 0;
  ConversionRequest request{ConverterPath(work.Model()), PathOf(model)};
  request.actorType = options_.actorType;
  request.isQuiet = true;
  request.source = model.bytes;
  if (options_.repairsAsNeeded) {
    request.chooseRepairs = [&notes](const scene::KFbxScene&, const ModelSource& model) {
      ChosenRepairs chosen = ChooseRepairs(model);
      notes.repairs = std::move(chosen.needed);
      return chosen.settings;
    };
  }
  RigFaults faults;
  job.onMesh = [&](const ConvertedMesh& mesh) { faults.Take(mesh, *job.skeleton); };
  request.onConverted = [&](const scene::KFbxNode&) {
    RigReport report;
    faults.Tell(job.Model(), *job.skeleton, report);
    for (Finding& fault : report.findings) {
      if (fault.severity == Severity::Error) {
        error_ = fault.text;
      } else {
        notes.faults.push_back(std::move(fault));
      }
    }
  };
  const auto result = static_cast<int32_t>(conversion_.Convert(request));
  notes.textureProblems = converter.Problems();
  if (result == FBX_TO_TS3D_OK) {
    error_.clear();
  } else if (error_.empty()) {
    error_ = job.failureReason.empty() ? DescribeResult(result) : std::string(job.failureReason);
  }
  return result;
}

void Converter::PrepareJob() {
  ConversionJob& job = conversion_.Job();
  job.rotationX = options_.rotationX;
  job.rotationY = options_.rotationY;
  job.boneRenameList = options_.boneRenames;
  job.meshOptionMode = options_.meshOptionMode;
  job.meshOptionList = options_.meshOptions;
  job.settings.modelUnit = options_.modelUnit;
  job.settings.exclusionList = options_.exclusions;
  job.settings.repairs = options_.repairs;
  job.settings.packLevel = options_.packLevel;
  job.settings.mostInfluences = options_.mostInfluences;
  job.settings.offerTgaTextures = options_.convertsPictures;
  job.settings.findsBaseColours = options_.convertsPictures;
  job.configScale = 1.0f;
  job.nextMeshThreadId = job.nextMaterialThreadId = kFirstThreadId;
  job.settings.holdsSmallFiles = true;
  job.settings.ownsModelFolder = true;
  job.status.ForgetSent();
}

void Converter::Advance(double fraction) {
  fraction_ = std::max(fraction_, fraction);
  if (host_.onProgress && !host_.onProgress(fraction_)) throw Cancelled();
}

void Converter::TakeLine(const StatusLine& line, RunNotes& notes) {
  notes.Take(line);
  if (host_.onLine) host_.onLine(std::string(line.text));
  Advance(fraction_);
}

void FBX_TO_TS3D_CALL Converter::TakeTexture(void* context, const char* source, uint8_t* converted) {
  auto& run = *static_cast<Run*>(context);
  const ConversionJob& job = run.converter.conversion_.Job();
  *converted = run.pictures->Provide(job.files, job.loaded.Scene(), source, *converted != 0) ? 1 : 0;
}

int32_t Converter::Deliver(const fs::path& made, const fs::path& package) {
  if (package.empty()) return HandOver(made);
  if (!platform::MoveIntoPlace(made.string(), package.string())) {
    error_ = "\"" + package.string() + "\" cannot be written: " + std::strerror(errno);
    return FBX_TO_TS3D_OUTPUT_FAILED;
  }
  return FBX_TO_TS3D_OK;
}

int32_t Converter::HandOver(const fs::path& made) {
  const platform::FilePtr file = platform::OpenFile(made.string(), "rb");
  std::vector<char> piece(1 << 16);
  while (const size_t size = file ? std::fread(piece.data(), 1, piece.size(), file.get()) : 0) {
    if (!host_.onPackage({piece.data(), size})) throw Cancelled();
  }
  if (file && !std::ferror(file.get())) return FBX_TO_TS3D_OK;
  error_ = "the package cannot be read again";
  return FBX_TO_TS3D_OUTPUT_FAILED;
}

int32_t Converter::Finish(const FinalSettings& settings, std::string boneRenames, int32_t rotationX,
                          int32_t rotationY) {
  ConversionJob& job = conversion_.Job();
  // The bone tree speaks for the document that it came with, wherever that is by now.
  const std::optional<std::string> document = DocumentOf(settings.sourcePath);
  const bool isOurs = document == lastDocument_;
  std::shared_ptr<SkeletonState> skeleton = job.skeleton;
  const ActorType actorType = job.actorType;
  if (!isOurs) {
    job.skeleton.reset();
    job.actorType = document ? ActorTypeOf(*document) : ActorType::None;
  }
  job.boneRenameList = std::move(boneRenames);
  job.rotationX = rotationX;
  job.rotationY = rotationY;
  const auto result = static_cast<int32_t>(conversion_.FinishPackage(settings));
  job.skeleton = std::move(skeleton);
  job.actorType = actorType;
  if (isOurs && result == FBX_TO_TS3D_OK) lastDocument_ = DocumentOf(settings.sourcePath);
  const char* const why = result == FBX_TO_TS3D_DOCUMENT_UNREADABLE
                              ? "the package cannot be read, has no document or one that lacks a section"
                              : DescribeResult(result);
  return Refuse(result, result == FBX_TO_TS3D_OK ? "" : why);
}

int32_t Converter::Check(const ModelInput& model) {
  RigReport report = CheckRig(PathOf(model), {options_.exclusions, Plugins::LeaveOut, true, model.bytes});
  const fs::path pictures = model.bytes ? options_.pictureFolder / model.path : model.path;
  if (!model.bytes || !options_.pictureFolder.empty()) AddTextureFindings(pictures, {}, report);
  report.SortFindings();
  int32_t result = report.meshes.empty() ? FBX_TO_TS3D_NO_MESH : FBX_TO_TS3D_OK;
  if (!report.loaded) {
    const bool exists = model.bytes || platform::FileExists(model.path.string());
    result = exists ? FBX_TO_TS3D_LOAD_FAILED : FBX_TO_TS3D_NO_FILE;
  }
  error_.clear();
  if (result != FBX_TO_TS3D_OK)
    error_ = report.findings.empty() ? DescribeResult(result) : report.findings[0].text;
  json_ = CheckAsJson(result, error_, report);
  return result;
}

}  // namespace ts3d
