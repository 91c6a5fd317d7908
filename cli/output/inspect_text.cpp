// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>
#include <vector>

#include "actor/picture_header.h"
#include "inspect/actor_measure.h"
#include "output/inspection.h"
#include "terminal/terminal.h"
#include "terminal/text_width.h"

namespace cli {
namespace {

using Row = std::vector<std::string>;

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", value);
  return text;
}

/// Rows with their columns one below the other, the first to the left, the others to the right; the first row
/// is the heading.
std::string Table(const std::vector<Row>& rows) {
  if (rows.size() == 1) return {};
  std::vector<size_t> widths(rows[0].size());
  for (const Row& row : rows) {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], DisplayWidth(row[i]));
  }
  std::string text;
  for (const Row& row : rows) {
    std::string line = "  ";
    for (size_t i = 0; i < row.size(); ++i) {
      const std::string gap(widths[i] - DisplayWidth(row[i]), ' ');
      line += i == 0 ? row[i] + gap : "  " + gap + row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

std::string Counted(size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string Files(const actor::PackageContents& contents) {
  std::vector<Row> rows{{"name", "bytes", "packed", "date"}};
  for (const actor::Member& member : contents.members) {
    const char* state = !member.sound ? "damaged" : member.superseded ? "superseded" : "";
    rows.push_back({Printable(member.name), std::to_string(member.size), std::to_string(member.packedSize),
                    member.date.empty() ? "-" : member.date, state});
    rows[0].resize(5);
  }
  return Counted(contents.members.size(), "file") + "\n" + Table(rows);
}

std::string DocumentText(const actor::Document& document) {
  if (document.memberName.empty()) return {};
  const size_t bothSides = static_cast<size_t>(std::count_if(
      document.meshes.begin(), document.meshes.end(), [](const auto& mesh) { return mesh.bothSides; }));
  return "\nDocument " + Printable(document.memberName) + "\n  object \"" + Printable(document.objectId) +
         "\", scale " + Number(document.scale) + ", turned by " + Number(document.rotationX) + " (x) and " +
         Number(document.rotationY) + " (y) degrees\n  " + Counted(document.meshes.size(), "mesh line") +
         ", " + std::to_string(bothSides) + " seen from both sides; " +
         Counted(document.materials.size(), "material line") + "; " +
         Counted(document.boneRenames.size(), "bone rename") + "\n";
}

std::string Tree(const actor::Skeleton& skeleton) {
  constexpr size_t kDeepest = 40;  // deeper bones are shown no further to the right
  std::string text = "\nSkeleton: " + Counted(skeleton.bones.size(), "bone") + "\n";
  std::vector<size_t> depths;
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    const actor::Bone& bone = skeleton.bones[i];
    depths.push_back(bone.parent < 0 ? 0 : depths[static_cast<size_t>(bone.parent)] + 1);
    char number[24];
    std::snprintf(number, sizeof number, "%6zu  ", i);
    text += number + std::string(2 * std::min(depths[i], kDeepest), ' ') + Printable(bone.name) + "\n";
  }
  return text;
}

std::string Span(const actor::Box& box, size_t axis) {
  return box.IsEmpty() ? "-" : Number(box.low[axis]) + " to " + Number(box.high[axis]);
}

std::string MeshesText(const std::vector<actor::Mesh>& meshes) {
  std::vector<Row> rows{{"name", "vertices", "faces", "influences", "thread", "x", "y", "z"}};
  for (const actor::Mesh& mesh : meshes) {
    const actor::Box box = BoundsOf(mesh);
    rows.push_back({Printable(mesh.name), std::to_string(mesh.vertices.size()),
                    std::to_string(mesh.faces.size()), std::to_string(mesh.influences.size()),
                    std::to_string(mesh.threadId), Span(box, 0), Span(box, 1), Span(box, 2)});
  }
  return "\n" + Counted(meshes.size(), "mesh file") + "\n" + Table(rows);
}

std::string ColourText(const std::array<int32_t, 4>& colour) {
  std::string text;
  for (size_t i = 0; i < 3; ++i) text += (i == 0 ? "" : " ") + std::to_string(colour[i]);
  return text;
}

std::string MaterialsText(const std::vector<actor::Material>& materials) {
  std::vector<Row> rows{{"name", "ambient", "diffuse", "specular", "transparency", "shininess", "picture"}};
  for (const actor::Material& material : materials) {
    rows.push_back({Printable(material.name), ColourText(material.ambient), ColourText(material.diffuse),
                    ColourText(material.specular), std::to_string(material.diffuse[3]),
                    Number(material.shininess),
                    material.hasMap && !material.map.empty() ? Printable(material.map) : "-"});
  }
  return "\n" + Counted(materials.size(), "material file") + "\n" + Table(rows);
}

std::string PicturesText(const std::vector<actor::Picture>& pictures) {
  std::vector<Row> rows{{"name", "pixels", "bits"}};
  for (const actor::Picture& picture : pictures) {
    actor::PictureHeader header;
    const bool known = !ReadPictureHeader(picture.bytes, header);
    rows.push_back({Printable(picture.name),
                    known ? std::to_string(header.width) + " x " + std::to_string(header.height) : "-",
                    known ? std::to_string(header.bits) : "-"});
  }
  return "\n" + Counted(pictures.size(), "picture") + "\n" + Table(rows);
}

std::string FindingLines(const actor::Findings& findings) {
  const size_t problems = CountProblems(findings);
  std::string text = "\n" + (problems == 0 ? "Nothing is wrong" : Counted(problems, "warning"));
  if (findings.size() > problems) text += ", " + Counted(findings.size() - problems, "note");
  text += "\n";
  for (const actor::Finding& finding : findings) {
    text += "  " + std::string(NameOf(finding.severity)) + ": " + Printable(actor::InOneLine(finding)) + "\n";
  }
  return text;
}

}  // namespace

std::string InspectionAsText(const Inspection& inspection) {
  const actor::Actor& actor = inspection.actor;
  return Printable(inspection.path) + ": " + Files(inspection.contents) + DocumentText(actor.document) +
         Tree(actor.skeleton) + MeshesText(actor.meshes) + MaterialsText(actor.materials) +
         PicturesText(actor.pictures) + FindingLines(inspection.findings);
}

}  // namespace cli
