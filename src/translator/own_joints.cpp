// SPDX-License-Identifier: MIT
#include "translator/own_joints.h"

#include <algorithm>
#include <map>
#include <vector>

#include "translator/collada_joints.h"

namespace translator {
namespace {

using std::string_view;

class JointNames {
 public:
  explicit JointNames(string_view file) : file_(file) {}

  std::string MakeUnique() {
    ReadNodes();
    const auto isShared = [](const auto& named) { return named.second.size() > 1; };
    if (std::none_of(named_.begin(), named_.end(), isShared)) return std::string(file_);
    for (const auto& [sid, nodes] : named_) {
      for (const size_t node : nodes) {
        if (nodes.size() > 1) names_[nodes_[node].sid.data()] = {nodes_[node].sid, nodes_[node].id};
      }
    }
    ReadUses();
    ReadSkins();
    return Apply();
  }

 private:
  static constexpr size_t kNone = static_cast<size_t>(-1);

  struct Node {
    string_view id, sid;
    size_t parent;
  };
  struct NewName {
    string_view old, now;
  };

  string_view TagAt(size_t at) const { return file_.substr(at, file_.find('>', at) - at); }

  /// What follows the tag at `at`, up to the next one.
  string_view TextAfter(size_t at) const {
    const size_t start = std::min(file_.find('>', at), file_.size() - 1) + 1;
    return file_.substr(start, file_.find('<', start) - start);
  }

  void ReadNodes() {
    size_t open = kNone;
    for (size_t at = file_.find("<library_visual_scenes"); at < file_.size(); at = file_.find('<', at + 1)) {
      const string_view tag = TagAt(at);
      if (tag.starts_with("</node")) {
        if (open != kNone) open = nodes_[open].parent;
      } else if (tag.starts_with("<node")) {
        const string_view sid = AttributeOf(tag, "sid");
        nodes_.push_back({AttributeOf(tag, "id"), sid, open});
        if (!sid.empty() && !nodes_.back().id.empty()) named_[sid].push_back(nodes_.size() - 1);
        if (!tag.ends_with('/')) open = nodes_.size() - 1;
      }
    }
  }

  /// The skeletons that the instances of each skin hang on.
  void ReadUses() {
    string_view skin;
    for (size_t at = file_.find("<instance_controller"); at < file_.size(); at = file_.find('<', at + 1)) {
      const string_view tag = TagAt(at);
      if (tag.starts_with("<instance_controller")) {
        skin = AttributeOf(tag, "url");
      } else if (tag.starts_with("<skeleton") && TextAfter(at).starts_with('#')) {
        skeletons_[skin.substr(std::min<size_t>(1, skin.size()))].push_back(TextAfter(at).substr(1));
      }
    }
  }

  void ReadSkins() {
    string_view skin;
    for (size_t at = file_.find("<controller"); at < file_.size(); at = file_.find('<', at + 1)) {
      const string_view tag = TagAt(at);
      if (tag.starts_with("<controller ")) skin = AttributeOf(tag, "id");
      const auto uses = skeletons_.find(skin);
      if (tag.starts_with("<Name_array") && uses != skeletons_.end()) Rename(TextAfter(at), uses->second);
    }
  }

  void Rename(string_view joints, const std::vector<string_view>& skeletons) {
    constexpr string_view kBlanks = " \t\r\n";
    for (size_t at = joints.find_first_not_of(kBlanks); at < joints.size();
         at = joints.find_first_not_of(kBlanks, at)) {
      const size_t end = std::min(joints.find_first_of(kBlanks, at), joints.size());
      const string_view name = joints.substr(at, end - at);
      at = end;
      const auto nodes = named_.find(name);
      if (nodes == named_.end() || nodes->second.size() < 2) continue;
      const auto own = std::find_if(nodes->second.begin(), nodes->second.end(),
                                    [&](size_t node) { return IsBelow(node, skeletons); });
      if (own != nodes->second.end()) names_[name.data()] = {name, nodes_[*own].id};
    }
  }

  bool IsBelow(size_t node, const std::vector<string_view>& skeletons) {
    // Chains of nodes that are long, and many, would be climbed for minutes.
    constexpr uint64_t kMostSteps = 20'000'000;
    for (; node != kNone && ++steps_ < kMostSteps; node = nodes_[node].parent) {
      if (std::find(skeletons.begin(), skeletons.end(), nodes_[node].id) != skeletons.end()) return true;
    }
    return false;
  }

  std::string Apply() const {
    std::string text;
    size_t done = 0;
    for (const auto& [place, name] : names_) {
      const auto at = static_cast<size_t>(place - file_.data());
      text.append(file_.substr(done, at - done)).append(name.now);
      done = at + name.old.size();
    }
    return text.append(file_.substr(done));
  }

  string_view file_;
  std::vector<Node> nodes_;
  std::map<string_view, std::vector<size_t>> named_;           ///< nodes by their names for skins
  std::map<string_view, std::vector<string_view>> skeletons_;  ///< of skins
  std::map<const char*, NewName> names_;                       ///< where names are replaced
  uint64_t steps_ = 0;
};

}  // namespace

std::string WithOwnJoints(string_view collada) { return JointNames(collada).MakeUnique(); }

}  // namespace translator
