// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/held_files.h"
#include "core/repair_settings.h"
#include "core/status_channel.h"
#include "fbx_to_ts3d.h"

namespace scene {
class KFbxMesh;
class KFbxNode;
class KFbxScene;
class KFbxSdkManager;
}  // namespace scene

namespace ts3d {

struct ConvertedMesh;
class DeflateAhead;
class MemberDeflater;
struct SkeletonState;

/// Which human actor a model is; chosen from its path. The numbers are part of the host's interface.
enum class ActorType : int32_t { None = 0, Male = 1, Female = 2, Boy = 3, Girl = 4, Teenager = 5, Baby = 6 };

/// What becomes of the plug-ins beside the executable.
enum class Plugins { Load, LoadAndName, LeaveOut };

/// First thread identifier of the per-mesh materials, just above the fixed "body" thread.
inline constexpr int32_t kFirstThreadId = 151;

/// Everything one conversion knows about itself. Plain data, passed by reference to whatever needs it; the
/// one process-wide instance lives behind the exported functions, because the final settings of a model build
/// on the values that its conversion left.
struct ConversionJob {
  // The host's settings.
  int32_t meshOptionMode = 0;
  StatusChannel status;  ///< its context is that of the texture callback as well
  FbxToTs3dTextureCallback textureCallback = nullptr;
  std::string boneRenameList;  ///< "old=new" entries separated by "|"
  std::string meshOptionList;  ///< mesh names separated by "|"; "!name" marks a double-sided mesh
  float configScale = 1.0f;
  int32_t nextMeshThreadId = kFirstThreadId;      ///< next mesh file's thread identifier
  int32_t nextMaterialThreadId = kFirstThreadId;  ///< next material line's thread identifier
  int32_t rotationY = 0;                          ///< degrees
  int32_t rotationX = 0;                          ///< degrees

  /// Names (of meshes and materials) that are left out, in any letter case. The exports leave it empty.
  std::vector<std::string> exclusionList;

  /// Whether work files that fit into a writer's buffer stay in `heldFiles`
  /// instead of going to the disk: making and deleting a file takes longer
  /// than packing it. Nobody sees them there, so the exports leave it off.
  bool holdsSmallFiles = false;
  /// The exports leave all of them off.
  RepairSettings repairs;

  /// With LoadAndName each is told in a status line. The exports leave it at Load.
  Plugins plugins = Plugins::Load;

  /// Whether packed work files are deleted where they are. The exports delete them by their bare names, that
  /// is in the current directory.
  bool ownsModelFolder = false;
  /// How members are deflated: by libdeflate at this level, their bytes depending on content and level alone.
  /// None, where the classic exports leave it: by zlib in pieces of 16 KB.
  std::optional<int> packLevel;
  /// DOS date (high half) and time of all members in place of those of their files, which the exports take.
  std::optional<uint32_t> memberDate;
  /// Told how much of the run is done, from 0 to 1. May throw to end it. Empty for the exports.
  std::function<void(double fraction)> onProgress;

  /// Whether `textureCallback` is called for textures that are
  /// named ".tga" as well. The exports leave it off.
  bool offerTgaTextures = false;

  /// Called with each mesh when its files are written, while its data is there. The exports leave it empty.
  std::function<void(const ConvertedMesh&)> onMesh;

  /// Whether a material without a texture of its "DiffuseColor" shows that of its base colour, which other
  /// shaders call otherwise, and whether pictures of unknown shaders lie on white. The exports leave it off.
  bool findsBaseColours = false;

  // One run.
  std::shared_ptr<SkeletonState> skeleton;  ///< null before the first conversion of the process
  int32_t vertexTotal = 0;                  ///< control points of the converted meshes
  int32_t polygonTotal = 0;                 ///< their triangles
  std::vector<std::string> damagedArrays;   ///< see scene::KFbxScene::GetDamagedArrays
  std::string modelDirectory;               ///< the model's folder with its trailing separator
  std::string inputPath;    ///< the model; never written, packed or deleted, whatever names ask for
  std::string packagePath;  ///< the open package; never packed into itself
  bool isFbxFile = true;
  ActorType actorType = ActorType::None;
  scene::KFbxSdkManager* sdkManager = nullptr;
  scene::KFbxScene* scene = nullptr;
  scene::KFbxNode* sceneRoot = nullptr;
  const scene::KFbxNode* textureErrorNode =
      nullptr;  ///< the one mesh node that reports lost texture coordinates
  bool materialReferenceReported = false;
  HeldFiles heldFiles;                             ///< work files that are not in the folder
  void* packageHandle = nullptr;                   ///< the open archive, or null
  std::shared_ptr<const MemberDeflater> deflater;  ///< of the open package, once there is a use for it
  std::shared_ptr<DeflateAhead> deflateAhead;      ///< the same
  bool packageIsDamaged = false;   ///< part of the open package was lost in writing: none may stay
  int writeError = 0;              ///< `errno` of the first write that was lost, or 0
  int32_t failureCode = 0;         ///< result of the run should an exception end the step that is running
  std::string loadError;           ///< why a model could not be loaded, unless it was printed
  std::string_view failureReason;  ///< why a run ended that an exception ended
};

}  // namespace ts3d
