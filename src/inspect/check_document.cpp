// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>
#include <set>

#include "core/names.h"
#include "inspect/check_actor.h"

namespace actor {
namespace {

/// Threads below this belong to the product's own bodies, whose files it has itself.
constexpr int32_t kFirstThreadId = 151;

bool IsProductBody(const Document& document) { return document.objectId.starts_with("actor ("); }

class DocumentCheck {
 public:
  DocumentCheck(const PackageContents& contents, const Actor& actor, Findings& findings)
      : actor_(actor), document_(actor.document), findings_(findings) {
    for (const Member& member : contents.members) files_.insert(ts3d::LowerCase(member.name));
  }

  void Run() {
    CheckSkeletonLine();
    CheckMeshLines();
    CheckMaterialLines();
    ListThreads();
    for (const Mesh& mesh : actor_.meshes) CheckThread(mesh);
    for (const Material& material : actor_.materials) CheckPicture(material);
    CheckBoneRenames();
  }

 private:
  void Problem(const char* kind, std::string text, const char* advice = kConvertAgain) {
    AddProblem(findings_, kind, Subject::Member, document_.memberName, std::move(text), advice);
  }

  bool HasFile(const std::string& file) const { return files_.contains(ts3d::LowerCase(file)); }

  void ExpectFile(const std::string& file, const std::string& what) {
    if (!platform::IsMemberName(file)) {
      Problem("unsafe-name",
              "names the file \"" + file + "\" for its " + what + ": that is not a plain name");
    } else if (!HasFile(file)) {
      Problem("missing-file", "names \"" + file + "\" for its " + what + ", which is not in the package");
    }
  }

  void CheckSkeletonLine() {
    if (document_.skeletonFile.empty()) {
      Problem("missing-file", "names no skeleton");
    } else {
      ExpectFile(document_.skeletonFile, "skeleton");
    }
  }

  void CheckMeshLines() {
    std::map<std::string, size_t> listed;
    for (const DocumentMesh& mesh : document_.meshes) {
      if (++listed[ts3d::LowerCase(mesh.file)] == 1) ExpectFile(mesh.file, "mesh \"" + mesh.name + "\"");
    }
    for (const auto& [file, count] : listed) {
      if (count == 1) continue;
      Problem("same-mesh-name",
              "lists \"" + file + "\" " + std::to_string(count) +
                  " times: meshes of one name replace each other, and only the last is left",
              "give every mesh in the model a unique name, then convert again");
    }
  }

  void CheckMaterialLines() {
    size_t ofProduct = 0;
    for (const DocumentMaterial& material : document_.materials) {
      if (IsProductBody(document_) && material.threadId < kFirstThreadId && !HasFile(material.file)) {
        ++ofProduct;
      } else {
        ExpectFile(material.file, "material \"" + material.name + "\"");
      }
    }
    if (ofProduct == 0) return;
    AddNote(findings_, "product-materials", Subject::Member, document_.memberName,
            "names " + std::to_string(ofProduct) +
                " materials that are not in the package: the product has them for its own bodies");
  }

  /// One thread has one file. A file may have several: materials with one name in the model share it.
  void ListThreads() {
    std::map<int32_t, std::string> fileOf;
    for (const DocumentMaterial& material : document_.materials) {
      const std::string file = ts3d::LowerCase(material.file);
      threadsOf_[file].push_back(material.threadId);
      // The product's own bodies are the product's business.
      if (material.threadId < kFirstThreadId) continue;
      const std::string& other = fileOf.try_emplace(material.threadId, file).first->second;
      if (other == file) continue;
      Problem("thread-conflict", "gives the material thread " + std::to_string(material.threadId) +
                                     " to both \"" + other + "\" and \"" + material.file + "\"");
    }
  }

  /// The thread of a mesh must be one of its own material.
  void CheckThread(const Mesh& mesh) {
    const auto own = threadsOf_.find(ts3d::LowerCase(mesh.name + ".xrf"));
    if (own == threadsOf_.end() || std::ranges::count(own->second, mesh.threadId) > 0) return;
    AddProblem(findings_, "thread-mismatch", Subject::Member, mesh.name + ".cmf",
               "has the material thread " + std::to_string(mesh.threadId) +
                   ", but the document gives its material " + std::to_string(own->second.back()) +
                   "; it is shown with the material of another mesh",
               "remove empty meshes and materials that no polygon has from the model, then convert again");
  }

  void CheckPicture(const Material& material) {
    // "0" stands for: no material in the model.
    if (!material.hasMap || material.map.empty() || material.map == "0") return;
    const std::string file = material.name + ".xrf";
    if (!platform::IsMemberName(material.map)) {
      AddProblem(findings_, "unsafe-name", Subject::Member, file,
                 "names the picture \"" + material.map + "\": that is not a plain name", kConvertAgain);
    } else if (!HasFile(material.map)) {
      AddProblem(findings_, "missing-picture", Subject::Member, file,
                 "names the picture \"" + material.map + "\", which is not in the package",
                 "put the picture beside the model and convert again");
    }
  }

  void CheckBoneRenames() {
    if (actor_.skeleton.bones.empty()) return;
    std::set<std::string> bones;
    for (const Bone& bone : actor_.skeleton.bones) bones.insert(ts3d::LowerCase(bone.name));
    for (const auto& [oldName, newName] : document_.boneRenames) {
      if (bones.contains(ts3d::LowerCase(oldName))) continue;
      AddNote(findings_, "unknown-bone", Subject::Member, document_.memberName,
              "renames a bone \"" + oldName + "\", but there is none of that name");
    }
  }

  const Actor& actor_;
  const Document& document_;
  Findings& findings_;
  std::set<std::string> files_;                            ///< in lower case
  std::map<std::string, std::vector<int32_t>> threadsOf_;  ///< by the material's file in lower case
};

}  // namespace

void CheckDocument(const PackageContents& contents, const Actor& actor, Findings& findings) {
  if (actor.document.memberName.empty()) {
    AddProblem(findings, "no-document", Subject::File, "", "the package has no document (.xfg)",
               kConvertAgain);
    return;
  }
  DocumentCheck(contents, actor, findings).Run();
}

}  // namespace actor
