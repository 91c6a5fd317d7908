// SPDX-License-Identifier: MIT
#include "output/json_parts.h"

#include <nlohmann/json.hpp>

#include "rig_check/report_json.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

template <typename Value>
Json Parsed(void (*write)(ts3d::JsonWriter&, const Value&), const Value& value) {
  ts3d::JsonWriter json;
  write(json, value);
  return Json::parse(json.Text());
}

}  // namespace

Json JsonHead(std::string_view schema, int version) {
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, schema, version);
  json.CloseObject();
  return Json::parse(json.Text());
}

Json FindingAsJson(const ts3d::Finding& finding) { return Parsed(ts3d::WriteFinding, finding); }

Json FindingsAsJson(const std::vector<ts3d::Finding>& findings) {
  return Parsed(ts3d::WriteFindings, findings);
}

Json ReportAsJson(const ts3d::RigReport& report) { return Parsed(ts3d::WriteReport, report); }

std::string JsonText(const Json& json) {
  return ts3d::JsonText(json.dump(2, ' ', false, Json::error_handler_t::replace));
}

}  // namespace cli
