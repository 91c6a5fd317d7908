// SPDX-License-Identifier: MIT
#include "config/fixed_materials.h"

#include <span>

namespace ts3d {
namespace {

/// Name and file are escaped for XML already.
struct FixedMaterial {
  std::string_view name;
  int threadId;
  std::string_view file;
};

// clang-format off
constexpr FixedMaterial kAdultMaterials[] = {
    {"face", 51, "MediumResolutionSkin_1.xrf"},
    {"right eye", 52, "MediumResolutionSkin_2.xrf"},
    {"left eye", 53, "MediumResolutionSkin_3.xrf"},
    {"&lt;mouth&gt;", 54, "MediumResolutionSkin_4.xrf"},
    {"teeth (upper)", 55, "MediumResolutionSkin_5.xrf"},
    {"teeth (lower)", 56, "MediumResolutionSkin_6.xrf"},
    {"tongue", 57, "MediumResolutionSkin_7.xrf"},
    {"body", 150, "body.xrf"},
    {"hair (center part, short)", 60, "hair20.xrf"},
    {"hair (nappy)", 61, "hair18.xrf"},
    {"hair (shoulder, no part)", 62, "hair19.xrf"},
    {"hair (balding)", 63, "hair1.xrf"},
    {"hair (receding)", 64, "hair2.xrf"},
    {"hair (short, no part)", 65, "hair3.xrf"},
    {"hair (medium, no part)", 66, "hair4.xrf"},
    {"hair (center part, bangs)", 67, "hair5.xrf"},
    {"hair (full head, thick)", 68, "hair6.xrf"},
    {"hair (spiky, low)", 69, "hair7.xrf"},
    {"hair (spiky, curly)", 70, "hair8.xrf"},
    {"hair (center part, wavy)", 71, "hair9.xrf"},
    {"hair (collar length, thin)", 72, "hair10.xrf"},
    {"hair (mid-length bob)", 73, "hair11.xrf"},
    {"hair (collar length, thick)", 74, "hair12.xrf"},
    {"hair (shoulder length)", 75, "hair13.xrf"},
    {"hair (tight braids)", 76, "hair14.xrf"},
    {"hair (corn rows)", 77, "hair15.xrf"},
    {"pig &amp; pony tails", 78, "pig &amp; pony tails.xrf"},
};

constexpr FixedMaterial kChildMaterials[] = {
    {"face", 0, "MediumResolutionSkin_1.xrf"},
    {"right eye", 1, "MediumResolutionSkin_2.xrf"},
    {"left eye", 2, "MediumResolutionSkin_3.xrf"},
    {"&lt;mouth&gt;", 3, "MediumResolutionSkin_4.xrf"},
    {"teeth (upper)", 4, "MediumResolutionSkin_5.xrf"},
    {"teeth (lower)", 5, "MediumResolutionSkin_6.xrf"},
    {"tongue", 6, "MediumResolutionSkin_7.xrf"},
    {"body", 150, "body.xrf"},
    {"hair", 7, "hair.xrf"},
    {"hair braid", 61, "hair braid.xrf"},
    {"&lt;hardware&gt;", 8, "hardware.xrf"},
};

constexpr FixedMaterial kBabyMaterials[] = {
    {"face", 12, "MediumResolutionSkin_1.xrf"},
    {"right eye", 10, "MediumResolutionSkin_2.xrf"},
    {"left eye", 11, "MediumResolutionSkin_3.xrf"},
    {"&lt;mouth&gt;", 13, "MediumResolutionSkin_4.xrf"},
    {"teeth (upper)", 14, "MediumResolutionSkin_5.xrf"},
    {"teeth (lower)", 15, "MediumResolutionSkin_6.xrf"},
    {"tongue", 16, "MediumResolutionSkin_7.xrf"},
    {"body", 150, "body.xrf"},
};
// clang-format on

std::span<const FixedMaterial> MaterialsOf(ActorType actorType) {
  switch (actorType) {
    case ActorType::Male:
    case ActorType::Female:
    case ActorType::Teenager:
      return kAdultMaterials;
    case ActorType::Boy:
    case ActorType::Girl:
      return kChildMaterials;
    case ActorType::Baby:
      return kBabyMaterials;
    case ActorType::None:
      break;
  }
  return {};
}

}  // namespace

std::string FixedMaterialLines(ActorType actorType) {
  std::string lines;
  for (const FixedMaterial& material : MaterialsOf(actorType)) {
    lines += MaterialLine(material.name, material.threadId, material.file);
  }
  return lines;
}

std::string MaterialLine(std::string_view name, int threadId, std::string_view file) {
  std::string line = "\t<material_file name=\"";
  line.append(name).append("\" threadID=\"").append(std::to_string(threadId)).append("\">");
  return line.append(file).append("</material_file>\n");
}

}  // namespace ts3d
