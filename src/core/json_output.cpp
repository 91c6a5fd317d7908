// SPDX-License-Identifier: MIT
#include "core/json_output.h"

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

std::string JsonText(std::string_view json) { return VisibleLines(json) + "\n"; }

}  // namespace ts3d
