// SPDX-License-Identifier: MIT
#include <algorithm>
#include <vector>

#include "config/bone_name_map.h"
#include "config/bone_renames.h"
#include "config/escape_xml.h"
#include "core/names.h"
#include "core/number_format.h"
#include "core/trace.h"
#include "driver/document_lists.h"
#include "driver/final_settings.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

constexpr char kPresentFirst = '~';
constexpr char kAbsentFirst = '`';

constexpr std::string_view kMorphTemplate =
    "\n\n"
    "<morphs>\n"
    "<!--\n"
    "\t <morphable base=\"[friendly_mesh_name]\">\n"
    "\t \t <target name=\"[morph name]\" file=\"[morph_mesh.cmf]\"/>\n"
    "\t </morphable>\n"
    "-->\n"
    "</morphs>\n";

constexpr std::string_view kSwitchTemplate =
    "<!--\n"
    "     <switch name=\"[descriptive_switch_name]\">\n"
    "          <case name=\"[descriptive_case_name_1]\">\n"
    "               <mesh_active name=\"[friendly_mesh_name_1]\"/>\n"
    "               <mesh_active name=\"[friendly_mesh_name_2]\"/>\n"
    "               <mesh_active name=\"[friendly_mesh_name_3_etc]\"/>\n"
    "          </case>\n"
    "          <case name=\"[descriptive_case_name_2]\">\n"
    "               <mesh_active name=\"[friendly_mesh_name_1]\"/>\n"
    "          </case>\n"
    "     </switch>\n"
    "-->\n\n";

struct FriendlyMesh {
  std::string mesh;
  std::string friendlyName;  ///< escaped, without its prefix
  char prefix = 0;           ///< kPresentFirst or kAbsentFirst: the mesh gets a switch
};

std::vector<FriendlyMesh> ReadMeshList(std::string_view meshList) {
  std::vector<FriendlyMesh> meshes;
  for (const std::string_view entry : SplitList(meshList)) {
    std::string_view mesh, friendly;
    if (!SplitEntry(entry, mesh, friendly)) continue;
    FriendlyMesh read{std::string(mesh), EscapeXml(friendly), 0};
    if (!read.friendlyName.empty() &&
        (read.friendlyName[0] == kPresentFirst || read.friendlyName[0] == kAbsentFirst)) {
      read.prefix = read.friendlyName[0];
      read.friendlyName.erase(0, 1);
    }
    meshes.push_back(std::move(read));
  }
  return meshes;
}

std::string Switches(const std::vector<FriendlyMesh>& meshes) {
  std::string text = "<switches>\n";
  for (const FriendlyMesh& mesh : meshes) {
    if (mesh.prefix == 0) continue;
    const std::string present = "          <case name=\"present\">\n               <mesh_active name=\"" +
                                mesh.mesh + "\"/>\n          </case>\n";
    const std::string absent = "          <case name=\"absent\">\n          </case>\n";
    text += "     <switch name=\"" + mesh.friendlyName + "\">\n";
    text += mesh.prefix == kPresentFirst ? present + absent : absent + present;
    text += "     </switch>\n";
  }
  return text.append(kSwitchTemplate).append("</switches>\n\n");
}

/// Copies the document to its new form section by section. `rest_` is what has not been copied yet; a missing
/// marker is remembered and everything after it does nothing.
class DocumentRewriter {
 public:
  DocumentRewriter(std::string_view text, const ConversionJob& job, std::string_view meshList,
                   Unnamed unnamed)
      : job_(job),
        meshes_(ReadMeshList(meshList)),
        hasMeshList_(!meshList.empty()),
        keepsUnnamed_(unnamed == Unnamed::Keep),
        text_(text),
        rest_(text) {}

  std::optional<std::string> Rewrite() {
    rest_.erase(Find("</cal_config>"));
    ReplaceScaleAndFlags();
    if (!job_.boneRenameList.empty()) ReplaceBoneRenames();
    if (hasMeshList_) ReplaceMeshes();
    if (missing_) return std::nullopt;
    out_ += rest_;
    if (!hadMorphs_) out_ += kMorphTemplate;
    out_ += Switches(meshes_);
    if (job_.actorType != ActorType::None) out_ += "<glance_adjust>-17</glance_adjust>\n";
    return out_ + "</cal_config>";
  }

 private:
  size_t Find(std::string_view marker, size_t from = 0) {
    const size_t at = missing_ ? std::string::npos : rest_.find(marker, from);
    missing_ |= at == std::string::npos;
    return missing_ ? rest_.size() : at;
  }

  void ReplaceScaleAndFlags() {
    out_ += rest_.substr(0, Find("<scale>"));
    out_ +=
        "<scale>" + SixDecimals(static_cast<double>(job_.configScale)) + "</scale>\n<flags>\n\t<invert_v/>\n";
    out_ += "\t<rotation x=\"" + std::to_string(job_.rotationX) + "\" y=\"" + std::to_string(job_.rotationY) +
            "\"/>\n";
    rest_.erase(0, Find("</flags>"));
  }

  /// Keeps the root bone's line, which comes first.
  void ReplaceBoneRenames() {
    const size_t end = Find("/>", Find("\t<bone_rename old"));
    out_ += rest_.substr(0, end) + "/>\n";
    rest_.erase(0, Find("</bone_renames>"));
    for (const std::string_view entry : SplitList(job_.boneRenameList)) {
      std::string_view oldName, newName;
      if (SplitEntry(entry, oldName, newName)) out_ += BoneRenameLine(oldName, EscapeXml(newName));
    }
    const std::string named = keepsUnnamed_ ? KeepBoneRenames() : job_.boneRenameList;
    // Without a conversion in this process there is no skeleton to speak for.
    if (job_.skeleton) out_ += MappedBoneRenameLines(job_.skeleton->bones, named);
  }

  /// Writes the renames that the list does not name. Bones without weight, "!" and their own name, get the
  /// product's name as MappedBoneRenameLines would give it.
  /// @return the list with the bones named here behind it
  std::string KeepBoneRenames() {
    std::string named = job_.boneRenameList;
    const std::vector<BoneRename> renames = ReadBoneRenames(text_);
    for (size_t i = 1; i < renames.size(); ++i) {
      const auto& [oldName, newName] = renames[i];
      if (Names(job_.boneRenameList, oldName)) continue;
      const bool isUnweighted = newName.starts_with('!') && newName.substr(1) == oldName;
      const std::string_view product = isUnweighted ? FindProductBoneName(oldName) : std::string_view();
      out_ += BoneRenameLine(oldName, product.empty() ? newName : product);
      named.append("|").append(oldName).append("=");
    }
    return named;
  }

  static bool Names(std::string_view list, std::string_view wanted) {
    const std::vector<std::string_view> entries = SplitList(list);
    return std::any_of(entries.begin(), entries.end(), [&](std::string_view entry) {
      std::string_view name, ignored;
      return SplitEntry(entry, name, ignored) && name == wanted;
    });
  }

  std::string MeshLineOf(const FriendlyMesh& mesh, const std::vector<MeshLine>& lines) const {
    const bool bothSides = std::any_of(lines.begin(), lines.end(), [&](const MeshLine& line) {
      return keepsUnnamed_ && line.bothSides && line.name == mesh.mesh;
    });
    return "     <mesh name=\"" + mesh.mesh + "\" file=\"" + mesh.mesh + ".cmf\"" +
           (bothSides ? " backfacing=\"both\"/>\n" : "/>\n");
  }

  void KeepMeshes(const std::vector<MeshLine>& lines) {
    for (const MeshLine& line : lines) {
      const bool isNamed = std::any_of(meshes_.begin(), meshes_.end(),
                                       [&](const FriendlyMesh& mesh) { return mesh.mesh == line.name; });
      if (!isNamed) out_.append(line.line).append("\n");
    }
  }

  void ReplaceMeshes() {
    constexpr std::string_view kMeshes = "<meshes>";
    const std::vector<MeshLine> lines = ReadMeshLines(text_);
    const size_t morphs = rest_.find("<morphs>");
    hadMorphs_ = morphs != std::string::npos && morphs > 0;
    out_ += rest_.substr(0, Find(kMeshes)).append(kMeshes).append("\n");
    rest_.erase(0, Find("<materials>"));
    for (const FriendlyMesh& mesh : meshes_) {
      out_ += MeshLineOf(mesh, lines);
      RenameMaterial(mesh);
    }
    if (keepsUnnamed_) KeepMeshes(lines);
    out_ += "</meshes>\n\n";
  }

  /// The material keeps its thread and file; an entry whose mesh has no material line changes nothing.
  void RenameMaterial(const FriendlyMesh& mesh) {
    constexpr std::string_view kBefore = "<material_file name=\"";
    const size_t at = rest_.find(ComposeMessage(kBefore, mesh.mesh, "\" threadID"));
    if (at != std::string::npos) rest_.replace(at + kBefore.size(), mesh.mesh.size(), mesh.friendlyName);
  }

  const ConversionJob& job_;
  std::vector<FriendlyMesh> meshes_;
  bool hasMeshList_;
  bool keepsUnnamed_;
  std::string_view text_;  ///< all of the document
  std::string rest_;
  std::string out_;
  bool hadMorphs_ = false;
  bool missing_ = false;
};

}  // namespace

std::optional<std::string> RewriteDocument(std::string_view text, const ConversionJob& job,
                                           std::string_view meshList, Unnamed unnamed) {
  return DocumentRewriter(text, job, meshList, unnamed).Rewrite();
}

}  // namespace ts3d
