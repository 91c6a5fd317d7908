// SPDX-License-Identifier: MIT
#pragma once

#include <assimp/scene.h>

#include <map>
#include <string>
#include <vector>

#include "translator/glb_data.h"
#include "translator/node_tree.h"
#include "translator/write_glb.h"

namespace translator {

/// Writes the meshes of nodes, and their skins.
class MeshWriter {
 public:
  MeshWriter(const aiScene& scene, const NodeTree& tree, const FormatTraits& format, GlbData& data);

  /// A mesh that one node of the GLB file can hold.
  struct Held {
    std::string members;  ///< of the node: "mesh" and "skin"
    unsigned first;       ///< number of its first mesh in the scene
  };
  /// The meshes of a node: one, unless their skins do not fit each other.
  std::vector<Held> Write(size_t node);
  /// Where no mesh has a skin, one that nothing wears tells the joints.
  void WriteJointsWithoutSkin();

  std::string Meshes() const { return meshes_.Text(); }
  std::string Skins() const { return skins_.Text(); }

 private:
  struct Skin {
    std::vector<size_t> joints;            ///< nodes
    std::map<size_t, size_t> places;       ///< of the nodes in `joints`
    std::vector<aiMatrix4x4> inverseBind;  ///< of the joints
  };
  struct Group {
    std::vector<unsigned> meshes;
    Skin skin;
  };

  std::vector<Group> GroupMeshes(const aiNode& node) const;
  bool Fits(const aiMesh& mesh, const Group& group) const;
  void AddBones(const aiMesh& mesh, Skin& skin) const;
  void BindAt(size_t node, Skin& skin) const;
  void AddWeightlessJoints(Skin& skin);
  std::string WriteGroup(size_t node, Group& group);
  std::string WriteSkin(const Skin& skin);
  std::string WritePrimitive(const aiMesh& mesh, const Skin& skin);
  std::string WriteCoordinates(const aiMesh& mesh, unsigned set);
  std::string WriteInfluences(const aiMesh& mesh, const Skin& skin);

  const aiScene& scene_;
  const NodeTree& tree_;
  const FormatTraits& format_;
  GlbData& data_;
  JsonList meshes_, skins_;
  std::map<std::vector<unsigned>, std::string> known_;  ///< members of groups of meshes
  bool hasWeightless_ = false;
};

}  // namespace translator
