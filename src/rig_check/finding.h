// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ts3d {

/// How bad a finding is. Notes tell what happens, warnings what will look wrong, and after a fatal one there
/// is no package.
enum class Severity { Note, Warning, Fatal };

/// "note", "warning" or "error".
std::string_view NameOf(Severity severity);

/// What the subjects of a finding are.
enum class Subject { File, Node, Bone, Mesh, Material, Texture, Member, Option };

/// "bone", or "bones" for any other number than one.
std::string_view NameOf(Subject subject, size_t count = 1);

/// One problem that rigs can have. Each "{}" in the text stands for a value of the model.
struct FindingKind {
  std::string_view code;  ///< stable; scripts may rely on it
  Severity severity;
  Subject subject;
  std::string_view text;
  std::string_view fix;  ///< empty when there is nothing to do
};

/// A problem that a rig has.
struct Finding {
  std::string code;
  Severity severity = Severity::Note;
  Subject subject = Subject::File;
  std::vector<std::string> names;  ///< bones, meshes, ... that have it; none: the file
  std::string text;
  std::string fix;
};

}  // namespace ts3d
