// SPDX-License-Identifier: MIT
#pragma once

#include "actor/load_actor.h"
#include "inspect/check_actor.h"
#include "support/test_host.h"

namespace support {

/// A ".tga" picture of one pixel.
inline std::string SmallPicture() {
  using namespace std::string_literals;
  return "\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0"s + "\x10\x20\x30";
}

/// The sample character as a package file, with pictures.
inline const std::string& SamplePackage() {
  static const std::string bytes = [] {
    TestHost host;
    for (const char* name : {"cloth.tga", "skin.tga", "metal.tga"}) host.folder.Write(name, SmallPicture());
    EXPECT_EQ(host.Convert(ReadWholeFile(TS3D_SAMPLES_FOLDER "/scout.fbx"), "scout.fbx"),
              ts3d::ConversionResult::Success);
    return ReadWholeFile(host.folder.Path("scout.czp"));
  }();
  return bytes;
}

/// The members of the sample's package.
inline actor::PackageContents SampleContents() {
  actor::PackageContents contents;
  std::string error;
  EXPECT_TRUE(ReadPackageBytes(SamplePackage(), actor::ReadLimits(), contents, error)) << error;
  return contents;
}

inline actor::Actor SampleActor() {
  actor::Actor actor;
  actor::Findings findings;
  std::string error;
  actor::PackageContents contents = SampleContents();
  EXPECT_TRUE(BuildActor(contents, actor, findings, error)) << error;
  EXPECT_TRUE(findings.empty());
  return actor;
}

/// The bytes of the member `name`, to be changed.
inline std::string& BytesOf(actor::PackageContents& contents, std::string_view name) {
  return const_cast<actor::Member*>(contents.Find(name))->bytes;
}

}  // namespace support
