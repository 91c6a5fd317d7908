// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ts3d {

/// How bad a finding is. Notes tell what happens, warnings what will look wrong, and after an error there is no package,
/// or none that can be used.
enum class Severity { Note, Warning, Error };

/// "note", "warning" or "error".
std::string_view NameOf(Severity severity);

/// What the subjects of a finding are.
enum class Subject { File, Node, Bone, Mesh, Material, Texture, Member, Option };

/// "bone", or "bones" for any other number than one.
std::string_view NameOf(Subject subject, size_t count = 1);

/// Something that a person should know about a model, a package or what was asked for.
struct Finding {
  std::string code;  ///< stable; scripts may rely on it
  Severity severity = Severity::Note;
  Subject subject = Subject::File;
  std::vector<std::string> names;  ///< bones, members, ... that it is about; none: the whole file
  std::string text;
  std::string fix;  ///< what to do; empty when there is nothing
};

}  // namespace ts3d
