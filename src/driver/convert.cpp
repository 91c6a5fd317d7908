// SPDX-License-Identifier: MIT
#include "driver/convert.h"

#include <new>
#include <optional>

#include "config/actor_config.h"
#include "config/mesh_list.h"
#include "core/names.h"
#include "core/progress.h"
#include "core/work_files.h"
#include "driver/detect_actor_type.h"
#include "driver/scene_loader.h"
#include "mesh/claims/weigh_claims.h"
#include "mesh/convert_mesh.h"
#include "mesh/scene_walk.h"
#include "package/actor_package.h"
#include "platform/files.h"
#include "scene/fbx_reader.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"
#include "scene/read_model.h"
#include "skeleton/csf_writer.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

constexpr const char* kSkeletonName = "skeleton.csf";

/// Deletes what an earlier run left at `path`; false when the model itself is there.
bool ClearWay(const ConversionJob& job, const std::string& path) {
  if (platform::IsSameFile(path, job.files.inputPath)) return false;
  if (platform::FileExists(path)) platform::RemoveFile(path);
  return true;
}

/// Tells the host how much of the run is done, from 0 to 1.
void ReportProgress(const ConversionJob& job, double fraction) {
  if (job.onProgress) job.onProgress(fraction);
}

/// The same for `done` of the `total` parts of a step that lies between two fractions of the run.
void ReportProgress(const ConversionJob& job, double from, double to, size_t done, size_t total) {
  ReportProgress(job, from + (to - from) * static_cast<double>(done) / static_cast<double>(total));
}

std::string Text(const scene::KFbxFileVersion& version) {
  return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
         std::to_string(version.revision);
}

void ReportLoaded(const ConversionJob& job, const LoadedVersions& versions) {
  job.status.Send(Notice::ModelLoaded);
  if (!job.isFbxFile) return;
  job.status.Send(Notice::SdkVersion, Text(versions.sdk));
  job.status.Send(Notice::ModelVersion, Text(versions.file));
}

/// Adds a file for each name of the list that is not left out.
void AddListedFiles(const ConversionJob& job, ActorPackage& package, const MeshList& meshes,
                    const char* ending, double from, double to) {
  const size_t total = meshes.CountNames();
  size_t done = 0;
  meshes.ForEach(MeshList::OwnName::Last, [&](const ListedName& listed) {
    if (!IsLeftOut(listed, job.Filter()))
      package.AddFileToPackage(listed.name + ending, AfterAdding::DeleteFile);
    ReportProgress(job, from, to, ++done, total);
  });
}

/// Adds everything but the textures, which are in the package already, and completes it.
ConversionResult FillPackage(ConversionJob& job, ActorPackage& package, const std::string& packagePath,
                             const MeshList& meshes) {
  const std::string documentName = FileNamePart(ReplaceExtension(packagePath, "xfg"));
  ConversionResult result = ConversionResult::Success;
  if (package.AddFileToPackage(kSkeletonName, AfterAdding::DeleteFile) != 0 ||
      package.AddDocumentToPackage(job.files.modelDirectory + documentName, documentName) != 0) {
    result = ConversionResult::PackageFailed;
  } else {
    AddListedFiles(job, package, meshes, ".cmf", kMeshesWritten, kMeshesPacked);
    if (meshes.IsEmpty()) result = ConversionResult::NoMesh;
  }
  AddListedFiles(job, package, meshes, ".xrf", kMeshesPacked, kMaterialsPacked);
  ReportProgress(job, kMaterialsPacked);
  if (!package.Close()) {
    // A package without its directory, or with half a member, only looks like one.
    platform::RemoveFile(packagePath);
    job.status.Send(Notice::PackageIncomplete);
    result = ConversionResult::PackageFailed;
  }
  if (result == ConversionResult::Success) job.status.Send(Notice::PackageCreated);
  return result;
}

/// Tells which arrays were damaged; known when all meshes have been read.
void ReportDamage(ConversionJob& job) {
  job.damagedArrays = job.loaded.Scene().GetDamagedArrays();
  for (const std::string& array : job.damagedArrays) job.status.Send(Notice::ArrayDamaged, array);
}

void WriteMeshes(ConversionJob& job, ActorPackage& package) {
  const ModelSource model = job.Model();
  MaterialOutput out{job.files, package, job.settings, job.status, job.textureCallback, job.Filter()};
  MeshRun run{model,
              *job.skeleton,
              out,
              {job.meshOptionMode, job.meshOptionList},
              job.nextMeshThreadId,
              job.vertexTotal,
              job.polygonTotal,
              job.onMesh};
  scene::KFbxNode& root = job.loaded.Root();
  size_t total = 0, done = 0;
  ForEachMeshNode(root, [&](const scene::KFbxNode&) { ++total; });
  for (int i = 0; i < root.GetChildCount(); ++i) {
    ForEachMeshNode(*root.GetChild(i), [&](scene::KFbxNode& node) {
      ConvertMeshNode(node, run);
      ReportProgress(job, kModelLoaded, kMeshesWritten, ++done, total);
    });
  }
}

void WriteDocument(ConversionJob& job, const MeshList& meshes, const std::string& packagePath) {
  const DocumentContent content{job.actorType,      job.rotationX,           job.rotationY,
                                job.boneRenameList, job.meshOptionList,      job.skeleton->bones,
                                job.Filter(),       job.nextMaterialThreadId};
  WriteActorConfig(content, meshes, packagePath, job.files);
}

ConversionResult WritePackage(ConversionJob& job, const std::string& fbxPath) {
  job.status.Send(Notice::CreatingPackage);
  const std::string packagePath = ReplaceExtension(fbxPath, "czp");
  job.failureCode = ConversionResult::PackageFailed;
  const bool hasPlace = HasRoomForExtension(fbxPath);
  std::optional<ActorPackage> package(std::in_place, job.files, job.settings, job.status);
  const bool isOpen =
      hasPlace && ClearWay(job, packagePath) && package->Open(packagePath, PackageMode::Create);
  try {
    WriteMeshes(job, *package);
    const MeshList meshes(job.loaded.Root());
    if (hasPlace) WriteDocument(job, meshes, packagePath);
    ReportDamage(job);
    return isOpen ? FillPackage(job, *package, packagePath, meshes) : ConversionResult::PackageFailed;
  } catch (...) {
    package.reset();
    if (isOpen) platform::RemoveFile(packagePath);
    throw;
  }
}

ConversionResult ConvertLoadedScene(ConversionJob& job, const ConversionRequest& request) {
  ClearWay(job, job.files.modelDirectory + kSkeletonName);
  job.failureCode = ConversionResult::SkeletonFailed;
  job.status.Send(Notice::GeneratingSkeleton);
  if (!WriteSkeleton(job.Model(), *job.skeleton, job.files)) return ConversionResult::SkeletonFailed;
  if (request.onSkeleton) request.onSkeleton(*job.skeleton);
  return WritePackage(job, request.fbxPath);
}

}  // namespace

void ReleaseScene(ConversionJob& job) {
  job.loaded.Release();
  if (job.skeleton) job.skeleton->ForgetScene();
}

void ResetRun(ConversionJob& job) {
  job.skeleton = std::make_shared<SkeletonState>();
  job.vertexTotal = 0;
  job.polygonTotal = 0;
  job.loadError.clear();
  job.failureReason = {};
  job.damagedArrays.clear();
  job.files = {};
  job.files.holdsSmallFiles = job.settings.holdsSmallFiles;
}

namespace {

/// Creates the scene and fills it from the model.
bool Load(ConversionJob& job, const ConversionRequest& request, LoadedVersions& versions) {
  if (!request.isQuiet) {
    job.loaded.Create(job.settings.plugins != Plugins::LeaveOut);
  } else {
    job.loaded.CreateQuietly();
  }
  if (job.settings.plugins == Plugins::LoadAndName) {
    for (const std::string& path : job.loaded.Manager().GetPlugins()) {
      job.status.Send(Notice::PluginLoaded, path);
    }
  }
  job.isFbxFile = EndsWithIgnoreCase(request.fbxPath, ".fbx");
  job.status.Send(job.isFbxFile ? Notice::LoadingFbxModel : Notice::LoadingModel);
  bool isLoaded = false;
  // A work folder shows the model alone.
  const ImportChoices choices{DirectoryPart(request.actorPath.empty() ? request.fbxPath : request.actorPath),
                              job.settings.modelUnit};
  if (request.isQuiet) {
    const auto tell = [&job](double share) { ReportProgress(job, kModelLoaded * share); };
    const scene::KFbxModelResult read =
        ReadModel(job.loaded.Manager().GetReaderRegistry(),
                  {request.fbxPath, request.source, choices.folder, choices.unit, true}, job.loaded.Scene(),
                  WeighClaims, tell);
    job.loadError = read.error;
    versions = {scene::kNativeVersion, read.version};
    isLoaded = read.isRead;
  } else {
    isLoaded = LoadScene(job.loaded.Manager(), job.loaded.Scene(), request.fbxPath, choices, versions,
                         request.keepsLoadError ? &job.loadError : nullptr);
  }
  job.failureReason = job.loadError;
  return isLoaded;
}

ConversionResult RunSteps(ConversionJob& job, const ConversionRequest& request) {
  // A run that could not load its scene leaves the scene library's objects alive until here.
  job.loaded.Release();
  ResetRun(job);
  const std::string& fbxPath = request.fbxPath;
  if (!request.source && !platform::FileExists(fbxPath)) return ConversionResult::NoFile;
  job.failureCode = ConversionResult::LoadFailed;
  job.status.Send(Notice::InitializingEngine);
  job.files.modelDirectory = DirectoryPart(fbxPath);
  job.files.inputPath = fbxPath;
  job.actorType =
      request.actorType.value_or(DetectActorType(request.actorPath.empty() ? fbxPath : request.actorPath));
  LoadedVersions versions;
  ReportProgress(job, 0);
  if (!Load(job, request, versions)) return ConversionResult::LoadFailed;
  ReportLoaded(job, versions);
  ReportProgress(job, kModelLoaded);
  if (request.chooseRepairs) {
    job.settings.repairs = request.chooseRepairs(job.loaded.Scene(), job.Model());
  }
  const ConversionResult result = ConvertLoadedScene(job, request);
  const bool isComplete = result == ConversionResult::Success || result == ConversionResult::NoMesh;
  if (request.onConverted && isComplete) request.onConverted(job.loaded.Root());
  ReleaseScene(job);
  WriteHeldFiles(job.files);
  return result;
}

/// What a run that an exception has ended comes to: the one
/// place that decides it, for the library and the tool.
ConversionResult ResultOfFailure(ConversionJob& job) {
  try {
    throw;
  } catch (const scene::KFbxMeshExcess& excess) {
    // Whichever step reads the mesh, it is the model that cannot be loaded.
    job.failureCode = ConversionResult::LoadFailed;
    job.failureReason = excess.what();
    job.status.Send(Notice::ModelRefused, job.failureReason);
  } catch (const std::bad_alloc&) {
    job.failureReason = "there is not enough memory";
  }
  return job.failureCode;
}

}  // namespace

ConversionResult RunConversion(ConversionJob& job, const ConversionRequest& request) {
  ConversionResult result = ConversionResult::NoFile;
  job.failureCode = result;
  try {
    result = RunSteps(job, request);
  } catch (...) {
    result = ResultOfFailure(job);
  }
  if (result != ConversionResult::Success) job.vertexTotal = job.polygonTotal = 0;
  return result;
}

}  // namespace ts3d
