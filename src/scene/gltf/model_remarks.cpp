// SPDX-License-Identifier: MIT
#include "scene/gltf/model_remarks.h"

#include <cstdio>

#include "scene/model/scene.h"

namespace scene::gltf {
namespace {

/// For users, in centimetres or metres.
std::string LengthText(double centimetres) {
  char text[40];
  if (centimetres < 10) {
    std::snprintf(text, sizeof text, "%.2g cm", centimetres);
  } else if (centimetres < 1000) {
    std::snprintf(text, sizeof text, "%.0f cm", centimetres);
  } else {
    std::snprintf(text, sizeof text, "%.4g m", centimetres / 100);
  }
  return text;
}

std::string UnitRemark(const ModelFacts& facts) {
  char unit[100] = "its lengths are taken for centimetres, as FBX characters have them";
  if (facts.scale != 1.0) {
    std::snprintf(unit, sizeof unit,
                  "its lengths are multiplied by %g to be the centimetres of FBX characters", facts.scale);
  }
  return facts.height > 0 ? std::string(unit) + ", so it is " + LengthText(facts.height) + " high" : unit;
}

}  // namespace

void AddRemarks(const Document& document, const Conventions& conventions, const ModelFacts& facts,
                KFbxScene& scene) {
  scene.AddRemark(UnitRemark(facts));
  scene.AddRemark(conventions.axes);
  if (!document.unread.empty()) {
    scene.AddRemark("it has extensions that are not read, so something may be missing: " + document.unread);
  }
  if (facts.isPosed) {
    scene.AddRemark("its skeleton is posed, and the package has it as it stood when the skin was bound");
  }
  if (!facts.addedRoot.empty()) {
    scene.AddRemark("its skeleton has several top bones; they stand under a new bone \"" + facts.addedRoot +
                    "\"");
  }
}

}  // namespace scene::gltf
