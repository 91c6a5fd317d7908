// SPDX-License-Identifier: MIT
#include <algorithm>

#include "inspect/compare_packages.h"

namespace actor {
namespace {

/// What a list of the document says, one line for each entry.
std::vector<std::string> Lines(const Document& document) {
  std::vector<std::string> lines;
  for (const auto& [from, to] : document.boneRenames)
    lines.push_back("bone \"" + from + "\" is called \"" + to + "\"");
  for (const DocumentMesh& mesh : document.meshes) {
    lines.push_back("mesh \"" + mesh.name + "\" of " + mesh.file +
                    (mesh.bothSides ? ", seen from both sides" : ""));
  }
  for (const DocumentMaterial& material : document.materials) {
    lines.push_back("material \"" + material.name + "\" of " + material.file + " with thread " +
                    std::to_string(material.threadId));
  }
  return lines;
}

}  // namespace

void CompareDocuments(const ReadPackageParts& before, const ReadPackageParts& after,
                      Differences& differences) {
  const Document &a = before.actor.document, &b = after.actor.document;
  const std::string& name = b.memberName.empty() ? a.memberName : b.memberName;
  const size_t known = differences.size();
  const auto tell = [&](const char* code, std::string text) {
    differences.push_back({Part::Document, code, name, std::move(text)});
  };
  const auto compare = [&](const char* code, const char* what, const std::string& old,
                           const std::string& now) {
    if (old != now) tell(code, Changed(what, old, now));
  };
  compare("document-object", "object", "\"" + a.objectId + "\"", "\"" + b.objectId + "\"");
  compare("document-scale", "scale", ShortText(a.scale), ShortText(b.scale));
  compare("document-rotation", "rotation about x", ShortText(a.rotationX), ShortText(b.rotationX));
  compare("document-rotation", "rotation about y", ShortText(a.rotationY), ShortText(b.rotationY));
  const std::vector<std::string> old = Lines(a), now = Lines(b);
  for (const std::string& line : old) {
    if (std::find(now.begin(), now.end(), line) == now.end())
      tell("document-line-removed", "no longer: " + line);
  }
  for (const std::string& line : now) {
    if (std::find(old.begin(), old.end(), line) == old.end()) tell("document-line-added", "now: " + line);
  }
  const Member *text = before.contents.Find(a.memberName), *newText = after.contents.Find(b.memberName);
  if (differences.size() == known && text && newText && text->bytes != newText->bytes)
    tell("document-text", "says something else, as switches or lines of another order");
}

}  // namespace actor
