// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "scene/model/scene.h"
#include "scene/sdk_manager.h"
#include "support/fbx_builder.h"

namespace support {

/// What readers and importers belong to.
using ManagerPtr = scene::KFbxSdkManagerPtr;

enum class Container { Binary, Ascii };

/// What a container reader made of some bytes.
struct ReadResult {
  std::shared_ptr<scene::RecordTree> tree;
  std::string error;

  /// First top-level record `name`.
  scene::RecordRef operator[](std::string_view name) const { return tree->Find(name); }
  /// All records in one line: `Name:1,2.5,"text",[1 2 3]{Child}`.
  std::string Dump() const;
};

/// Reads the records of a file, whichever container its start tells.
ReadResult ReadRecords(std::string_view file);
/// Reads text that need not start like a file.
ReadResult ReadAsciiText(std::string_view text);

/// A scene built from the bytes of a file.
std::unique_ptr<scene::KFbxScene> LoadSceneBytes(std::string_view file);
/// A scene built from `file`, through the container given.
std::unique_ptr<scene::KFbxScene> LoadScene(const FbxFile& file, Container container = Container::Binary);

/// The node `name`, searched depth first; null when there is none below the root.
scene::KFbxNode* FindNode(scene::KFbxScene& scene, std::string_view name);
/// Names of the children of `node`, separated by blanks.
std::string ChildNames(const scene::KFbxNode& node);

inline std::vector<double> Xyz(const scene::KFbxVector4& v) { return {v[0], v[1], v[2]}; }

}  // namespace support
