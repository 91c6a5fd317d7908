// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "output/build_info.h"
#include "preview/page.h"
#include "rig_check/report_json.h"

namespace cli {

std::string VersionAsJson() {
  using Json = nlohmann::ordered_json;
  constexpr int kVersion = 1;
  Json json = ts3d::JsonHead("version", kVersion);
  json["commit"] = BuildCommit().empty() ? Json() : Json(BuildCommit());
  json["page"] = !preview::PageTemplate().empty();
  json["pictures"] = PictureKinds();
  Json& libraries = json["libraries"] = Json::object();
  for (const auto& [name, version] : LibraryVersions()) libraries[name] = version;
  // Whoever prints it adds the line end.
  std::string text = ts3d::JsonText(json);
  text.pop_back();
  return text;
}

}  // namespace cli
