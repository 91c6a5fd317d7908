// SPDX-License-Identifier: MIT
#include "finish/finish_history.h"

#include <cstdlib>
#include <set>

#include "driver/document_lists.h"
#include "package/read_member.h"

namespace cli {
namespace {

void CutAll(std::string& text, std::string_view begin, std::string_view end) {
  for (size_t at = 0; (at = text.find(begin, at)) != std::string::npos;) {
    const size_t last = text.find(end, at);
    if (last == std::string::npos) return;
    text.erase(at, last + end.size() - at);
  }
}

/// A finished document without what final settings add: materials have the names of their files again.
std::string WithoutFinalSettings(std::string document) {
  CutAll(document, "\n\n<morphs>\n<!--\n", "</morphs>\n");
  CutAll(document, "<switches>\n", "</switches>\n\n");
  CutAll(document, "<glance_adjust>", "</glance_adjust>\n");
  constexpr int kProductBody = 150;  // "body", which a mesh may be called as well
  const std::string finished = document;
  for (const ts3d::MaterialLine& line : ts3d::ReadMaterialLines(finished)) {
    if (std::atoi(std::string(line.thread).c_str()) < kProductBody) continue;
    const std::string mesh(line.file.substr(0, line.file.rfind('.')));
    const std::string begin = "<material_file name=\"", rest = "\" threadID=\"" + std::string(line.thread);
    const size_t at = document.find(begin + std::string(line.name) + rest);
    if (at != std::string::npos) document.replace(at + begin.size(), line.name.size(), mesh);
  }
  return document;
}

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
  const std::vector<ts3d::MaterialLine> before = ts3d::ReadMaterialLines(converted);
  const std::vector<ts3d::MaterialLine> after = ts3d::ReadMaterialLines(latest);
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

std::string WithLineFeeds(std::string text) {
  std::erase(text, '\r');
  return text;
}

FinishHistory ReadFinishHistory(const std::filesystem::path& package, const std::string& documentName) {
  FinishHistory history;
  std::error_code unknown;
  if (!std::filesystem::is_regular_file(package, unknown)) return history;
  const std::vector<std::string> documents = ts3d::ReadMembers(package.string(), documentName);
  if (documents.empty()) return history;
  history.latest = WithLineFeeds(documents.back());
  std::string converted = WithLineFeeds(documents.front());
  if (converted.find("<switches>") != std::string::npos) converted = WithoutFinalSettings(history.latest);
  RecoverNumbers(history.latest, history.settings);
  RecoverMeshes(converted, history.latest, history.settings);
  RecoverBoneRenames(converted, history.latest, history.settings);
  history.converted = std::move(converted);
  return history;
}

}  // namespace cli
