// SPDX-License-Identifier: MIT
#include "rig_check/report_json.h"

#include "core/visible_text.h"

namespace ts3d {

void WriteJsonHead(JsonWriter& json, std::string_view schema, int version) {
  json.OpenObject("schema");
  json.Member("name", schema);
  json.Member("version", version);
  json.CloseObject();
  json.Member("tool", std::string_view(FBX_TO_TS3D_VERSION));
}

void WriteFinding(JsonWriter& json, const Finding& finding) {
  json.OpenObject();
  json.Member("code", finding.code);
  json.Member("severity", NameOf(finding.severity));
  json.Member("message", finding.text);
  json.Member("fix", finding.fix);
  json.OpenObject("where");
  json.Member("kind", NameOf(finding.subject));
  json.Member("names", finding.names);
  json.CloseObject();
  json.CloseObject();
}

void WriteFindings(JsonWriter& json, const std::vector<Finding>& findings) {
  json.OpenArray();
  for (const Finding& finding : findings) WriteFinding(json, finding);
  json.CloseArray();
}

void WriteReport(JsonWriter& json, const RigReport& report) {
  json.Member("result", report.Worst() == Severity::Note ? "sound" : NameOf(report.Worst()));
  json.Member("format", report.format);
  json.Member("fbx_version", report.format == "FBX" ? report.version : std::string());
  json.Member("object_id", report.objectId);
  json.Objects("bones", report.bones, [&](const OutputBone& bone) {
    json.Member("name", bone.name);
    json.Member("parent", bone.parent);
    json.Member("weighted", bone.weighted);
  });
  json.Objects("meshes", report.meshes, [&](const OutputMesh& mesh) {
    json.Member("name", mesh.name);
    json.Member("node", mesh.node);
    json.Member("vertices", mesh.vertices);
    json.Member("triangles", mesh.triangles);
    json.Member("material", mesh.material);
    json.Member("texture", mesh.texture);
  });
  json.Objects("textures", report.textures, [&](const UsedTexture& texture) {
    json.Member("name", texture.tgaName);
    json.Member("file", texture.fileName);
    json.Member("relative_file", texture.relativeFileName);
    json.Member("embedded", texture.isEmbedded);
    json.Member("materials", texture.materials);
  });
  json.Member("members", report.members);
  json.Key("messages");
  WriteFindings(json, report.findings);
}

std::string JsonText(std::string_view json) { return VisibleLines(json) + "\n"; }

}  // namespace ts3d
