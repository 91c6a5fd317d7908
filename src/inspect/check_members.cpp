// SPDX-License-Identifier: MIT
#include <set>

#include "actor/picture_header.h"
#include "core/names.h"
#include "inspect/check_actor.h"

namespace actor {
namespace {

std::string Extension(const std::string& name) {
  return name.size() < 4 ? std::string() : ts3d::LowerCase(std::string_view(name).substr(name.size() - 4));
}

const char* AdviceForEmpty(const std::string& name) {
  const std::string extension = Extension(name);
  if (extension == ".tga") return "put the picture beside the model and convert again";
  if (extension == ".cmf") return "remove materials that no polygon has from the model, then convert again";
  return "convert the model again and look at its messages";
}

void CheckMember(const Member& member, Findings& findings) {
  if (!platform::IsMemberName(member.name)) {
    AddProblem(findings, "unsafe-name", Subject::Member, member.name,
               "has a name that leads into or out of folders; it is never used as a path",
               "do not unpack this package by hand; convert the model again");
  }
  if (!member.sound) {
    AddProblem(findings, "damaged-member", Subject::Member, member.name,
               "cannot be unpacked: it is damaged or encrypted",
               "convert the model again, or take another copy of the package");
  } else if (member.superseded) {
    AddNote(findings, "superseded-member", Subject::Member, member.name,
            "is there again further on; this older copy only takes up space",
            "run \"fbx2czp repack\" on the package to drop it");
  } else if (member.size == 0) {
    AddProblem(findings, "empty-member", Subject::Member, member.name, "is empty: its file was missing",
               AdviceForEmpty(member.name));
  }
}

/// Names that are one to a runtime that does not look at letter case.
void CheckSimilarNames(const PackageContents& contents, Findings& findings) {
  std::set<std::string> seen;
  for (const Member& member : contents.members) {
    if (member.superseded || seen.insert(ts3d::LowerCase(member.name)).second) continue;
    AddProblem(findings, "similar-names", Subject::Member, member.name,
               "differs from another file in upper and lower case only", "rename one of them in the model");
  }
}

/// Names of files that something names, in lower case.
struct UsedNames {
  explicit UsedNames(const Actor& actor) {
    document.insert(ts3d::LowerCase(actor.document.skeletonFile));
    for (const DocumentMesh& mesh : actor.document.meshes) document.insert(ts3d::LowerCase(mesh.file));
    for (const DocumentMaterial& material : actor.document.materials) {
      document.insert(ts3d::LowerCase(material.file));
    }
    for (const Material& material : actor.materials) pictures.insert(ts3d::LowerCase(material.map));
  }
  std::set<std::string> document, pictures;
};

void CheckUse(const Member& member, const UsedNames& used, bool isFolder, Findings& findings) {
  const std::string extension = Extension(member.name), name = ts3d::LowerCase(member.name);
  if (extension == ".csf" || extension == ".cmf" || extension == ".xrf") {
    if (used.document.contains(name)) return;
    AddProblem(findings, "unnamed-file", Subject::Member, member.name,
               "is not named by the document, so nothing shows it",
               "name it in \"fbx2czp finish --mesh\", or convert the model again");
  } else if (extension == ".tga") {
    if (used.pictures.contains(name)) return;
    AddNote(findings, "unused-picture", Subject::Member, member.name, "is a picture that no material uses");
  } else if (extension != ".xfg" && !isFolder && !used.pictures.contains(name)) {
    AddNote(findings, "unknown-file", Subject::Member, member.name, "is not part of an actor");
  }
}

void CheckPictures(const Actor& actor, Findings& findings) {
  for (const Picture& picture : actor.pictures) {
    PictureHeader header;
    const char* wrong = ReadPictureHeader(picture.bytes, header);
    if (wrong) {
      AddProblem(findings, "bad-picture", Subject::Member, picture.name, wrong,
                 "save it as .tga again and convert the model again");
    }
  }
}

}  // namespace

void CheckMembers(const PackageContents& contents, const Actor& actor, Findings& findings) {
  for (const Member& member : contents.members) CheckMember(member, findings);
  CheckSimilarNames(contents, findings);
  CheckPictures(actor, findings);
  if (actor.document.memberName.empty()) return;
  const UsedNames used(actor);
  for (const Member& member : contents.members) {
    if (!member.superseded) CheckUse(member, used, contents.isFolder, findings);
  }
}

}  // namespace actor
