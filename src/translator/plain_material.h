// SPDX-License-Identifier: MIT
#pragma once

#include <assimp/material.h>

#include <string>
#include <string_view>

namespace translator {

/// Before all names of others: the library gives the first material to meshes that have none.
inline constexpr std::string_view kPlainMaterial = "!plain";

/// A Collada file with such a material, where it has others.
inline std::string WithPlainMaterial(std::string collada) {
  constexpr std::string_view kLibrary = "<library_materials>";
  const size_t library = collada.find(kLibrary);
  if (library == collada.npos) return collada;
  const std::string name(kPlainMaterial);
  collada.insert(library + kLibrary.size(), "<material id=\"" + name + "\" name=\"" + name +
                                                "\"><instance_effect url=\"#" + name + "\"/></material>");
  return collada.insert(library, "<library_effects><effect id=\"" + name +
                                     "\"><profile_COMMON><technique sid=\"common\"><lambert/></technique>"
                                     "</profile_COMMON></effect></library_effects>");
}

/// Whether a material stands for none.
inline bool IsPlain(const aiMaterial& material) {
  aiString name;
  aiGetMaterialString(&material, AI_MATKEY_NAME, &name);
  const std::string_view text(name.data, name.length);
  return text == kPlainMaterial || text == AI_DEFAULT_MATERIAL_NAME;
}

}  // namespace translator
