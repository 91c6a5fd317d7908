// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "scene/container/container.h"
#include "support/fbx_builder.h"

namespace {

using namespace std::string_literals;
using scene::ContainerKind;
using scene::DetectContainer;
using scene::DetectVersion;

TEST(Detection, TheContentTellsTheContainer) {
  const std::string binary = support::WriteBinary({});
  std::string blanks = binary;
  blanks[20] = ' ';  // as a text-mode transfer leaves the zero byte
  const struct {
    const char* what;
    std::string bytes;
    ContainerKind expected;
  } kCases[] = {{"binary", binary, ContainerKind::Binary},
                {"magic only", binary.substr(0, 22), ContainerKind::Binary},
                {"magic cut off", binary.substr(0, 21), ContainerKind::None},
                {"damaged magic", blanks, ContainerKind::None},
                {"comment", "; FBX 7.4.0 project file\n", ContainerKind::Ascii},
                {"odd blanks", "\xef\xbb\xbf\r\n\t;FBX   7.4.0  project file\n", ContainerKind::Ascii},
                {"header record only", "; by hand\nFBXHeaderExtension: {\n}\n", ContainerKind::Ascii},
                {"header record too far behind", std::string(5000, '\n') + "FBXHeaderExtension: {}",
                 ContainerKind::None},
                {"header record behind zero bytes", "\0\0FBXHeaderExtension: {}"s, ContainerKind::None},
                {"other text", "; a configuration file\nname = x\n", ContainerKind::None},
                {"empty", "", ContainerKind::None}};
  for (const auto& c : kCases) EXPECT_EQ(DetectContainer(c.bytes), c.expected) << c.what;
}

TEST(Detection, TheVersionComesFromTheBinaryHeader) {
  const auto version = [](std::string_view bytes) { return DetectVersion(bytes, ContainerKind::Binary); };
  EXPECT_EQ(version(support::WriteBinary({}, {.version = 7500})), 7500);
  EXPECT_EQ(version(support::WriteBinary({}, {.version = 7100, .bigEndian = true})), 7100);
  EXPECT_EQ(version(support::WriteBinary({}).substr(0, 26)), 0);
  EXPECT_EQ(version(support::WriteBinary({}, {.version = 0xffffffff})), 0);
}

TEST(Detection, TheVersionOfATextComesFromItsFirstCommentElseFromItsRecord) {
  const struct {
    const char* text;
    int expected;
  } kCases[] = {{"; FBX 7.5.0 project file\n", 7500},
                {"; FBX 6.1.0 project file\nFBXHeaderExtension: {\nFBXVersion: 7500\n}", 6100},
                {";  FBX  7.7.1\n", 7710},
                {"; FBX 7.4\n", 7400},
                {"; FBX x\nFBXHeaderExtension: {\nFBXVersion: 7300\n}", 7300},
                {"FBXHeaderExtension: {\nFBXVersion:7200\n}", 7200},
                {"FBXHeaderExtension: {\nFBXVersion: \"x\"\n}", 0},
                {"FBXHeaderExtension: {\n}", 0}};
  for (const auto& c : kCases) EXPECT_EQ(DetectVersion(c.text, ContainerKind::Ascii), c.expected) << c.text;
}

}  // namespace
