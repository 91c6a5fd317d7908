// SPDX-License-Identifier: MIT
#include "translator/lost_joints.h"

#include <array>
#include <bit>
#include <cstdint>

#include "scene/readers/stream_words.h"

namespace translator {
namespace {

/// The library makes several vertices of a point where faces meet; they are where it is.
using Places = std::set<std::array<uint32_t, 3>>;

void AddPlaces(const aiMesh& mesh, const aiBone& bone, Places& places) {
  for (unsigned i = 0; mesh.HasPositions() && i < bone.mNumWeights; ++i) {
    const auto& [vertex, weight] = bone.mWeights[i];
    if (vertex >= mesh.mNumVertices || !(weight > 0.0f)) continue;
    const aiVector3D& place = mesh.mVertices[vertex];
    // Bits compare even where they are no numbers.
    places.insert({std::bit_cast<uint32_t>(place.x), std::bit_cast<uint32_t>(place.y),
                   std::bit_cast<uint32_t>(place.z)});
  }
}

/// In one line of the stream, whatever it holds.
std::string InLine(std::string_view name) {
  std::string line(name);
  for (char& c : line) c = c == '\n' ? ' ' : c;
  return line;
}

}  // namespace

std::string TellLostJoints(const aiScene& scene, const NodeTree& tree) {
  std::map<std::string_view, Places> lost;
  for (unsigned m = 0; m < scene.mNumMeshes; ++m) {
    const aiMesh& mesh = *scene.mMeshes[m];
    for (unsigned b = 0; b < mesh.mNumBones; ++b) {
      const aiBone& bone = *mesh.mBones[b];
      const std::string_view name = View(bone.mName);
      if (tree.Find(name) == NodeTree::kNone) AddPlaces(mesh, bone, lost[name]);
    }
  }
  std::string lines;
  for (const auto& [name, places] : lost) {
    if (places.empty()) continue;
    lines += scene::translation::kLostWord + std::to_string(places.size()) + " " + InLine(name) + "\n";
  }
  return lines;
}

}  // namespace translator
