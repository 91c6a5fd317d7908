// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The program translate_model: a process of its own, with limits, for libraries that were not made for hostile files.
namespace scene::translation {

/// Why there is no answer, in words for the user of the model.
struct Fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A joint that skins give weights and that the model does not have.
struct LostJoint {
  std::string name;
  size_t points = 0;  ///< that lose weights
};

/// What the program answers.
struct Answer {
  std::string stream;                   ///< as the process wrote it
  size_t start = 0;                     ///< of the data in `stream`
  std::vector<std::string> otherFiles;  ///< below the model's folder, which it read as well; with slashes
  std::vector<LostJoint> lostJoints;

  std::string_view Data() const { return std::string_view(stream).substr(start); }
};

/// Bytes of memory that reading a model of `size` bytes may take; the promise of SECURITY.md.
uint64_t MostMemory(uint64_t size);

/// Whether the program was built.
bool IsThere();

/// Runs it with the memory and the time that a model of `modelSize` bytes may take.
/// @param task    the ending of a format, or kMeshesWord
/// @param folder  of the model; nothing outside is read. Empty: no other file is
/// @param wait    called several times a second; may throw
/// @throws Fault
Answer Run(const std::string& task, const std::string& folder, std::string_view input, uint64_t modelSize,
           uint64_t mostOutput, const std::function<void()>& wait);

/// Takes its stream apart.
/// @throws Fault with the reason that it gives, or for what is no stream
Answer ReadStream(std::string stream);

}  // namespace scene::translation
