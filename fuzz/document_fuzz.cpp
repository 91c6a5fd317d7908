// SPDX-License-Identifier: MIT
//
// The final settings' rewriting of a document. Input: document, mesh list and bone renames, a zero byte
// between each two.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "driver/final_settings.h"
#include "skeleton/skeleton_state.h"

namespace {

/// Work is quadratic in documents with as many meshes as lines, so both stay small.
constexpr size_t kLargestInput = 1 << 15;

std::string_view TakePart(std::string_view& rest) {
  const std::string_view part = rest.substr(0, rest.find('\0'));
  rest.remove_prefix(part.size() < rest.size() ? part.size() + 1 : part.size());
  return part;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLargestInput) return 0;
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  const std::string_view document = TakePart(rest);
  const std::string_view meshList = TakePart(rest);
  ts3d::ConversionJob job;
  job.boneRenameList = TakePart(rest);
  job.actorType = static_cast<ts3d::ActorType>(size % 7);
  if (size % 2 == 0) {
    job.skeleton = std::make_shared<ts3d::SkeletonState>();
    job.skeleton->bones.AddChild(job.skeleton->bones.Root()).name = "hip";
  }
  const std::optional<std::string> once = RewriteDocument(document, job, meshList);
  if (!once) return 0;
  if (!once->ends_with("</cal_config>")) __builtin_trap();
  RewriteDocument(*once, job, {});
  return 0;
}
