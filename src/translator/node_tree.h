// SPDX-License-Identifier: MIT
#pragma once

#include <assimp/scene.h>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace translator {

/// Means the root of the scene, whatever its name.
inline constexpr char kSceneRoot[] = "/";

/// The nodes of a scene, parents before children, and which of them are joints. A node is known by its number.
class NodeTree {
 public:
  static constexpr size_t kNone = static_cast<size_t>(-1);

  /// @param jointRoot  name of the node below which all are joints, or kSceneRoot; empty: those of skins and what is below them
  /// @param jointNames  of nodes that the file calls joints
  NodeTree(const aiScene& scene, std::string_view jointRoot, const std::set<std::string>& jointNames);

  size_t Count() const { return nodes_.size(); }
  const aiNode& At(size_t node) const { return *nodes_[node]; }
  const std::string& NameOf(size_t node) const { return shownNames_[node]; }
  const std::vector<std::string>& Names() const { return shownNames_; }
  /// Gives the nodes other names, as `Names` gives them for the same tree; skins mean nodes by the old ones.
  void SetNames(const std::vector<std::string>& names) {
    if (names.size() == nodes_.size()) shownNames_ = names;
  }
  bool IsJoint(size_t node) const { return isJoint_[node]; }
  /// The first node of that name, or kNone; one without a mesh comes first.
  size_t Find(std::string_view name) const;
  /// Where a node stands in the world of the model.
  aiMatrix4x4 PlaceOf(size_t node) const;
  /// Numbers of the children.
  std::vector<size_t> ChildrenOf(size_t node) const;
  /// Whether a joint shares its name with another node, so that skins may mean either.
  bool IsAmbiguous() const { return isAmbiguous_; }

 private:
  void AddName(size_t node);
  void MarkSkinJoints(const aiScene& scene);
  void MarkOtherJoints(const aiScene& scene, std::string_view jointRoot,
                       const std::set<std::string>& jointNames);

  std::vector<const aiNode*> nodes_;
  std::vector<size_t> parents_;
  std::vector<std::string> shownNames_;
  std::vector<char> isJoint_;
  std::unordered_map<const aiNode*, size_t> numbers_;
  std::map<std::string_view, size_t> names_;
  std::map<std::string_view, size_t> uses_;  ///< how many nodes without a mesh have a name
  bool isAmbiguous_ = false;
};

inline std::string_view View(const aiString& text) { return {text.data, text.length}; }

}  // namespace translator
