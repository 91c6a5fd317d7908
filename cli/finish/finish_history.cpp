// SPDX-License-Identifier: MIT
#include "finish/finish_history.h"

#include <cstdlib>
#include <set>

#include "driver/converted_document.h"
#include "driver/document_lists.h"
#include "package/read_member.h"

namespace cli {
namespace {

/// The opposite of EscapeXml.
std::string Unescape(std::string_view text) {
  constexpr std::pair<std::string_view, char> kEntities[] = {
      {"&quot;", '"'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}};
  std::string plain;
  while (!text.empty()) {
    size_t taken = 1;
    char letter = text[0];
    for (const auto& [entity, meaning] : kEntities) {
      if (text.starts_with(entity)) taken = entity.size(), letter = meaning;
    }
    plain += letter;
    text.remove_prefix(taken);
  }
  return plain;
}

/// Adds "name=value" where a list of settings can hold it.
void AddEntry(std::string_view name, const std::string& value, std::vector<std::string>& entries) {
  const std::string entry = std::string(name) + "=" + value;
  if (name.find('=') == std::string_view::npos && entry.find('|') == std::string::npos)
    entries.push_back(entry);
}

void RecoverMeshes(std::string_view converted, std::string_view latest, FinishSettings& settings) {
  const std::vector<ts3d::ListedMaterial> before = ts3d::ReadMaterialLines(converted);
  const std::vector<ts3d::ListedMaterial> after = ts3d::ReadMaterialLines(latest);
  for (size_t i = 0; i < before.size() && before.size() == after.size(); ++i) {
    if (before[i].name != after[i].name) AddEntry(before[i].name, Unescape(after[i].name), settings.meshes);
  }
  std::string_view switches = ts3d::TakeBetween(latest, "<switches>\n", "<!--");
  while (!switches.empty()) {
    std::string_view body = ts3d::TakeBetween(switches, "<switch name=\"", "</switch>");
    const size_t present = body.find("<case name=\"present\">"), absent = body.find("<case name=\"absent\">");
    const std::string friendly = Unescape(body.substr(0, body.find("\">\n")));
    const std::string_view mesh = ts3d::TakeBetween(body, "<mesh_active name=\"", "\"/>\n");
    if (!mesh.empty()) AddEntry(mesh, (present < absent ? '~' : '`') + friendly, settings.meshes);
  }
}

void RecoverBoneRenames(std::string_view converted, std::string_view latest, FinishSettings& settings) {
  const std::vector<ts3d::BoneRename> before = ts3d::ReadBoneRenames(converted);
  const std::vector<ts3d::BoneRename> after = ts3d::ReadBoneRenames(latest);
  std::set<std::pair<std::string_view, std::string_view>> known;
  for (const ts3d::BoneRename& rename : before) known.emplace(rename.oldName, rename.newName);
  for (const ts3d::BoneRename& rename : after) {
    if (!known.contains({rename.oldName, rename.newName}))
      AddEntry(rename.oldName, Unescape(rename.newName), settings.boneRenames);
  }
}

void RecoverNumbers(std::string_view latest, FinishSettings& settings) {
  const double scale = std::atof(std::string(ts3d::TakeBetween(latest, "<scale>", "</scale>")).c_str());
  if (scale > 0) settings.scalePercent = 100 * scale;
  settings.rotationX = std::atoi(std::string(ts3d::TakeBetween(latest, "<rotation x=\"", "\"")).c_str());
  settings.rotationY = std::atoi(std::string(ts3d::TakeBetween(latest, " y=\"", "\"")).c_str());
}

}  // namespace

FinishHistory ReadFinishHistory(const platform::fs::path& package, const std::string& documentName) {
  FinishHistory history;
  std::error_code unknown;
  if (!platform::fs::is_regular_file(package, unknown)) return history;
  const std::vector<std::string> documents = ts3d::ReadMembers(package.string(), documentName);
  if (documents.empty()) return history;
  history.latest = ts3d::WithLineFeeds(documents.back());
  std::string converted = ts3d::ConvertedDocument(documents);
  RecoverNumbers(history.latest, history.settings);
  RecoverMeshes(converted, history.latest, history.settings);
  RecoverBoneRenames(converted, history.latest, history.settings);
  history.converted = std::move(converted);
  return history;
}

}  // namespace cli
