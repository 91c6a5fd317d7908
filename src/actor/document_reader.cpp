// SPDX-License-Identifier: MIT
#include "actor/document_reader.h"

#include <algorithm>
#include <pugixml.hpp>
#include <utility>

#include "actor/number_text.h"

namespace actor {
namespace {

/// Reads `text` into `number`, which stays when the text is blank or no number; then `wrong` tells of it.
template <class Number>
void ReadNumber(std::string_view text, const char* what, Number& number, std::string& wrong) {
  if (Trimmed(text).empty()) return;
  Number read{};
  if (TakeNumber(text, read) && Trimmed(text).empty()) {
    number = read;
  } else {
    wrong = std::string("its ") + what + " is not a number";
  }
}

void ReadSettings(const pugi::xml_node& config, Document& document, std::string& wrong) {
  document.objectId = config.child("object_id").text().get();
  ReadNumber(config.child("scale").text().get(), "scale", document.scale, wrong);
  const pugi::xml_node rotation = config.child("flags").child("rotation");
  ReadNumber(rotation.attribute("x").value(), "rotation about x", document.rotationX, wrong);
  ReadNumber(rotation.attribute("y").value(), "rotation about y", document.rotationY, wrong);
  document.skeletonFile = config.child("skeleton_file").text().get();
}

void ReadLists(const pugi::xml_node& config, Document& document, std::string& wrong) {
  for (const pugi::xml_node& rename : config.child("bone_renames").children("bone_rename")) {
    document.boneRenames.push_back({rename.attribute("old").value(), rename.attribute("new").value()});
  }
  for (const pugi::xml_node& mesh : config.child("meshes").children("mesh")) {
    document.meshes.push_back({mesh.attribute("name").value(), mesh.attribute("file").value(),
                               std::string_view(mesh.attribute("backfacing").value()) == "both"});
  }
  for (const pugi::xml_node& material : config.child("materials").children("material_file")) {
    document.materials.push_back({material.attribute("name").value(), material.text().get(), 0});
    ReadNumber(material.attribute("threadID").value(), "threadID of a material",
               document.materials.back().threadId, wrong);
  }
}

size_t LineOf(std::string_view bytes, ptrdiff_t offset) {
  const size_t end = std::min(static_cast<size_t>(std::max<ptrdiff_t>(offset, 0)), bytes.size());
  return static_cast<size_t>(std::count(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(end), '\n')) +
         1;
}

}  // namespace

bool ReadDocument(std::string_view bytes, Document& document, std::string& error) {
  std::string memberName = std::move(document.memberName);
  document = {};
  document.memberName = std::move(memberName);
  pugi::xml_document tree;
  const pugi::xml_parse_result result =
      tree.load_buffer(bytes.data(), bytes.size(), pugi::parse_default, pugi::encoding_utf8);
  const pugi::xml_node config = tree.child("cal_config");
  std::string wrong;
  ReadSettings(config, document, wrong);
  ReadLists(config, document, wrong);
  if (!result) {
    error =
        "line " + std::to_string(LineOf(bytes, result.offset)) + " is not XML (" + result.description() + ")";
  } else if (!config) {
    error = "it has no <cal_config>";
  } else if (!wrong.empty()) {
    error = wrong;
  }
  return result && config && wrong.empty();
}

}  // namespace actor
