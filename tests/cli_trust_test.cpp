// SPDX-License-Identifier: MIT
//
// What models, names and folders of strangers can make the tool say and run.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>

#include "core/visible_text.h"
#include "support/character.h"
#include "support/tool.h"

namespace {

namespace fs = std::filesystem;
using support::Tool;

TEST(VisibleText, ShowsWhatCommandsTerminalsAndTurnsText) {
  const std::pair<const char*, const char*> cases[] = {
      {"Haut\xc3\xa4 \xf0\x9f\x90\x88 \xe9", "Haut\xc3\xa4 \xf0\x9f\x90\x88 \xe9"},
      {"\x1b[2J\x7f\n", "\\u001b[2J\\u007f\\u000a"},
      {"\xc2\x9b|\x9b|\xc2", "\\u009b|\\u009b|\xc2"},
      {"\xe2\x80\xae\xe2\x81\xa6\xd8\x9c\xe2\x80\xa8", "\\u202e\\u2066\\u061c\\u2028"}};
  for (const auto& [text, visible] : cases) EXPECT_EQ(ts3d::VisibleText(text), visible);
  EXPECT_EQ(ts3d::VisibleLines("{\n\"\x7f\"}"), "{\n\"\\u007f\"}");
}

TEST_F(Tool, NamesAreShownByEveryCommandAndCommandNoTerminal) {
  const std::string stem =
      "a\xc2\x9b"
      "31m\xe2\x80\xae";
  CopySample(stem + ".fbx");
  const std::string model = "'" + stem + ".fbx' ", package = "'" + stem + ".czp' ";
  for (const std::string& command :
       {"check " + model, "check --json " + model, "convert -v " + model,
        "convert --report r.json " + model + model, "finish " + model, "inspect " + package,
        "inspect --json " + package, "repack " + package, "export " + package + "-o '" + stem + ".glb'",
        "preview " + package + "-o '" + stem + ".png'", "convert '" + stem + ".none'"}) {
    Run(command);
    const std::string all = output_ + errors_;
    EXPECT_EQ(all.find('\x9b'), std::string::npos) << command;
    EXPECT_EQ(all.find("\xe2\x80\xae"), std::string::npos) << command;
    const bool tellsNothing = command.starts_with("preview");
    EXPECT_TRUE(tellsNothing || all.find("a\\u009b31m\\u202e") != std::string::npos) << command << all;
  }
}

TEST_F(Tool, ConvertWarnsOfNamesThatMakeTheDocumentUnreadable) {
  support::Character model;
  model.Triangle("R&D");
  folder_.Write("hero.fbx", model.Text());
  EXPECT_EQ(Run("convert -q hero.fbx"), 0) << errors_;
  EXPECT_TRUE(Printed("warning: the document cannot be read, as names contain &, < or \": \"R&D\""))
      << errors_;
}

TEST_F(Tool, PluginsAreNamedLeftOutAndTakenFromSafeFoldersOnly) {
  fs::create_directory(folder_.Path("bin"));
  program_ = folder_.Path("bin/fbx2czp");
  fs::copy_file(FBX2CZP_PATH, program_);
  fs::copy_file(TEST_PLUGIN_FOLDER "/reader_plugin.so", folder_.Path("bin/reader.so"));
  folder_.Write("hero.fbx", "PLUGIN");
  const std::string asked = "Please enter password:";
  EXPECT_EQ(Run("convert -v hero.fbx </dev/null"), 2);
  EXPECT_NE(output_.find(asked), std::string::npos) << output_;
  EXPECT_TRUE(Printed("Loaded Plug-in: ") && Printed("/reader.so\n")) << errors_;
  for (const char* command : {"convert", "check", "preview -o p.png"}) {
    EXPECT_EQ(Run(std::string(command) + " --no-plugins hero.fbx </dev/null"), 2);
    EXPECT_EQ((output_ + errors_).find("assword"), std::string::npos) << command;
  }
  for (const char* unsafe : {"bin/reader.so", "bin"}) {
    fs::permissions(folder_.Path(unsafe), fs::perms::group_write, fs::perm_options::add);
    EXPECT_EQ(Run("convert hero.fbx </dev/null"), 2);
    EXPECT_EQ(output_.find(asked), std::string::npos) << unsafe;
    fs::permissions(folder_.Path(unsafe), fs::perms::group_write, fs::perm_options::remove);
  }
  // Nobody ever answers the question.
  ASSERT_EQ(mkfifo(folder_.Path("nobody").c_str(), 0600), 0);
  program_ = "timeout' '-s' 'TERM' '-k' '30' '0.5' '" + program_;
  const auto begin = std::chrono::steady_clock::now();
  Run("convert hero.fbx <>nobody");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20)) << "SIGTERM does not end it";
}

}  // namespace
