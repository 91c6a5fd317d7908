// SPDX-License-Identifier: MIT
#include "material/xrf_writer.h"

#include <algorithm>

#include "core/file_writer.h"
#include "core/mesh_filter.h"
#include "core/number_format.h"

namespace ts3d {
namespace {

/// 0..1 as 0..255: cut off, neither rounded nor clamped.
std::string ColourNumber(double value) {
  constexpr double kLimit = 2147483647.0;
  return std::to_string(static_cast<int32_t>(std::clamp(value * 255.0, -kLimit, kLimit)));
}

std::string ColourLine(const char* element, const scene::KFbxVector4& colour, double opacity) {
  std::string line = std::string("   <") + element + ">";
  for (size_t i = 0; i < 3; ++i) line += ColourNumber(colour[i]) + " ";
  return line + ColourNumber(opacity) + "</" + element + ">\n";
}

std::string XrfText(const MaterialRecord& material) {
  std::string text =
      std::string("<MATERIAL VERSION=\"1000\" NUMMAPS=\"") + (material.hasMap ? "1" : "0") + "\">\n";
  text += ColourLine("AMBIENT", material.ambient, material.opacity);
  text += ColourLine("DIFFUSE", material.diffuse, material.opacity);
  text += ColourLine("SPECULAR", material.specular, material.opacity);
  text += "   <SHININESS>" + SixDecimals(material.shininess) + "</SHININESS>\n";
  if (material.hasMap) text += "   <MAP>" + material.mapName + "</MAP>\n";
  return text + "</MATERIAL>";
}

}  // namespace

void WriteXrfFile(const MaterialRecord& material, MaterialOutput& out) {
  if (skipThisMesh(material.name, out.filter)) return;
  const std::string text = WithNativeLineEnds(XrfText(material));
  WorkFileWriter file(out.files, material.name + ".xrf");
  file.Bytes(text.data(), text.size());
  file.Finish();
}

}  // namespace ts3d
