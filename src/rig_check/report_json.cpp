// SPDX-License-Identifier: MIT
#include "rig_check/report_json.h"

#include "core/visible_text.h"

namespace ts3d {

nlohmann::ordered_json JsonHead(std::string_view schema, int version) {
  return {{"schema", {{"name", schema}, {"version", version}}}, {"tool", FBX_TO_TS3D_VERSION}};
}

nlohmann::ordered_json FindingAsJson(const Finding& finding) {
  return {{"code", finding.code},
          {"severity", NameOf(finding.severity)},
          {"message", finding.text},
          {"fix", finding.fix},
          {"where", {{"kind", NameOf(finding.subject)}, {"names", finding.names}}}};
}

nlohmann::ordered_json FindingsAsJson(const std::vector<Finding>& findings) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Finding& finding : findings) list.push_back(FindingAsJson(finding));
  return list;
}

std::string JsonText(const nlohmann::ordered_json& json) {
  return VisibleLines(json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) + "\n";
}

nlohmann::ordered_json ReportAsJson(const RigReport& report) {
  nlohmann::ordered_json json{{"result", report.Worst() == Severity::Note ? "sound" : NameOf(report.Worst())},
                              {"fbx_version", report.version},
                              {"object_id", report.objectId}};
  nlohmann::ordered_json& bones = json["bones"] = nlohmann::ordered_json::array();
  for (const OutputBone& bone : report.bones) {
    bones.push_back({{"name", bone.name}, {"parent", bone.parent}, {"weighted", bone.weighted}});
  }
  nlohmann::ordered_json& meshes = json["meshes"] = nlohmann::ordered_json::array();
  for (const OutputMesh& mesh : report.meshes) {
    meshes.push_back({{"name", mesh.name},
                      {"node", mesh.node},
                      {"vertices", mesh.vertices},
                      {"triangles", mesh.triangles},
                      {"material", mesh.material},
                      {"texture", mesh.texture}});
  }
  nlohmann::ordered_json& textures = json["textures"] = nlohmann::ordered_json::array();
  for (const UsedTexture& texture : report.textures) {
    textures.push_back({{"name", texture.tgaName},
                        {"file", texture.fileName},
                        {"relative_file", texture.relativeFileName},
                        {"embedded", texture.isEmbedded},
                        {"materials", texture.materials}});
  }
  json["members"] = report.members;
  json["messages"] = FindingsAsJson(report.findings);
  return json;
}

}  // namespace ts3d
