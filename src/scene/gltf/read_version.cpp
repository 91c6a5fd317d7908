// SPDX-License-Identifier: MIT
#include "scene/gltf/read_version.h"

#include "scene/gltf/json_value.h"

namespace scene::gltf {
namespace {

/// {0, 0} for what is no version.
std::pair<int, int> VersionOf(const std::string& text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (text.size() < 3 || !isDigit(text[0]) || text[1] != '.' || !isDigit(text[2])) return {};
  return {text[0] - '0', text[2] - '0'};
}

}  // namespace

std::pair<int, int> ReadVersion(JsonValue asset) {
  if (!asset) throw Fault("it is JSON, but not a glTF file");
  const std::string text = asset["version"].Text();
  const std::string least = asset["minVersion"].Text();
  const std::pair<int, int> version = VersionOf(text);
  if (text.empty()) throw VersionFault("the glTF file does not tell its version");
  if (version.first == 1) throw VersionFault("glTF 1.0 is too old; export the model as glTF 2.0");
  if (version.first != 2 || (!least.empty() && VersionOf(least) > std::pair(2, 0)))
    throw VersionFault("glTF version \"" + (least.empty() ? text : least) + "\" is not known");
  return version;
}

}  // namespace scene::gltf
