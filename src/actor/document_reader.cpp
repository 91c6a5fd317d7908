// SPDX-License-Identifier: MIT
#include "actor/document_reader.h"

#include <algorithm>
#include <pugixml.hpp>
#include <utility>

namespace actor {
namespace {

void ReadSettings(const pugi::xml_node& config, Document& document) {
  document.objectId = config.child("object_id").text().get();
  document.scale = config.child("scale").text().as_double(1.0);
  const pugi::xml_node rotation = config.child("flags").child("rotation");
  document.rotationX = rotation.attribute("x").as_double();
  document.rotationY = rotation.attribute("y").as_double();
  document.skeletonFile = config.child("skeleton_file").text().get();
}

void ReadLists(const pugi::xml_node& config, Document& document) {
  for (const pugi::xml_node& rename : config.child("bone_renames").children("bone_rename")) {
    document.boneRenames.push_back({rename.attribute("old").value(), rename.attribute("new").value()});
  }
  for (const pugi::xml_node& mesh : config.child("meshes").children("mesh")) {
    document.meshes.push_back({mesh.attribute("name").value(), mesh.attribute("file").value(),
                               std::string_view(mesh.attribute("backfacing").value()) == "both"});
  }
  for (const pugi::xml_node& material : config.child("materials").children("material_file")) {
    document.materials.push_back(
        {material.attribute("name").value(), material.text().get(), material.attribute("threadID").as_int()});
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
  ReadSettings(config, document);
  ReadLists(config, document);
  if (!result) {
    error =
        "line " + std::to_string(LineOf(bytes, result.offset)) + " is no XML (" + result.description() + ")";
  } else if (!config) {
    error = "it has no <cal_config>";
  }
  return result && config;
}

}  // namespace actor
