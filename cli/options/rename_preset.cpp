// SPDX-License-Identifier: MIT
#include "options/rename_preset.h"

#include <algorithm>
#include <set>

#include "base/plain_text.h"
#include "core/names.h"
#include "scene/model/node.h"

namespace cli {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// In lower case, without namespaces and separators.
std::string WithoutSpelling(std::string_view name) {
  std::string plain = ts3d::LowerCase(name.substr(name.find_last_of(":|") + 1));
  std::erase_if(plain, [](char c) { return c == ' ' || c == '_' || c == '.' || c == '-'; });
  return plain;
}

}  // namespace

std::vector<NamedBone> NamedBones(const ts3d::SkeletonState& skeleton) {
  std::vector<NamedBone> bones;
  for (size_t id = 0; id < skeleton.boneNodes.size(); ++id) {
    bones.push_back({skeleton.bones.FindById(static_cast<int32_t>(id))->name,
                     skeleton.boneNodes[id]->GetName(), skeleton.boneNodes[id]->GetHumanBone()});
  }
  return bones;
}

RenamePreset::RenamePreset(std::string_view text) {
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = base::Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    std::string_view key, value;
    if (line.starts_with('#') || !ts3d::SplitEntry(line, key, value)) continue;
    if (base::Trimmed(key) == "prefix") {
      prefix_ = WithoutSpelling(base::Trimmed(value));
    } else if (base::Trimmed(key) == "only") {
      onlyPrefixed_ = base::Trimmed(value) == "prefixed";
    } else if (base::Trimmed(key) == "by") {
      byHumanBone_ = base::Trimmed(value) == "human bone";
    } else {
      names_.emplace(WithoutSpelling(base::Trimmed(key)), base::Trimmed(value));
    }
  }
}

/// "Bip001 L Thigh" -> "lthigh".
RenamePreset::Plain RenamePreset::PlainOf(const NamedBone& named) const {
  const std::string_view bone = byHumanBone_ ? named.humanBone : named.modelName;
  Plain plain{WithoutSpelling(bone)};
  if (prefix_.empty()) return plain;
  const size_t end = bone.find_last_of(":|");
  const bool isNamespace =
      end != std::string_view::npos && WithoutSpelling(bone.substr(0, end)).starts_with(prefix_);
  plain.isPrefixed = isNamespace || plain.name.starts_with(prefix_);
  if (!plain.name.starts_with(prefix_)) return plain;
  plain.name.erase(0, prefix_.size());
  plain.name.erase(plain.name.begin(), std::find_if_not(plain.name.begin(), plain.name.end(), IsDigit));
  return plain;
}

bool RenamePreset::HasPrefixed(const std::vector<NamedBone>& bones) const {
  return std::any_of(bones.begin(), bones.end(), [&](const NamedBone& bone) {
    const Plain plain = PlainOf(bone);
    return plain.isPrefixed && names_.contains(plain.name);
  });
}

std::vector<std::string> RenamePreset::RenamesOf(const std::vector<NamedBone>& bones,
                                                 const std::vector<std::string>& given) const {
  std::set<std::string> taken, left;
  for (const std::string& entry : given) {
    left.insert(ts3d::LowerCase(entry.substr(0, entry.find('='))));
    taken.insert(entry.substr(entry.find('=') + 1));
  }
  std::vector<std::string> renames;
  const bool needsPrefix = onlyPrefixed_ || HasPrefixed(bones);
  for (const NamedBone& bone : bones) {
    const Plain plain = PlainOf(bone);
    const auto found = names_.find(plain.name);
    if (found == names_.end() || (needsPrefix && !plain.isPrefixed)) continue;
    if (bone.name.find_first_of("=|") != std::string::npos) continue;
    if (left.contains(ts3d::LowerCase(bone.name)) || !taken.insert(found->second).second) continue;
    renames.push_back(bone.name + "=" + found->second);
  }
  return renames;
}

}  // namespace cli
