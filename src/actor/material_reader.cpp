// SPDX-License-Identifier: MIT
#include "actor/material_reader.h"

#include <algorithm>
#include <utility>

#include "actor/number_text.h"

namespace actor {
namespace {

/// Takes `expected` and the blanks before it from the front of `text`.
bool Take(std::string_view& text, std::string_view expected) {
  const size_t start = std::min(text.find_first_not_of(kBlanks), text.size());
  if (!text.substr(start).starts_with(expected)) return false;
  text.remove_prefix(start + expected.size());
  return true;
}

/// Takes "<element>content</element>".
bool TakeElement(std::string_view& text, const std::string& element, std::string_view& content) {
  if (!Take(text, "<" + element + ">")) return false;
  const std::string close = "</" + element + ">";
  const size_t end = text.find(close);
  if (end == std::string_view::npos) return false;
  content = text.substr(0, end);
  text.remove_prefix(end + close.size());
  return true;
}

bool TakeColour(std::string_view& text, const char* element, std::array<int32_t, 4>& colour) {
  std::string_view content;
  if (!TakeElement(text, element, content)) return false;
  for (int32_t& channel : colour) {
    if (!TakeNumber(content, channel)) return false;
  }
  return Trimmed(content).empty();
}

/// @return null, or the element that is wrong or missing
const char* Read(std::string_view text, Material& material) {
  if (!Take(text, "<MATERIAL VERSION=\"1000\" NUMMAPS=\"")) return "MATERIAL";
  const bool announced = text.starts_with('1');
  if (!Take(text, announced ? "1\">" : "0\">")) return "NUMMAPS";
  if (!TakeColour(text, "AMBIENT", material.ambient)) return "AMBIENT";
  if (!TakeColour(text, "DIFFUSE", material.diffuse)) return "DIFFUSE";
  if (!TakeColour(text, "SPECULAR", material.specular)) return "SPECULAR";
  std::string_view content;
  if (!TakeElement(text, "SHININESS", content) || !TakeNumber(content, material.shininess) ||
      !Trimmed(content).empty()) {
    return "SHININESS";
  }
  material.hasMap = TakeElement(text, "MAP", content);
  if (material.hasMap != announced) return "MAP";
  if (material.hasMap) material.map = content;
  return Take(text, "</MATERIAL>") && Trimmed(text).empty() ? nullptr : "/MATERIAL";
}

}  // namespace

bool ReadMaterial(std::string_view bytes, Material& material, std::string& error) {
  std::string name = std::move(material.name);
  material = {};
  const char* wrong = Read(bytes, material);
  if (wrong) material = {};
  material.name = std::move(name);
  if (wrong) error = std::string("its element ") + wrong + " is wrong or missing";
  return !wrong;
}

}  // namespace actor
