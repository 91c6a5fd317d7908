// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "skeleton/skeleton_state.h"

namespace cli {

/// The files of presets/ by their names.
const std::map<std::string, std::string_view>& RenamePresetTexts();

/// A bone by its name in the package and in the model, which still has its namespace, and by the bone of a human
/// that the file says it is.
struct NamedBone {
  std::string name, modelName, humanBone;
};

std::vector<NamedBone> NamedBones(const ts3d::SkeletonState& skeleton);

/// Product names for the bones of rigs of one kind.
class RenamePreset {
 public:
  /// @param text  lines of "bone = product name", "prefix = name", "only = prefixed", "by = human bone" and
  /// "# ..."
  explicit RenamePreset(std::string_view text);

  /// What the bones are to be called, as "old=new" in their order. A product name goes to the first bone
  /// that it fits. Where some of these have the preset's prefix, the others are something else. `given` are
  /// such entries as well: their bones and names are left alone.
  std::vector<std::string> RenamesOf(const std::vector<NamedBone>& bones,
                                     const std::vector<std::string>& given = {}) const;

 private:
  /// A bone's name without spelling and prefix.
  struct Plain {
    std::string name;
    bool isPrefixed = false;  ///< had the prefix in front, or as its namespace
  };
  Plain PlainOf(const NamedBone& bone) const;
  bool HasPrefixed(const std::vector<NamedBone>& bones) const;

  std::string prefix_;                        ///< as PlainOf leaves names; empty: none
  bool onlyPrefixed_ = false;                 ///< bones without the prefix are never meant
  bool byHumanBone_ = false;                  ///< names of bones do not matter
  std::map<std::string, std::string> names_;  ///< product names by plain names
};

}  // namespace cli
