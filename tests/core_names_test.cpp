// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/names.h"

namespace {

using testing::ElementsAre;

TEST(MeshNames, LoseTheFirstOfEachUnwantedCharacterAndTheOneBeforeIt) {
  const std::pair<const char*, const char*> cases[] = {{"Body", "Body"},        {"Arm:Left", "ArLeft"},
                                                       {"a1:b2:c3", "ab2:c3"},  {"ab?cd", "acd"},
                                                       {"ab!cd", "acd"},        {"ab@cd", "acd"},
                                                       {"ab*cd", "acd"},        {"ab\\cd", "acd"},
                                                       {"ab/cd", "acd"},        {"ab|cd", "acd"},
                                                       {":abc", "abc"},         {"a/b:c/d", "c/d"},
                                                       {"x?y!z@", ""},          {"", ""},
                                                       {"..\\..\\x", "...\\x"}, {"\xc3\xa9:z", "\xc3z"}};
  for (const auto& [name, clean] : cases) EXPECT_EQ(ts3d::SanitizeMeshName(name), clean) << name;
}

TEST(LetterSuffix, CountsThroughTheLettersAndThenThroughPairs) {
  const std::pair<int, const char*> cases[] = {{0, "a"},   {25, "z"},  {26, "aa"}, {27, "ab"},  {51, "az"},
                                               {52, "ba"}, {77, "bz"}, {78, "ca"}, {701, "zz"}, {702, "{a"}};
  for (const auto& [number, suffix] : cases) EXPECT_EQ(ts3d::LetterSuffix(number), suffix) << number;
}

TEST(PathParts, AreDividedByTheLastBackslashOnly) {
  struct {
    const char *path, *directory, *fileName;
  } const cases[] = {{"C:\\m\\x.fbx", "C:\\m\\", "x.fbx"},
                     {"x.fbx", "x.fbx", "x.fbx"},
                     {"C:/m/x.fbx", "C:/m/x.fbx", "C:/m/x.fbx"},
                     {"a/b\\c/x.fbx", "a/b\\", "c/x.fbx"},
                     {"folder\\", "folder\\", ""},
                     {"", "", ""}};
  for (const auto& [path, directory, fileName] : cases) {
    EXPECT_EQ(ts3d::DirectoryPart(path), directory) << path;
    EXPECT_EQ(ts3d::FileNamePart(path), fileName) << path;
  }
}

TEST(ReplaceExtension, PutsItsTextInPlaceOfTheLastThreeCharactersWhateverTheyAre) {
  EXPECT_EQ(ts3d::ReplaceExtension("m\\x.fbx", "czp"), "m\\x.czp");
  EXPECT_EQ(ts3d::ReplaceExtension("x.CZP", "xfg"), "x.xfg");
  EXPECT_EQ(ts3d::ReplaceExtension("model", "czp"), "moczp");
  EXPECT_EQ(ts3d::ReplaceExtension("ab", "czp"), "czp");
}

TEST(HostLists, KeepEmptyEntriesButHaveNoneWhenTheyAreEmpty) {
  EXPECT_THAT(ts3d::SplitList(""), ElementsAre());
  EXPECT_THAT(ts3d::SplitList("a"), ElementsAre("a"));
  EXPECT_THAT(ts3d::SplitList("a|b=c|"), ElementsAre("a", "b=c", ""));
  EXPECT_THAT(ts3d::SplitList("||"), ElementsAre("", "", ""));
}

TEST(PlainFileNames, CannotLeadOutOfTheirFolder) {
  for (const char* name :
       {"Body.cmf", "...", "a b.tga", "C:x", "-", "\xc3\xa9.xrf", "a\nb", "\x7f", "tab\t"}) {
    EXPECT_TRUE(ts3d::IsPlainFileName(name)) << name;
  }
  for (const char* name : {"", ".", "..", "a/b", "../x", "a\\b", "/etc"}) {
    EXPECT_FALSE(ts3d::IsPlainFileName(name)) << name;
  }
  EXPECT_FALSE(ts3d::IsPlainFileName(std::string_view("a\0b", 3)));
}

}  // namespace
