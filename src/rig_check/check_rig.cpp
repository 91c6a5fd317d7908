// SPDX-License-Identifier: MIT
#include "rig_check/check_rig.h"

#include <new>

#include "config/actor_config.h"
#include "config/mesh_list.h"
#include "core/names.h"
#include "driver/detect_actor_type.h"
#include "mesh/claims/weigh_claims.h"
#include "mesh/scene_walk.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"
#include "scene/model/mesh.h"
#include "scene/model/node.h"
#include "scene/read_model.h"
#include "skeleton/csf_writer.h"

namespace ts3d {
namespace {

using scene::KFbxNode;
using EAttributeType = scene::KFbxNodeAttribute::EAttributeType;

/// Path of the document of a model with an extension of any length.
std::string DocumentPathFor(const std::string& path) {
  const size_t dot = path.rfind('.');
  const bool hasExtension = dot != std::string::npos && path.find_first_of("\\/", dot) == std::string::npos;
  return (hasExtension ? path.substr(0, dot) : path) + ".xfg";
}

void Start(const std::string& path, const CheckOptions& options, RigCheck& check) {
  check.notices.Watch(check.status);
  check.path = path;
  check.actorType = options.actorType.value_or(DetectActorType(path));
  check.settings.exclusionList = options.excludedNames;
  check.settings.findsBaseColours = true;
  check.report.objectId = ObjectId(check.actorType, DocumentPathFor(path));
}

bool Load(const CheckOptions& options, RigCheck& check) {
  const scene::KFbxModelResult read =
      ReadModel(check.loaded.Manager().GetReaderRegistry(),
                {.path = check.path, .bytes = options.source, .unit = options.modelUnit},
                check.loaded.Scene(), WeighClaims);
  check.report.format = read.format;
  if (const auto [major, minor, revision] = read.version; major > 0) {
    check.report.version = std::to_string(major) + "." + std::to_string(minor);
    if (check.report.format == "FBX") check.report.version += "." + std::to_string(revision);
  }
  if (read.isProtected) {
    check.report.Add(findings::kPassword);
  } else if (!read.isRead) {
    check.report.Add(findings::kNotLoaded, {}, {read.error});
  }
  return read.isRead;
}

const char* GeometryName(EAttributeType type) {
  switch (type) {
    case EAttributeType::eNURB:
      return "NURBS surface";
    case EAttributeType::ePATCH:
      return "patch";
    case EAttributeType::eLINE:
      return "line";
    default:
      return nullptr;
  }
}

/// Tells of geometry that is no mesh, and of meshes that the package leaves out with an empty one above.
void CheckNodes(RigCheck& check) {
  struct Pending {
    const KFbxNode* node;
    const KFbxNode* emptyMesh;
  };
  std::vector<Pending> pending{{&check.loaded.Root(), nullptr}};
  while (!pending.empty()) {
    Pending next = pending.back();
    pending.pop_back();
    const scene::KFbxNodeAttribute* attribute = next.node->GetNodeAttribute();
    if (next.node->IsMesh()) {
      const scene::KFbxMesh* mesh = next.node->GetMesh();
      const bool empty = !mesh || mesh->GetControlPointsCount() == 0;
      if (empty && !next.emptyMesh) next.emptyMesh = next.node;
      if (!empty && next.emptyMesh) {
        check.report.Add(findings::kHidingMesh, next.node->GetName(), {next.emptyMesh->GetName()});
      }
    } else if (const char* geometry = attribute ? GeometryName(attribute->GetAttributeType()) : nullptr) {
      const bool isLine = attribute->GetAttributeType() == EAttributeType::eLINE;
      check.report.Add(isLine ? findings::kLine : findings::kNotAMesh, next.node->GetName(), {geometry});
    }
    for (int i = next.node->GetChildCount(); i-- > 0;) {
      pending.push_back({next.node->GetChild(i), next.emptyMesh});
    }
  }
}

void Summarise(RigCheck& check) {
  const BoneTree& bones = check.skeleton.bones;
  for (const BoneNode* bone : bones.PreOrder()) {
    const bool isRoot = bone->parent == &bones.Root();
    const auto id = static_cast<size_t>(bone->id);
    const auto& nodes = check.skeleton.boneNodes;
    const KFbxNode* node = id < nodes.size() ? nodes[id] : nullptr;
    check.report.bones.push_back({bone->name, isRoot ? std::string() : bone->parent->name,
                                  node ? node->GetName() : bone->name, bone->weighted,
                                  node ? node->GetHumanBone() : std::string()});
  }
  check.report.members = ExpectedMembers(check);
}

void CheckScene(RigCheck& check) {
  ExtractSkeleton(check.Model(), check.skeleton);
  CheckBones(check);
  CheckPose(check);
  CheckActorBones(check);
  KFbxNode& root = check.loaded.Root();
  for (int i = 0; i < root.GetChildCount(); ++i) {
    ForEachMeshNode(*root.GetChild(i), [&](KFbxNode& node) { CheckMeshNode(node, check); });
  }
  CheckNodes(check);
  check.faults.Tell(check.Model(), check.skeleton, check.report);
  if (check.report.Worst() < Severity::Error && check.report.meshes.empty()) {
    check.report.Add(findings::kAllLeftOut);
  }
  for (const std::string& array : check.loaded.Scene().GetDamagedArrays()) {
    check.report.Add(findings::kDamagedArray, {}, {array});
  }
  CheckNames(check);
  Summarise(check);
}

}  // namespace

RigReport CheckRig(const std::string& path, const CheckOptions& options) {
  RigCheck check;
  Start(path, options, check);
  if (!options.source && !platform::FileExists(path)) {
    check.report.Add(findings::kNoFile);
    return std::move(check.report);
  }
  if (options.isQuiet) {
    check.loaded.CreateQuietly();
  } else {
    check.loaded.Create(options.plugins != Plugins::LeaveOut);
  }
  try {
    check.report.loaded = Load(options, check);
    if (check.report.loaded) CheckScene(check);
  } catch (const scene::KFbxMeshExcess& error) {
    check.report.Add(findings::kNotLoaded, {}, {error.what()});
  } catch (const std::bad_alloc&) {
    check.report.Add(findings::kNotLoaded, {}, {"there is not enough memory"});
  }
  check.report.SortFindings();
  return std::move(check.report);
}

}  // namespace ts3d
