// SPDX-License-Identifier: MIT
#include "actor/load_actor.h"

#include <algorithm>
#include <cmath>

#include "actor/document_reader.h"
#include "actor/material_reader.h"
#include "actor/mesh_reader.h"
#include "actor/skeleton_reader.h"
#include "core/names.h"

namespace actor {
namespace {

using ts3d::HasExtension;

constexpr float kLargestNumber = 1e9f;

std::string WithoutExtension(const std::string& name) { return name.substr(0, name.size() - 4); }

template <class Numbers>
size_t MakeFinite(Numbers& numbers) {
  size_t changed = 0;
  for (auto& number : numbers) {
    if (std::abs(number) <= kLargestNumber) continue;
    number = 0;
    ++changed;
  }
  return changed;
}

size_t MakeFinite(Bone& bone) {
  return MakeFinite(bone.translation) + MakeFinite(bone.rotation) + MakeFinite(bone.boneSpaceTranslation) +
         MakeFinite(bone.boneSpaceRotation);
}

size_t MakeFinite(Mesh& mesh) {
  size_t changed = 0;
  for (Vertex& vertex : mesh.vertices) {
    changed += MakeFinite(vertex.position) + MakeFinite(vertex.normal) + MakeFinite(vertex.uv);
  }
  for (Influence& influence : mesh.influences) {
    if (std::abs(influence.weight) <= kLargestNumber) continue;
    influence.weight = 0;
    ++changed;
  }
  return changed;
}

class ActorBuilder {
 public:
  ActorBuilder(PackageContents& contents, Actor& actor, Findings& findings)
      : contents_(contents), actor_(actor), findings_(findings) {}

  bool Build() {
    for (Member& member : contents_.members) {
      // Damaged and empty members are findings of their own.
      if (member.superseded || member.bytes.empty()) continue;
      if (HasExtension(member.name, ".csf")) AddSkeleton(member);
      if (HasExtension(member.name, ".cmf")) AddMesh(member);
      if (HasExtension(member.name, ".xrf")) AddMaterial(member);
      if (HasExtension(member.name, ".xfg")) AddDocument(member);
      if (HasExtension(member.name, ".tga"))
        actor_.pictures.push_back({member.name, std::move(member.bytes)});
    }
    FitMeshesToSkeleton();
    return !actor_.skeleton.bones.empty() || !actor_.meshes.empty() || !actor_.document.memberName.empty();
  }

 private:
  void Unreadable(const Member& member, const std::string& reason) {
    AddProblem(findings_, "unreadable-file", Subject::Member, member.name, "cannot be read: " + reason,
               kConvertAgain);
  }
  void NotFinite(const Member& member, size_t count) {
    if (count == 0) return;
    AddProblem(findings_, "not-finite", Subject::Member, member.name,
               std::to_string(count) +
                   " of its numbers are no numbers, infinite or absurdly large; they are taken as 0",
               "look for degenerate transforms or weights in the model");
  }

  void AddSkeleton(const Member& member) {
    std::string error;
    Skeleton skeleton;
    if (!ReadSkeleton(member.bytes, skeleton, error)) return Unreadable(member, error);
    if (!actor_.skeleton.bones.empty()) {
      return AddProblem(findings_, "second-skeleton", Subject::Member, member.name,
                        "is a further skeleton; it is left out", kConvertAgain);
    }
    size_t changed = 0;
    for (Bone& bone : skeleton.bones) changed += MakeFinite(bone);
    NotFinite(member, changed);
    actor_.skeleton = std::move(skeleton);
  }

  void AddMesh(const Member& member) {
    std::string error;
    Mesh mesh;
    mesh.name = WithoutExtension(member.name);
    if (!ReadMesh(member.bytes, mesh, error)) return Unreadable(member, error);
    NotFinite(member, MakeFinite(mesh));
    actor_.meshes.push_back(std::move(mesh));
  }

  void AddMaterial(const Member& member) {
    std::string error;
    Material material;
    material.name = WithoutExtension(member.name);
    if (!ReadMaterial(member.bytes, material, error)) return Unreadable(member, error);
    actor_.materials.push_back(std::move(material));
  }

  void AddDocument(const Member& member) {
    if (!actor_.document.memberName.empty()) {
      AddProblem(findings_, "second-document", Subject::Member, actor_.document.memberName,
                 "is followed by another document, \"" + member.name + "\", which counts", kConvertAgain);
    }
    std::string error;
    actor_.document.memberName = member.name;
    if (!ReadDocument(member.bytes, actor_.document, error)) Unreadable(member, error);
  }

  /// Meshes that name bones which do not exist are left out; without a skeleton all of them would be.
  void FitMeshesToSkeleton() {
    const auto boneCount = static_cast<int32_t>(actor_.skeleton.bones.size());
    if (boneCount == 0) {
      for (Mesh& mesh : actor_.meshes) {
        mesh.influences.clear();
        for (Vertex& vertex : mesh.vertices) vertex.firstInfluence = vertex.influenceCount = 0;
      }
      return;
    }
    std::erase_if(actor_.meshes, [&](const Mesh& mesh) {
      const auto bad = std::find_if(mesh.influences.begin(), mesh.influences.end(),
                                    [&](const Influence& influence) { return influence.bone >= boneCount; });
      if (bad == mesh.influences.end()) return false;
      AddProblem(findings_, "bad-index", Subject::Member, mesh.name + ".cmf",
                 "hangs on bone " + std::to_string(bad->bone) + ", but the skeleton has " +
                     std::to_string(boneCount) + " bones; the mesh is left out",
                 kConvertAgain);
      return true;
    });
  }

  PackageContents& contents_;
  Actor& actor_;
  Findings& findings_;
};

}  // namespace

bool BuildActor(PackageContents& contents, Actor& actor, Findings& findings, std::string& error) {
  actor = {};
  if (ActorBuilder(contents, actor, findings).Build()) return true;
  error = "it holds no skeleton, no mesh and no document, so it is not an actor";
  return false;
}

bool LoadActor(const std::string& path, const ReadLimits& limits, Actor& actor, Findings& findings,
               std::string& error) {
  PackageContents contents;
  return ReadPackage(path, limits, contents, error) && BuildActor(contents, actor, findings, error);
}

}  // namespace actor
