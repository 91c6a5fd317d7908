// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "config/mesh_list.h"
#include "core/actor_type.h"
#include "core/work_files.h"
#include "skeleton/bone_node.h"

namespace ts3d {

/// What the document calls the model: its actor type or, without one, the document's name.
std::string ObjectId(ActorType actorType, const std::string& documentPath);

/// What every document begins with.
std::string DocumentHead();

/// What the document says beside its lists.
struct DocumentContent {
  ActorType actorType;
  int32_t rotationX, rotationY;       ///< degrees
  const std::string& boneRenameList;  ///< "old=new" entries separated by "|"
  const std::string& meshOptionList;  ///< mesh names separated by "|"; "!name" marks a double-sided mesh
  const BoneTree& bones;
  MeshFilter filter;
  int32_t& nextThreadId;  ///< of the next material line
};

/// Writes the document that tells the product how to assemble the actor, beside the package. When it cannot
/// be written nothing happens: adding it to the package then fails and says so.
void WriteActorConfig(const DocumentContent& content, const MeshList& meshes, const std::string& packagePath,
                      WorkFiles& files);

}  // namespace ts3d
