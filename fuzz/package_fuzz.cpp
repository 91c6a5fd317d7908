// SPDX-License-Identifier: MIT
//
// Packages read back: an archive, or one file of a package beside a sound skeleton -> actor -> everything
// that is said of it and exported from it. The first byte tells what the rest is.
#include <cstdint>
#include <stdexcept>
#include <string>

#include "actor/load_actor.h"
#include "actor/picture_header.h"
#include "export/export_gltf.h"
#include "export/export_obj.h"
#include "inspect/actor_measure.h"
#include "inspect/check_actor.h"

namespace {

constexpr size_t kLargestInput = 1 << 16;
constexpr const char* kNames[] = {"skeleton.csf", "body.cmf", "body.xrf", "model.xfg", "skin.tga"};

/// A skeleton of two bones, for meshes to hang on.
std::string SmallSkeleton() {
  using namespace std::string_literals;
  const std::string unmoved = std::string(24, '\0') + "\0\0\x80\xbf"s;  // w = -1
  return "CSF\0\x84\x03\0\0\2\0\0\0"s +
         // Name, place, place in bone space, parent, children.
         "\2\0\0\0a\0"s + unmoved + unmoved + "\xff\xff\xff\xff\1\0\0\0\1\0\0\0"s +  //
         "\2\0\0\0b\0"s + unmoved + unmoved + std::string(8, '\0');
}

bool MakeContents(uint8_t kind, std::string bytes, actor::PackageContents& contents) {
  constexpr size_t kCount = std::size(kNames);
  if (kind % (kCount + 1) == kCount) {
    std::string error;
    return ReadPackageBytes(bytes, {100, 1 << 20, 1 << 22, 1 << 22}, contents, error);
  }
  const char* name = kNames[kind % kCount];
  if (kind % kCount != 0) contents.members.push_back({kNames[0], 0, 0, {}, true, false, SmallSkeleton()});
  contents.members.push_back({name, bytes.size(), bytes.size(), {}, true, false, std::move(bytes)});
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0 || size > kLargestInput) return 0;
  actor::PackageContents contents;
  std::string rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  actor::PictureHeader header;
  actor::ReadPictureHeader(rest, header);
  if (!MakeContents(data[0], std::move(rest), contents)) return 0;
  actor::Actor actor;
  actor::Findings findings;
  std::string error;
  if (!BuildActor(contents, actor, findings, error)) return 0;
  CheckActor(contents, actor, findings);
  MeasureBoneDistance(actor);
  const auto encode = [](const actor::Picture&) { return actor::EncodedPicture{"png", {}}; };
  try {
    ExportGlb(actor, "fuzz", encode);
    ExportObj(actor, "model", encode);
  } catch (const std::runtime_error&) {
    // Larger than the format allows.
  }
  return 0;
}
