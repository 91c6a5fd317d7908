// SPDX-License-Identifier: MIT
#include "config/mesh_list.h"

#include <algorithm>
#include <vector>

#include "config/fixed_materials.h"
#include "core/mesh_filter.h"
#include "core/names.h"
#include "core/progress.h"
#include "core/trace.h"
#include "scene/model/mesh.h"
#include "scene/model/scene.h"

namespace ts3d {
namespace {

using scene::KFbxMesh;
using scene::KFbxNode;

bool IsDoubleSided(std::string_view name, const ConversionJob& job) {
  const std::vector<std::string_view> entries = SplitList(job.meshOptionList);
  return std::any_of(entries.begin(), entries.end(), [&](std::string_view entry) {
    return entry.starts_with('!') && EqualsIgnoreCase(entry.substr(1), name);
  });
}

/// Walks over listed meshes: parents first, children in order.
class MeshListWalk {
 public:
  MeshListWalk(bool baseNameLast, const std::function<void(const ListedName&)>& visit)
      : baseNameLast_(baseNameLast), visit_(visit) {}

  /// @return the number of meshes listed at or below `top`
  int32_t Walk(const KFbxNode& top) {
    int32_t count = 0;
    std::vector<const KFbxNode*> pending{&top};
    while (!pending.empty()) {
      const KFbxNode& node = *pending.back();
      pending.pop_back();
      const scene::KFbxNodeAttribute* attribute = node.GetNodeAttribute();
      if (attribute && attribute->GetAttributeType() == scene::KFbxNodeAttribute::EAttributeType::eMESH) {
        KFbxMesh* mesh = node.GetMesh();
        const std::string baseName = SanitizeMeshName(node.GetName());
        DebugTrace(ComposeMessage("WriteMeshList '", baseName, "'"));
        if (!mesh || mesh->GetControlPointsCount() == 0) continue;
        ++count;
        List(baseName, mesh->GetLayerCount() > 0 ? std::max(node.GetMaterialCount(), 1) : 1);
      }
      for (int i = node.GetChildCount(); i-- > 0;) pending.push_back(node.GetChild(i));
    }
    return count;
  }

 private:
  /// Lists the `count` output names of a mesh: its base name, then those of its further materials.
  void List(const std::string& baseName, int count) {
    if (!baseNameLast_) visit_({baseName, baseName});
    for (int i = 0; i < count - 1; ++i) visit_({baseName + "_" + LetterSuffix(i), baseName});
    if (baseNameLast_) visit_({baseName, baseName});
  }

  bool baseNameLast_;
  const std::function<void(const ListedName&)>& visit_;
};

/// What one walk does with each listed name.
class MeshList {
 public:
  MeshList(ConversionJob& job, MeshListMode mode, PackagedNameSet& packagedNames, AfterAdding afterAdding,
           std::string& lines)
      : job_(job), mode_(mode), packagedNames_(packagedNames), afterAdding_(afterAdding), lines_(lines) {}

  void List(const ListedName& listed) {
    if (IsLeftOut(listed, job_)) return;
    const std::string& name = listed.name;
    switch (mode_) {
      case MeshListMode::MeshLines:
        DebugTrace(ComposeMessage("Writing <mesh name=\"", name, "\""));
        lines_ += ComposeMessage("\t<mesh name=\"", name, "\" file=\"", name, ".cmf\"");
        lines_ += IsDoubleSided(name, job_) ? " backfacing=\"both\"/>\n" : "/>\n";
        break;
      case MeshListMode::MaterialLines:
        lines_ += MaterialLine(name, job_.nextMaterialThreadId++, name + ".xrf");
        break;
      case MeshListMode::AddMeshFiles:
        AddFileToPackage(job_, packagedNames_, name + ".cmf", afterAdding_);
        break;
      case MeshListMode::AddMaterialFiles:
        AddFileToPackage(job_, packagedNames_, name + ".xrf", afterAdding_);
        break;
    }
  }

  ConversionJob& job_;
  MeshListMode mode_;
  PackagedNameSet& packagedNames_;
  AfterAdding afterAdding_;
  std::string& lines_;
};

}  // namespace

int32_t ForEachListedName(const KFbxNode& root, bool baseNameLast,
                          const std::function<void(const ListedName&)>& visit) {
  MeshListWalk walk(baseNameLast, visit);
  int32_t count = 0;
  for (int i = 0; i < root.GetChildCount(); ++i) count += walk.Walk(*root.GetChild(i));
  return count;
}

bool IsLeftOut(const ListedName& listed, const ConversionJob& job) {
  return skipThisMesh(listed.name, job) || IsExcluded(listed.mesh, job);
}

int32_t WriteMeshListForScene(ConversionJob& job, MeshListMode mode, PackagedNameSet& packagedNames,
                              AfterAdding afterAdding, std::string& lines) {
  const KFbxNode* root = job.scene->GetRootNode();
  if (!root) return kNoMeshListed;
  MeshList list(job, mode, packagedNames, afterAdding, lines);
  // Files go in the other way round: the further ones, then the base name.
  const bool addsFiles = mode == MeshListMode::AddMeshFiles || mode == MeshListMode::AddMaterialFiles;
  size_t total = 0, done = 0;
  if (addsFiles) ForEachListedName(*root, addsFiles, [&](const ListedName&) { ++total; });
  const bool isMeshes = mode == MeshListMode::AddMeshFiles;
  const int32_t count = ForEachListedName(*root, addsFiles, [&](const ListedName& listed) {
    list.List(listed);
    if (!addsFiles) return;
    ReportProgress(job, isMeshes ? kMeshesWritten : kMeshesPacked,
                   isMeshes ? kMeshesPacked : kMaterialsPacked, ++done, total);
  });
  return count > 0 ? 0 : kNoMeshListed;
}

}  // namespace ts3d
