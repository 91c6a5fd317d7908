// SPDX-License-Identifier: MIT

#include "core/json_output.h"
#include "output/build_info.h"
#include "preview/page.h"

namespace cli {

std::string VersionAsJson() {
  constexpr int kVersion = 1;
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "version", kVersion);
  json.Member("commit", BuildCommit().empty() ? std::nullopt : std::optional(BuildCommit()));
  json.Member("page", !preview::PageTemplate().empty());
  json.Member("pictures", PictureKinds());
  json.OpenObject("libraries");
  for (const auto& [name, version] : LibraryVersions()) json.Member(name, version);
  json.CloseObject();
  json.CloseObject();
  // Whoever prints it adds the line end.
  std::string text = ts3d::JsonText(json.Text());
  text.pop_back();
  return text;
}

}  // namespace cli
