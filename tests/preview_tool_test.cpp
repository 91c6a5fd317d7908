// SPDX-License-Identifier: MIT
//
// "fbx2czp preview" as a person or a script runs it.
#include "support/package_reader.h"
#include "support/tool.h"
#include "textures/image_reader.h"

namespace {

using support::ReadWholeFile;
using PreviewTool = support::Tool;

TEST_F(PreviewTool, TheSampleFillsItsPictureTheSameEveryTime) {
  CopySample("scout.fbx");
  ASSERT_EQ(Run("convert -q scout.fbx"), 0);
  for (const char* arguments : {"scout.czp -o a.png", "scout.czp -o b.png", "scout.fbx -o c.png"})
    ASSERT_EQ(Run(std::string("preview --size 200 --bones ") + arguments), 0) << errors_;
  const std::string png = ReadWholeFile(folder_.Path("a.png"));
  EXPECT_EQ(png, ReadWholeFile(folder_.Path("b.png")));
  EXPECT_EQ(png, ReadWholeFile(folder_.Path("c.png")));
  textures::PictureBudget budget{1000};
  const textures::Image image = textures::DecodeImage(png, budget);
  ASSERT_EQ(image.width, 200);
  ASSERT_EQ(image.height, 200);
  int top = 200, bottom = 0, drawn = 0;
  for (int i = 0; i < 200 * 200; ++i) {
    const uint8_t* const pixel = image.rgba.data() + i * 4;
    if (std::equal(pixel, pixel + 4, image.rgba.data())) continue;
    top = std::min(top, i / 200);
    bottom = std::max(bottom, i / 200);
    ++drawn;
  }
  EXPECT_NEAR(top, 8, 2);
  EXPECT_NEAR(bottom, 191, 2);
  EXPECT_GT(drawn, 200 * 200 / 8);
}

TEST_F(PreviewTool, ATurntableNumbersItsPictures) {
  CopySample("scout.fbx");
  ASSERT_EQ(Run("preview scout.fbx -o turn.png --turntable 3 --size 64 --view front --up=-y"), 0) << errors_;
  EXPECT_EQ(Files(), "scout.fbx turn_000.png turn_001.png turn_002.png");
  EXPECT_NE(ReadWholeFile(folder_.Path("turn_000.png")), ReadWholeFile(folder_.Path("turn_001.png")));
}

TEST_F(PreviewTool, WhatIsWrittenIsOpenedWhereThereIsAProgramForIt) {
  CopySample("scout.fbx");
  std::filesystem::create_directory(folder_.Path("bin"));
  folder_.Write("bin/xdg-open", "#!/bin/sh\necho \"$1\" >opened.part && mv opened.part opened\n");
  std::filesystem::permissions(folder_.Path("bin/xdg-open"), std::filesystem::perms::owner_all);
  ASSERT_EQ(Run("convert -q scout.fbx && PATH=\"$PWD/bin:$PATH\" '" + program_ +
                "' preview scout.czp --size 64 --open && until [ -e opened ]; do sleep 0.1; done"),
            0)
      << errors_;
  EXPECT_EQ(ReadWholeFile(folder_.Path("opened")), folder_.Path("scout.png") + "\n");
  EXPECT_EQ(Run("--version && PATH= '" + program_ + "' preview scout.czp --open"), 0);
  EXPECT_TRUE(Printed("scout.png: warning: there is no program here to open it with")) << errors_;
}

TEST_F(PreviewTool, WhatFailsIsNamedAndLeavesNothing) {
  folder_.Write("broken.czp", "PK no zip at all");
  folder_.Write("text.fbx", "no model\n");
  EXPECT_EQ(Run("preview broken.czp -o a.jpg"), 64);
  EXPECT_EQ(Run("preview broken.czp -o a.png --size 5000"), 64);
  EXPECT_EQ(Run("preview missing.czp -o a.png"), 66);
  EXPECT_TRUE(Printed("fbx2czp: missing.czp: error: ")) << errors_;
  EXPECT_EQ(Run("preview broken.czp -o a.png"), 2);
  EXPECT_TRUE(Printed("fbx2czp: broken.czp: error: ")) << errors_;
  EXPECT_EQ(Run("preview text.fbx -o a.png"), 2);
  EXPECT_EQ(Run("preview text.fbx -o a.html --bones"), 64);
  EXPECT_TRUE(Printed("--bones: is for .png pictures")) << errors_;
  EXPECT_EQ(Files(), "broken.czp text.fbx");
}

TEST_F(PreviewTool, APageHoldsItsActorOrTheToolSaysThatItHasNone) {
  CopySample("scout.fbx");
  const int status = Run("preview scout.fbx -o page.html");
  if (status == 64) {  // a build without the page
    EXPECT_TRUE(Printed("run scripts/prepare and build it again")) << errors_;
    EXPECT_EQ(Files(), "scout.fbx");
    return;
  }
  EXPECT_EQ(status, 0) << errors_;
  const std::string page = ReadWholeFile(folder_.Path("page.html"));
  EXPECT_EQ(page.find("ACTOR_DATA"), std::string::npos);
  EXPECT_NE(page.find("\"title\":\"scout.fbx\""), std::string::npos);
  EXPECT_NE(page.find("three.js authors"), std::string::npos) << "the library and its licence";
}

}  // namespace
