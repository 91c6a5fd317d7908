// SPDX-License-Identifier: MIT
#include "convert/convert_model.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>

#include "convert/model_inputs.h"
#include "convert/notice_findings.h"
#include "core/line_budget.h"
#include "core/progress.h"
#include "driver/convert.h"
#include "driver/converted_document.h"
#include "finish/apply_finish_settings.h"
#include "finish/finish_history.h"
#include "finish/finish_names.h"
#include "host/host_paths.h"
#include "host/input_problem.h"
#include "host/source_date.h"
#include "options/mesh_options.h"
#include "options/rename_preset.h"
#include "platform/files.h"
#include "platform/heap.h"
#include "proof/prove_conversion.h"
#include "proof/prove_repairs.h"
#include "results/step_times.h"
#include "results/unmatched_options.h"
#include "rig_check/document_names.h"
#include "rig_check/rig_faults.h"
#include "skeleton/skeleton_state.h"
#include "terminal/exit_codes.h"
#include "textures/tga_file.h"

namespace cli {
namespace fs = platform::fs;
namespace {

void SetUp(ts3d::ConversionJob& job, const ConvertOptions& options) {
  job.rotationY = options.rotationY;
  job.rotationX = options.rotationX;
  job.boneRenameList = JoinList(options.boneRenames);
  SetMeshOptions(options, job);
  job.settings.modelUnit = options.modelUnit;
  job.settings.exclusionList = options.excludedNames;
  job.settings.repairs = options.repairs;
  job.settings.packLevel = options.packLevel;
  job.settings.mostInfluences = options.mostInfluences;
  job.settings.memberDate = SourceDate();
  job.settings.holdsSmallFiles = true;
  job.settings.offerTgaTextures = true;
  job.settings.plugins = !options.loadsPlugins                     ? ts3d::Plugins::LeaveOut
                         : options.verbosity == Verbosity::Verbose ? ts3d::Plugins::LoadAndName
                                                                   : ts3d::Plugins::Load;
  job.settings.findsBaseColours = true;
}

/// Ends a conversion that would make the package that is there.
struct PackageIsCurrent {};

/// Runs in the work folder, where the converter deletes its work files.
/// @param request  without paths
int Convert(const ModelTask& task, const fs::path& shown, ts3d::ConversionRequest request,
            ts3d::ConversionJob& job) {
  request.fbxPath = ConverterPath(shown);
  request.actorPath = ConverterPath(task.model);
  request.keepsLoadError = true;
  const CurrentFolder current(shown.parent_path());
  return static_cast<int>(ts3d::RunConversion(job, request));
}

/// Applies the final settings to what a conversion has just written.
int Finish(const fs::path& shown, FinishSettings settings, ts3d::ConversionJob& job, ModelResult& result) {
  std::ifstream file(platform::ForStream(WithExtension(shown, "xfg")), std::ios::binary);
  const std::string document = ts3d::WithLineFeeds({std::istreambuf_iterator<char>(file), {}});
  std::vector<std::string> bones;
  for (const ts3d::BoneNode* bone : job.skeleton->bones.PreOrder()) bones.push_back(bone->name);
  for (UnmatchedOption& entry : ResolveNames(settings, document, bones))
    result.unmatchedOptions.push_back(std::move(entry));
  // Inside the work folder, which goes whatever becomes of this process.
  const fs::path nowhere = shown.parent_path() / "fbx2czp-nowhere";
  fs::create_directory(nowhere);
  const CurrentFolder current(nowhere);
  return ApplyFinishSettings(shown.string(), settings, document, job);
}

void AddNote(const char* code, std::string text, ModelResult& result) {
  result.notes.push_back({code, ts3d::Severity::Note, ts3d::Subject::File, {}, std::move(text), {}});
}

ts3d::RepairSettings RepairAsNeeded(scene::KFbxScene& scene, const ts3d::ModelSource& model,
                                    const ModelTask& task, const ConvertOptions& options,
                                    ModelResult& result) {
  const ProvenRepairs repairs = ChooseRepairsByProof(scene, model, task.model, options);
  for (const ts3d::NeededRepair& repair : repairs.chosen.needed) {
    AddNote("repaired", "repaired with " + repair.option + ": without it, " + repair.reason, result);
  }
  if (repairs.chosen.needed.empty()) AddNote("nothing-to-repair", "nothing to repair", result);
  if (const std::string errors = RepairErrors(repairs); !errors.empty())
    AddNote("repair-proof", errors, result);
  return repairs.chosen.settings;
}

/// Keeps what somebody can do something about.
void TakeFaults(const ts3d::RigFaults& faults, const ts3d::ConversionJob& job, ModelResult& result) {
  ts3d::RigReport report;
  faults.Tell(job.Model(), *job.skeleton, report);
  report.SortFindings();
  for (ts3d::Finding& finding : report.findings) {
    if (finding.severity == ts3d::Severity::Error) {
      result.reason = finding.text + " " + finding.fix;
    } else if (finding.severity == ts3d::Severity::Warning || !finding.fix.empty()) {
      result.faults.push_back(std::move(finding));
    }
  }
}

void NoteOutsidePictures(const std::set<std::string>& pictures, ModelResult& result) {
  if (pictures.empty()) return;
  std::string text = "pictures from outside the model's folder are used:";
  for (const std::string& picture : pictures) text += " " + picture;
  AddNote("outside-pictures", std::move(text), result);
}

void NoteShrunkPictures(const std::set<std::string>& pictures, int longestSide, ModelResult& result) {
  result.shrunkPictures.assign(pictures.begin(), pictures.end());
  if (pictures.empty()) return;
  std::string text = "pictures are shrunk to " + std::to_string(longestSide) + " pixels a side:";
  for (const std::string& picture : pictures) text += " " + picture;
  AddNote("texture-shrunk", std::move(text), result);
}

void AddPresetRenames(const ConvertOptions& options, const ts3d::SkeletonState& skeleton,
                      ts3d::ConversionJob& job, ModelResult& result) {
  const RenamePreset preset(RenamePresetTexts().at(options.renamePreset));
  std::vector<std::string> renames = options.boneRenames;
  for (std::string& rename : preset.RenamesOf(NamedBones(skeleton), options.boneRenames)) {
    renames.push_back(std::move(rename));
  }
  if (renames.size() == options.boneRenames.size()) {
    AddNote("no-preset-bone", "no bone has a name of --rename-preset " + options.renamePreset, result);
  }
  job.boneRenameList = JoinList(renames);
}

/// @param code  of the failed run
std::string WhyFailed(const ModelTask& task, const fs::path& shown, int code,
                      const ts3d::ConversionJob& job) {
  if (code == FBX_TO_TS3D_LOAD_FAILED) {
    std::string known = RecogniseModel(task.model);
    if (!known.empty()) return known;
  }
  if (!job.loadError.empty()) return "the model cannot be loaded: " + job.loadError;
  if (platform::IsDiskFull(job.files.writeError)) {
    const fs::path folder = shown.parent_path().parent_path();
    return "the disk is full: there is no room for work files in " + folder.string() +
           "; make room there, or let TMPDIR name another folder";
  }
  return job.failureReason.empty() ? DescribeExitCode(code) : std::string(job.failureReason);
}

/// The converter counts meshes that are left out as well.
void RefuseEmptyPackage(const fs::path& package, ModelResult& result) {
  for (const ts3d::MemberSize& member : ts3d::ListMembers(package.string())) {
    if (member.name.ends_with(".cmf")) return;
  }
  result.code = FBX_TO_TS3D_NO_MESH;
  result.reason = "all meshes are left out, by --exclude or as heads of actors: nothing is left to convert";
}

/// @param inputs  the others are known not to be newer than the package
void LeaveIfCurrent(const ModelTask& task, const std::set<fs::path>& inputs, ModelResult& result) {
  if (!IsCurrent(task, inputs)) return;
  for (const fs::path& input : inputs) result.inputs.push_back(input.string());
  throw PackageIsCurrent();
}

void TakeCurrentPackage(const ModelTask& task, const ConvertOptions& options, ModelResult& result) {
  result.isCurrent = true;
  result.package = task.Package().string();
  result.packageBytes = fs::file_size(task.Package());
  if (!options.report.empty()) result.members = ts3d::ListMembers(result.package);
}

/// What became of the model's pictures, and which files they are.
void TakePictures(const textures::TextureConverter& textures, const ConvertOptions& options,
                  ModelResult& result) {
  result.textureProblems = textures.Problems();
  NoteOutsidePictures(textures.OutsidePictures(), result);
  NoteShrunkPictures(textures.Shrunk(), options.longestTextureSide, result);
  for (const fs::path& input : textures.Inputs()) result.inputs.push_back(input.string());
}

/// Measures of the package in the work folder, and what a proof of it tells.
void TakePackage(const ModelTask& task, const fs::path& package, const ConvertOptions& options,
                 const ts3d::ConversionJob& job, ModelResult& result) {
  result.vertices = job.vertexTotal;
  result.triangles = job.polygonTotal;
  result.packageBytes = fs::file_size(package);
  if (options.proves || options.mostInfluences > 0) ProveConversion(task.model, package, options, result);
  if (!options.report.empty()) result.members = ts3d::ListMembers(package.string());
  result.package = task.Package().string();
}

/// The conversion of one model, and all that its callbacks take.
class ModelConversion {
 public:
  ModelConversion(const ModelTask& task, const fs::path& shown, const ConvertOptions& options,
                  const TakeStatus& onStatus)
      : task_(task),
        shown_(shown),
        options_(options),
        onStatus_(onStatus),
        textures_(task.model, options.longestTextureSide, options.textureFolders, options.tooLargeTextures) {
    host_.onStatus = [this](const ts3d::StatusLine& line) { TakeLine(line); };
    host_.onTexture = [this](const std::string& source, bool exists) {
      return times_.Within(
          "pictures", [&] { return textures_.Provide(job_.files, job_.loaded.Scene(), source, exists); });
    };
    textures_.onConvert = [this](const fs::path& picture) {
      job_.status.Send(ts3d::Notice::ConvertingPicture, picture.string());
    };
    host_.Attach(job_);
    SetUp(job_, options);
    job_.onMesh = [this](const ts3d::ConvertedMesh& mesh) { faults_.Take(mesh, *job_.skeleton); };
    job_.onProgress = [this](double fraction) {
      if (fraction == ts3d::kModelLoaded) times_.Begin("skeleton");
      if (fraction == ts3d::kMeshesWritten) times_.Begin("package");
    };
  }

  ModelResult Run(const std::optional<FinishSettings>& finish) {
    mayBeCurrent_ = options_.update && IsCurrent(task_, FixedInputs(task_, options_));
    times_.Begin("load");
    try {
      result_.code = Convert(task_, shown_, Request(), job_);
    } catch (const PackageIsCurrent&) {
      TakeCurrentPackage(task_, options_, result_);
      return std::move(result_);
    }
    if (result_.code == 0 && finish)
      result_.code = times_.Within("final settings", [&] { return Finish(shown_, *finish, job_, result_); });
    result_.steps = times_.End();
    TakeRun();
    const fs::path package = WithExtension(shown_, "czp");
    if (result_.code == 0) RefuseEmptyPackage(package, result_);
    if (result_.code == 0) TakePackage(task_, package, options_, job_, result_);
    return std::move(result_);
  }

 private:
  ts3d::ConversionRequest Request() {
    ts3d::ConversionRequest request;
    request.actorType = options_.actorType;
    request.chooseRepairs = [this](scene::KFbxScene& scene, const ts3d::ModelSource& model) {
      return TakeLoaded(scene, model);
    };
    request.onSkeleton = [this](const ts3d::SkeletonState& skeleton) {
      times_.Begin("meshes");
      if (!options_.renamePreset.empty()) AddPresetRenames(options_, skeleton, job_, result_);
    };
    request.onConverted = [this](const scene::KFbxNode& root) { TakeConverted(root); };
    return request;
  }

  void TakeLine(const ts3d::StatusLine& line) {
    if (!IsProgress(line.notice) && budget_.Takes(line)) {
      result_.status.emplace_back(line.text);
      said_.Take(line);
    }
    onStatus_(line);
  }

  ts3d::RepairSettings TakeLoaded(scene::KFbxScene& scene, const ts3d::ModelSource& model) {
    for (const scene::KString& file : scene.GetDataFiles()) dataFiles_.insert(platform::NativePath(file));
    if (!model.isFbxFile) {
      // The peak of FBX files has limits that this would break.
      platform::SpendMemory();
      job_.settings.largeFile = 8 << 20;
    }
    if (mayBeCurrent_) {
      std::set<fs::path> inputs = textures_.FindInputs(job_.files, scene);
      inputs.insert(dataFiles_.begin(), dataFiles_.end());
      LeaveIfCurrent(task_, inputs, result_);
    }
    return options_.repairsAsNeeded ? RepairAsNeeded(scene, model, task_, options_, result_)
                                    : options_.repairs;
  }

  void TakeConverted(const scene::KFbxNode& root) {
    result_.malformedNames = ts3d::NamesThatBreakDocument(job_.Model(), job_.skeleton->bones);
    TakeFaults(faults_, job_, result_);
    if (!NamesSomething(options_)) return;
    result_.unmatchedOptions =
        FindUnmatchedOptions(options_, ts3d::CollectOptionTargets(root, job_.skeleton->bones));
  }

  /// What the run has told, whatever it came to.
  void TakeRun() {
    if (result_.code != 0 && result_.reason.empty())
      result_.reason = WhyFailed(task_, shown_, result_.code, job_);
    result_.readerOutput = job_.loadError;
    result_.damage = job_.damagedArrays;
    result_.said = said_.Take();
    TakePictures(textures_, options_, result_);
    for (const fs::path& input : dataFiles_) result_.inputs.push_back(input.string());
  }

  const ModelTask& task_;
  const fs::path& shown_;
  const ConvertOptions& options_;
  const TakeStatus& onStatus_;
  ModelResult result_;
  JobHost host_;
  ts3d::LineBudget budget_;
  NoticeFindings said_;
  ts3d::ConversionJob job_;
  textures::TextureConverter textures_;
  StepTimes times_;
  ts3d::RigFaults faults_;
  bool mayBeCurrent_ = false;
  std::set<fs::path> dataFiles_;
};

}  // namespace

ModelResult ConvertInWorkFolder(const ModelTask& task, const fs::path& shown, const ConvertOptions& options,
                                const std::optional<FinishSettings>& finish, const TakeStatus& onStatus) {
  return ModelConversion(task, shown, options, onStatus).Run(finish);
}

std::vector<std::string> Publish(const ModelTask& task, const WorkFolder& work,
                                 const std::vector<std::string>& shrunkPictures) {
  fs::create_directories(task.folder);
  std::vector<std::string> beside{WithExtension(task.Package().filename(), "xfg").string()};
  // Beside the model, converted pictures serve the next conversion. Somebody's own file is not written over.
  for (const std::string& name : work.NewPictures()) {
    // The next conversion may have another limit.
    if (std::find(shrunkPictures.begin(), shrunkPictures.end(), name) != shrunkPictures.end()) continue;
    const fs::path target = task.folder / name;
    const bool isOurs = fs::is_regular_file(fs::symlink_status(target)) && textures::IsWrittenByUs(target);
    if (task.folder == task.model.parent_path() && (isOurs || !fs::exists(fs::symlink_status(target)))) {
      work.MoveTo(task.folder, name);
      beside.push_back(name);
    }
  }
  // The package first: a new document beside an old package is worse than the opposite.
  work.MoveTo(task.folder, task.Package().filename());
  work.MoveTo(task.folder, beside.front());
  if (fs::is_regular_file(task.Package())) return beside;
  throw fs::filesystem_error("the package is missing", task.Package(),
                             std::make_error_code(std::errc::no_such_file_or_directory));
}

}  // namespace cli
