// SPDX-License-Identifier: MIT
#include "rig_check/report_json.h"

namespace ts3d {
nlohmann::ordered_json FindingAsJson(const Finding& finding) {
  return {{"code", finding.code},
          {"severity", NameOf(finding.severity)},
          {"about", NameOf(finding.subject)},
          {"names", finding.names},
          {"text", finding.text},
          {"fix", finding.fix}};
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
  nlohmann::ordered_json& findings = json["findings"] = nlohmann::ordered_json::array();
  for (const Finding& finding : report.findings) findings.push_back(FindingAsJson(finding));
  return json;
}

}  // namespace ts3d
