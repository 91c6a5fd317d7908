// SPDX-License-Identifier: MIT
#include "output/diff_output.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>
#include <vector>

#include "core/json_output.h"
#include "terminal/terminal.h"

namespace cli {
namespace {

using actor::Part;
using Counts = std::vector<std::pair<const char*, size_t>>;

Counts CountParts(const Inspection& package) {
  size_t vertices = 0, faces = 0, influences = 0;
  for (const actor::Mesh& mesh : package.actor.meshes) {
    vertices += mesh.vertices.size();
    faces += mesh.faces.size();
    influences += mesh.influences.size();
  }
  const auto& members = package.contents.members;
  const auto files = std::count_if(members.begin(), members.end(),
                                   [](const actor::Member& member) { return !member.superseded; });
  return {{"files", static_cast<size_t>(files)},
          {"bones", package.actor.skeleton.bones.size()},
          {"meshes", package.actor.meshes.size()},
          {"vertices", vertices},
          {"faces", faces},
          {"influences", influences},
          {"materials", package.actor.materials.size()},
          {"pictures", package.actor.pictures.size()}};
}

std::string CountTable(const PackageDiff& diff) {
  const Counts before = CountParts(diff.before), after = CountParts(diff.after);
  std::string table = "                   old        new\n";
  for (size_t i = 0; i < before.size(); ++i) {
    char line[80];
    std::snprintf(line, sizeof line, "  %-10s %9zu  %9zu%s\n", before[i].first, before[i].second,
                  after[i].second, before[i].second == after[i].second ? "" : "  *");
    table += line;
  }
  return table;
}

constexpr std::array<std::pair<Part, const char*>, 6> kHeadings = {{{Part::Bone, "Bones"},
                                                                    {Part::Mesh, "Meshes and weights"},
                                                                    {Part::Material, "Materials"},
                                                                    {Part::Picture, "Pictures"},
                                                                    {Part::Document, "Document"},
                                                                    {Part::File, "Other files"}}};

/// "+" for what is new, "-" for what is gone, "~" for what has changed.
const char* Mark(const actor::Difference& difference) {
  return difference.code.ends_with("-added") ? "+" : difference.code.ends_with("-removed") ? "-" : "~";
}

std::string Section(const actor::Differences& differences, Part part, const char* heading) {
  constexpr size_t kMostLines = 40;
  std::string lines;
  size_t count = 0;
  for (const actor::Difference& difference : differences) {
    if (difference.part != part || ++count > kMostLines) continue;
    lines += std::string("  ") + Mark(difference) + " " + Printable(difference.name) + ": " +
             Printable(difference.text) + "\n";
  }
  if (count > kMostLines) lines += "    and " + std::to_string(count - kMostLines) + " more\n";
  return count == 0 ? "" : std::string("\n") + heading + "\n" + lines;
}

ts3d::Subject SubjectOf(Part part) {
  switch (part) {
    case Part::Bone:
      return ts3d::Subject::Bone;
    case Part::Mesh:
      return ts3d::Subject::Mesh;
    case Part::Material:
      return ts3d::Subject::Material;
    case Part::Picture:
      return ts3d::Subject::Texture;
    case Part::Document:
    case Part::File:
      break;
  }
  return ts3d::Subject::Member;
}

std::vector<ts3d::Finding> MessagesAbout(const PackageDiff& diff) {
  std::vector<ts3d::Finding> messages;
  for (const Inspection* package : {&diff.before, &diff.after}) {
    if (package->error.empty()) continue;
    messages.push_back({"unreadable-package",
                        ts3d::Severity::Error,
                        ts3d::Subject::File,
                        {package->path},
                        package->error,
                        {}});
  }
  for (const actor::Difference& difference : diff.differences) {
    messages.push_back({difference.code,
                        ts3d::Severity::Note,
                        SubjectOf(difference.part),
                        {difference.name},
                        difference.text,
                        {}});
  }
  return messages;
}

void WriteSide(ts3d::JsonWriter& json, const char* side, const Inspection& package) {
  json.OpenObject(side);
  json.Member("path", package.path);
  for (const auto& [name, count] : CountParts(package)) json.Member(name, count);
  json.CloseObject();
}

}  // namespace

std::string DiffAsText(const PackageDiff& diff) {
  std::string text = "old: " + Printable(diff.before.path) + "\nnew: " + Printable(diff.after.path) + "\n" +
                     CountTable(diff);
  for (const auto& [part, heading] : kHeadings) text += Section(diff.differences, part, heading);
  const size_t count = diff.differences.size();
  return text + "\n" +
         (count == 0 ? "No difference"
                     : std::to_string(count) + (count == 1 ? " difference" : " differences")) +
         "\n";
}

std::string DiffAsJson(const PackageDiff& diff) {
  constexpr int kJsonVersion = 1;
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "diff", kJsonVersion);
  json.Member("same", diff.IsSame());
  WriteSide(json, "old", diff.before);
  WriteSide(json, "new", diff.after);
  json.Key("messages");
  ts3d::WriteFindings(json, MessagesAbout(diff));
  json.CloseObject();
  return ts3d::JsonText(json.Text());
}

}  // namespace cli
