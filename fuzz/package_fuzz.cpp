// SPDX-License-Identifier: MIT
//
// Bytes -> package -> actor -> everything that is checked and exported of it. Bytes that are no archive are
// tried as each of the files that packages hold.
#include <cstdint>
#include <string>

#include "actor/check_actor.h"
#include "actor/export_gltf.h"
#include "actor/export_obj.h"
#include "actor/load_actor.h"
#include "actor/picture_header.h"

namespace {

constexpr size_t kLargestInput = 1 << 18;

actor::PackageContents AsEachFile(const std::string& bytes) {
  actor::PackageContents contents;
  for (const char* name : {"skeleton.csf", "a.cmf", "a.xrf", "a.xfg", "a.tga"}) {
    actor::Member& member = contents.members.emplace_back();
    member.name = name;
    member.size = bytes.size();
    member.bytes = bytes;
  }
  return contents;
}

void Use(const actor::PackageContents& contents) {
  actor::Actor actor;
  actor::Findings findings;
  std::string error;
  if (!BuildActor(contents, actor, findings, error)) return;
  CheckActor(contents, actor, findings);
  const auto encode = [](const actor::Picture& picture) { return actor::EncodedPicture{picture.name}; };
  ExportGlb(actor, "fuzz", encode);
  ExportObj(actor, "fuzz", encode);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLargestInput) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  actor::ReadLimits limits;
  limits.totalBytes = limits.memberBytes = uint64_t{4} << 20;
  actor::PackageContents contents;
  std::string error;
  const bool isArchive = ReadPackageBytes(bytes, limits, contents, error);
  Use(isArchive ? contents : AsEachFile(bytes));
  return 0;
}
