// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "output/build_info.h"
#include "output/json_parts.h"
#include "preview/page.h"

namespace cli {

std::string VersionAsJson() {
  using Json = nlohmann::ordered_json;
  constexpr int kVersion = 1;
  Json json = JsonHead("version", kVersion);
  json["commit"] = BuildCommit().empty() ? Json() : Json(BuildCommit());
  json["page"] = !preview::PageTemplate().empty();
  json["pictures"] = PictureKinds();
  Json& libraries = json["libraries"] = Json::object();
  for (const auto& [name, version] : LibraryVersions()) libraries[name] = version;
  // Whoever prints it adds the line end.
  std::string text = JsonText(json);
  text.pop_back();
  return text;
}

}  // namespace cli
