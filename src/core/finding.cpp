// SPDX-License-Identifier: MIT
#include "core/finding.h"

namespace ts3d {

std::string_view NameOf(Severity severity) {
  switch (severity) {
    case Severity::Note:
      return "note";
    case Severity::Warning:
      return "warning";
    case Severity::Error:
      return "error";
  }
  return {};
}

std::string_view NameOf(Subject subject, size_t count) {
  const bool one = count == 1;
  switch (subject) {
    case Subject::File:
      return one ? "file" : "files";
    case Subject::Node:
      return one ? "node" : "nodes";
    case Subject::Bone:
      return one ? "bone" : "bones";
    case Subject::Mesh:
      return one ? "mesh" : "meshes";
    case Subject::Material:
      return one ? "material" : "materials";
    case Subject::Texture:
      return one ? "texture" : "textures";
    case Subject::Member:
      return one ? "member" : "members";
    case Subject::Option:
      return one ? "option" : "options";
  }
  return {};
}

}  // namespace ts3d
