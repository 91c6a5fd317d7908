// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/finding.h"
#include "core/settings.h"

namespace ts3d {

struct FindingKind;

/// A mesh file of the package.
struct OutputMesh {
  std::string name;      ///< without ".cmf"; its material file has the same name
  std::string node;      ///< the mesh's name in the model
  std::string material;  ///< the material's name in the model; empty: the stand-in
  std::string texture;   ///< ".tga" name of its picture, or empty
  size_t vertices = 0;
  size_t triangles = 0;
};

struct OutputBone {
  std::string name;
  std::string parent;     ///< empty for the root
  std::string modelName;  ///< as the model has it, with its namespace
  bool weighted = false;
  std::string humanBone;  ///< of an avatar: which bone of a human the file says it is
};

/// A picture that the materials ask for.
struct UsedTexture {
  std::string fileName;  ///< as the model gives it; an embedded one is where it will be unpacked
  std::string relativeFileName;
  std::string tgaName;      ///< its name in the package
  bool isTga = false;       ///< else it is to be converted
  bool isEmbedded = false;  ///< in the model itself
  std::vector<std::string> materials;
};

/// What a package of the model would hold, and what is wrong with the rig.
struct RigReport {
  bool loaded = false;
  std::string format;    ///< of the file, "FBX", "glTF" or another; empty when it could not be told
  std::string version;   ///< of the file, as "7.4.0"; empty when it could not be told
  std::string objectId;  ///< what the product will call it: "actor (male)", or the name of the file
  std::vector<OutputBone> bones;
  std::vector<OutputMesh> meshes;
  std::vector<UsedTexture> textures;
  std::vector<std::string> members;  ///< names of the package's files, in order
  std::vector<Finding> findings;

  /// Adds a finding about `name`, or about the file when it is empty. Findings that say the same of several
  /// names become one.
  /// @param values  for the "{}" of the text, in order
  void Add(const FindingKind& kind, const std::string& name = {},
           const std::vector<std::string>& values = {});
  /// The worst severity among the findings; Note when there are none.
  Severity Worst() const;
  /// Puts the worst findings first; equally bad ones stay in order.
  void SortFindings();

 private:
  std::unordered_map<std::string, size_t> findingOf_;  ///< by code and text
  std::set<std::pair<size_t, std::string>> named_;     ///< names that each finding has
};

}  // namespace ts3d
