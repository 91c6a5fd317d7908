// SPDX-License-Identifier: MIT
//
// Textures on their way into a package, from the tool's side.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "preview/base64.h"
#include "support/character.h"
#include "support/package_reader.h"
#include "support/tool.h"
#include "textures/texture_search.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using support::Package;
using support::ReadWholeFile;
using testing::StartsWith;

TEST(TextureSearch, GoesFromThePathAsGivenToTheUsualFolders) {
  const support::TempFolder folder;
  for (const char* name : {"art", "models/Textures", "models/tex", "models/hero.fbm"}) {
    fs::create_directories(folder.Path(name));
  }
  for (const char* name :
       {"art/a.png", "art/e.png", "models/a.png", "models/Textures/a.png", "models/Textures/B.Png",
        "models/b.png.bak", "models/hero.fbm/b.png", "models/tex/c.png", "secret.png"}) {
    folder.Write(name, name);
  }
  fs::create_directories(folder.Path("models/d.png"));
  struct {
    std::string fileName, relativeFileName, found;
  } const cases[] = {{folder.Path("art/a.png"), "a.png", "art/a.png"},
                     {folder.Path("ART\\A.PNG"), "", "art/a.png"},
                     {"C:\\work\\a.png", "..\\art\\a.png", "models/../art/a.png"},
                     {"C:\\work\\a.png", "textures/a.png", "models/Textures/a.png"},
                     {"C:\\work\\a.png", "", "models/a.png"},
                     {"/nowhere/b.PNG", "", "models/Textures/B.Png"},
                     {"", "lost\\c.png", "models/tex/c.png"},
                     {"d.png", "", ""},
                     {"C:\\secret.png", "", ""},
                     {"", "", ""},
                     {"//models/a.png", "", "models/a.png"},
                     {"file://" + folder.Path("art/e.png"), "/" + folder.Path("art/e.png"), ""},
                     {"\\" + folder.Path("art/e.png"), "smb:e.png", ""},
                     {"/net/server/e.png", "../../../../../../../../../../net/server/e.png", ""}};
  for (const auto& [fileName, relativeFileName, found] : cases) {
    const auto search =
        textures::TextureFinder(folder.Path("models/hero.fbx")).Find(fileName, relativeFileName);
    EXPECT_EQ(search.found, found.empty() ? "" : folder.Path(found)) << fileName << " " << relativeFileName;
    for (const std::string& place : search.places) {
      if (place.find("server") == std::string::npos) continue;
      EXPECT_NE(place.find("(not opened"), std::string::npos) << place;
    }
  }
}

class ToolTextures : public support::Tool {
 protected:
  /// A model of triangles, each with a picture of its own.
  void WriteModel(const std::vector<std::string>& pictures) const {
    support::Character model;
    for (const std::string& picture : pictures) {
      const auto mesh = model.Triangle("Mesh" + picture.substr(0, 1));
      support::Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
      model.Texture(model.Material(mesh), picture);
    }
    folder_.Write("hero.fbx", model.Text());
  }
  /// A model of a triangle with this picture in its file.
  void WriteModelWithEmbedded(const std::string& picture) const {
    support::Character model;
    const auto mesh = model.Triangle("Mesh");
    support::Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
    model.Texture(model.Material(mesh), "C:\\old\\skin.png");
    model.Embed("C:\\art\\cloth.png", preview::ToBase64(picture));
    folder_.Write("hero.fbx", model.Text());
  }
  void CopyCloth(const std::string& name) const {
    fs::copy_file(TS3D_SAMPLES_FOLDER "/textures/cloth.png", folder_.Path(name));
  }
  std::string Packed(const std::string& name) const { return Package(folder_.Path("hero.czp"))[name]; }
  void SetAge(const std::string& name, std::chrono::hours age) const {
    fs::last_write_time(folder_.Path(name), fs::file_time_type::clock::now() - age);
  }
};

/// 64 x 64 pixels of 24 bits, nothing packed.
const auto kIsConverted = StartsWith(std::string("\0\0\2\0\0\0\0\0\0\0\0\0\x40\0\x40\0\x18\0", 18));

TEST(TextureSearch, KnowsTheFoldersAroundTheModelAndBelowThoseThatAreGiven) {
  const support::TempFolder folder;
  for (const char* name :
       {"a/hero/TEXTURES", "a/Materials", "a/Tex", "art/head", "art/body/old", "elsewhere"}) {
    fs::create_directories(folder.Path(name));
  }
  for (const char* name : {"a/hero/TEXTURES/a.png", "a/Materials/B.png", "a/Tex/c.png", "art/head/skin.png",
                           "art/body/skin.png", "art/body/old/Cape.PNG", "elsewhere/d.png"}) {
    folder.Write(name, name);
  }
  fs::create_directory_symlink(folder.Path("elsewhere"), folder.Path("art/link"));
  fs::create_directory_symlink(folder.Path("art"), folder.Path("art/body/loop"));
  textures::TextureFinder finder(folder.Path("a/hero/hero.fbx"), {folder.Path("art")});
  const std::pair<const char*, const char*> cases[] = {{"C:\\lost\\a.png", "a/hero/TEXTURES/a.png"},
                                                       {"C:\\lost\\b.PNG", "a/Materials/B.png"},
                                                       {"c.png", ""},
                                                       {"d:\\art\\BODY\\skin.png", "art/body/skin.png"},
                                                       {"head/skin.png", "art/head/skin.png"},
                                                       {"lost/cape.png", "art/body/old/Cape.PNG"},
                                                       {"d.png", ""}};
  for (const auto& [fileName, found] : cases) {
    EXPECT_EQ(finder.Find(fileName, {}).found, *found ? folder.Path(found) : "") << fileName;
  }
  EXPECT_THAT(finder.Find("TEXTURES\\no.png", "textures/no.png").places,
              testing::ElementsAre(folder.Path("a/hero/TEXTURES/no.png"), folder.Path("art") + " and below",
                                   folder.Path("a/hero/no.png"), folder.Path("a/Materials/no.png")));
}

TEST_F(ToolTextures, OfTheSampleAreFoundAndConverted) {
  fs::copy(TS3D_SAMPLES_FOLDER, folder_.Path("s"), fs::copy_options::recursive);
  for (const char* name : {"s/cloth.tga", "s/metal.tga"}) fs::remove(folder_.Path(name));
  ASSERT_EQ(Run("convert s/scout.fbx -q -o out"), 0);
  EXPECT_EQ(errors_, "");
  const Package package(folder_.Path("out/scout.czp"));
  for (const char* name : {"cloth.tga", "metal.tga"}) {
    EXPECT_THAT(package[name], kIsConverted) << name;
    EXPECT_FALSE(fs::exists(folder_.Path(std::string("s/") + name)));
  }
  // The lower left corner, which comes first: the sole of a boot.
  EXPECT_EQ(package["cloth.tga"].substr(18, 3), "\x19\x1d\x25");
  EXPECT_EQ(package["skin.tga"], ReadWholeFile(folder_.Path("s/skin.tga")));
}

TEST_F(ToolTextures, AreMadeAnewWhenThePictureIsNewerUnlessSomebodyElseMadeThem) {
  WriteModel({"C:\\art\\cloth.PNG"});
  CopyCloth("cloth.png");
  ASSERT_EQ(Run("convert -v hero.fbx"), 0);
  EXPECT_TRUE(Printed("Converting Texture: ")) << errors_;
  ASSERT_EQ(Run("convert -v hero.fbx"), 0);
  EXPECT_FALSE(Printed("Converting Texture: ")) << errors_;
  SetAge("cloth.tga", 2h);
  SetAge("cloth.png", 1h);
  ASSERT_EQ(Run("convert -v hero.fbx"), 0);
  EXPECT_TRUE(Printed("Converting Texture: ")) << errors_;

  ASSERT_EQ(Run("convert hero.fbx -q --max-texture 63 --max-texture-action leave-out"), 0);
  EXPECT_TRUE(Printed("texture C:\\art\\cloth.PNG is too large: 64 x 64 pixels, the limit is 63 a side\n"));
  EXPECT_EQ(Package(folder_.Path("hero.czp")).Count("cloth.tga"), 0u) << "as if it were not made yet";
  EXPECT_TRUE(fs::exists(folder_.Path("cloth.tga")));
  // Shrunk for this package alone: from the picture, and without it from what was made of it.
  const std::string whole = ReadWholeFile(folder_.Path("cloth.tga"));
  for (const char* picture : {"cloth.png", "elsewhere.png"}) {
    fs::rename(folder_.Path("cloth.png"), folder_.Path(picture));
    ASSERT_EQ(Run("convert hero.fbx --max-texture 16"), 0);
    EXPECT_TRUE(Printed("note: pictures are shrunk to 16 pixels a side: cloth.tga\n")) << errors_;
    EXPECT_EQ(Packed("cloth.tga").substr(12, 4), std::string("\x10\0\x10\0", 4)) << picture;
    EXPECT_EQ(ReadWholeFile(folder_.Path("cloth.tga")), whole) << picture;
    fs::rename(folder_.Path(picture), folder_.Path("cloth.png"));
  }

  fs::remove(folder_.Path("cloth.tga"));
  folder_.Write("original.tga", "painted by hand");
  fs::create_symlink("original.tga", folder_.Path("cloth.tga"));
  SetAge("original.tga", 2h);
  ASSERT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_TRUE(Printed("cloth.tga beside the model is packed as it is")) << errors_;
  EXPECT_EQ(Packed("cloth.tga"), "painted by hand");
  EXPECT_EQ(Files(), "cloth.png cloth.tga hero.czp hero.fbx hero.xfg original.tga");
}

TEST_F(ToolTextures, ThatCannotBeConvertedAreNamedOnceAndStopNothing) {
  WriteModel({"a\\missing.png", "damaged.png", "large.png", "text.png", "cloth.png", "tex/cloth.bmp"});
  fs::create_directories(folder_.Path("tex"));
  for (const char* name : {"large.png", "tex/cloth.bmp"}) CopyCloth(name);
  folder_.Write("damaged.png", ReadWholeFile(folder_.Path("large.png")).substr(0, 3000));
  folder_.Write("text.png", "no picture");
  folder_.Write("cloth.png", ReadWholeFile(folder_.Path("large.png")));
  EXPECT_EQ(Run("convert hero.fbx -q --max-texture 63 --max-texture-action leave-out"), 0);
  EXPECT_TRUE(Printed("texture large.png is too large: 64 x 64 pixels, the limit is 63 a side\n")) << errors_;
  EXPECT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_TRUE(Printed("texture a\\missing.png was not found; looked for " + folder_.Path("a/missing.png") +
                      ", " + folder_.Path("missing.png") + ", " + folder_.Path("textures/missing.png")));
  EXPECT_TRUE(Printed("texture damaged.png is damaged ("));
  EXPECT_TRUE(Printed("texture text.png is not a picture that can be read (PNG"));
  EXPECT_TRUE(
      Printed("texture tex/cloth.bmp is not used, as cloth.tga is made of " + folder_.Path("cloth.png")));
  EXPECT_THAT(Packed("cloth.tga"), kIsConverted);
  EXPECT_EQ(Files(),
            "cloth.png cloth.tga damaged.png hero.czp hero.fbx hero.xfg large.png large.tga tex text.png")
      << errors_;
}

TEST_F(ToolTextures, WhoseNameNamesNoFileAreLeftOut) {
  support::Character model;
  const auto mesh = model.Triangle("Mesh");
  support::Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
  model.Texture(model.Material(mesh), ".", "cloth.png");
  folder_.Write("hero.fbx", model.Text());
  folder_.Write(".tga", "left by somebody");
  CopyCloth("cloth.png");
  ASSERT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_TRUE(Printed("texture . names no file\n")) << errors_;
  EXPECT_EQ(Package(folder_.Path("hero.czp")).Count(".tga"), 0u);
}

TEST_F(ToolTextures, FromOutsideAreToldAndPipesArePassedOver) {
  const support::TempFolder outside;
  const std::string picture = outside.Path("cloth.png");
  CopyCloth("a.png");
  fs::copy_file(folder_.Path("a.png"), picture);
  WriteModel({picture, "a.png", "pipe.tga", "spout.png"});
  for (const char* name : {"pipe.tga", "spout.png", "other.tga"}) {
    ASSERT_EQ(mkfifo(folder_.Path(name).c_str(), 0600), 0);
  }
  ASSERT_EQ(Run("convert hero.fbx"), 0);
  EXPECT_TRUE(Printed("note: pictures from outside the model's folder are used: " + picture + "\n"))
      << errors_;
  EXPECT_TRUE(Printed("texture pipe.tga was not found") && Printed("texture spout.png was not found"));
  EXPECT_THAT(Packed("cloth.tga"), kIsConverted);
}

TEST_F(ToolTextures, EmbeddedInTheModelComeLast) {
  WriteModelWithEmbedded("no picture");
  ASSERT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_TRUE(Printed("texture hero.fbm\\cloth.png is not a picture that can be read")) << errors_;
  EXPECT_EQ(Run("check hero.fbx"), 0);
  EXPECT_EQ(output_.find("[texture-"), std::string::npos) << output_;
  CopyCloth("Cloth.PNG");
  ASSERT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_FALSE(Printed("warning")) << errors_;
  EXPECT_THAT(Packed("cloth.tga"), kIsConverted);
}

TEST_F(ToolTextures, EmbeddedServeWhenThePictureBesideTheModelIsNoGood) {
  CopyCloth("good.png");
  WriteModelWithEmbedded(ReadWholeFile(folder_.Path("good.png")));
  folder_.Write("cloth.png", "no picture");
  ASSERT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_TRUE(Printed("texture " + folder_.Path("cloth.png") + " is not a picture that can be read"));
  EXPECT_TRUE(Printed("; the embedded picture is used")) << errors_;
  EXPECT_THAT(Packed("cloth.tga"), kIsConverted);
}

TEST_F(ToolTextures, NamedTgaAreFoundAndUnpackedButNeverWrittenOver) {
  WriteModel({"D:/packed.tga"});
  fs::create_directories(folder_.Path("images"));
  // One run of four red pixels.
  const std::string packed("\0\0\x0a\0\0\0\0\0\0\0\0\0\2\0\2\0\x18\0\x83\0\0\xff", 22);
  folder_.Write("images/PACKED.TGA", packed);
  ASSERT_EQ(Run("convert hero.fbx -q"), 0);
  const std::string plain("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\2\0\x18\0\0\0\xff\0\0\xff\0\0\xff\0\0\xff", 30);
  EXPECT_FALSE(Printed("warning")) << errors_;
  EXPECT_THAT(Packed("packed.tga"), StartsWith(plain));

  folder_.Write("packed.tga", packed);
  ASSERT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_EQ(errors_.find("warning"), std::string::npos) << errors_;
  EXPECT_THAT(Packed("packed.tga"), StartsWith(plain));
  EXPECT_EQ(ReadWholeFile(folder_.Path("packed.tga")), packed);
}

TEST_F(ToolTextures, OfTinyFilesAreNotUnpackedWithoutEnd) {
  // 8192 x 8192 pixels that are not there; two such pictures are free.
  const std::string psd("8BPS\0\1\0\0\0\0\0\0\0\3\0\0\x20\0\0\0\x20\0\0\x08\0\3", 26);
  const std::string gif("GIF89a\0\x20\0\x20\0\0\0,\0\0\0\0\0\x20\0\x20\0\2\1\x44\0;", 28);
  WriteModel({"a.tga", "b.tga", "c.tga", "d.gif"});
  for (const char* name : {"a.tga", "b.tga", "c.tga"}) folder_.Write(name, psd);
  folder_.Write("d.gif", gif);
  EXPECT_EQ(Run("convert hero.fbx -q"), 0);
  EXPECT_TRUE(Printed("texture b.tga is damaged (the file ends too early)")) << errors_;
  const std::string refused = "c.tga is too large beside the other pictures: 8192 x 8192 pixels";
  EXPECT_TRUE(Printed("texture " + refused + "; c.tga beside the model is packed as it is")) << errors_;
  EXPECT_TRUE(Printed("texture d.gif is damaged (it holds no data for its 8192 x 8192 pixels)")) << errors_;
  for (const char* command : {"preview hero.czp -o hero.png", "export hero.czp -o hero.glb"}) {
    EXPECT_EQ(Run(command), 0);
    EXPECT_EQ(errors_.find("a.tga: warning: is too large"), std::string::npos) << errors_;
    EXPECT_TRUE(Printed("c.tga: warning: is too large beside the other pictures")) << errors_;
  }
  EXPECT_EQ(Run("check hero.fbx"), 1);
  EXPECT_NE(output_.find("c.tga cannot be converted: is too large beside"), std::string::npos) << output_;
}

TEST_F(ToolTextures, ThatAreOnePictureAreDecodedOnce) {
  support::Character model;
  for (const char* name : {"Cape", "Boots"}) {
    const auto mesh = model.Triangle(name);
    support::Character::Coordinates(mesh, {0, 0, 1, 0, 0, 1}, {0, 1, 2});
    model.Texture(model.Material(mesh), std::string("C:\\lost\\") + name + ".png", "cloth.png");
  }
  folder_.Write("hero.fbx", model.Text());
  CopyCloth("cloth.png");
  ASSERT_EQ(Run("convert hero.fbx"), 0);
  const std::string said = "Converting Texture: ";
  EXPECT_EQ(errors_.find(said), errors_.rfind(said)) << errors_;
  EXPECT_THAT(Packed("Cape.tga"), kIsConverted);
  EXPECT_EQ(Packed("Cape.tga"), Packed("Boots.tga"));

  fs::create_directories(folder_.Path("art/deep"));
  fs::rename(folder_.Path("cloth.png"), folder_.Path("art/deep/boots.png"));
  for (const char* name : {"Boots.tga", "Cape.tga"}) fs::remove(folder_.Path(name));
  EXPECT_EQ(Run("check hero.fbx --textures nowhere"), 66);
  EXPECT_EQ(Run("check hero.fbx --textures art"), 1);
  EXPECT_NE(output_.find("Cape.tga"), std::string::npos) << output_;
  EXPECT_EQ(output_.find("C:\\lost\\Boots.png"), std::string::npos) << output_;
  ASSERT_EQ(Run("convert hero.fbx -q --textures . --textures art"), 0);
  EXPECT_THAT(Packed("Boots.tga"), kIsConverted) << errors_;
}

TEST_F(ToolTextures, AreLeftBesideTheModelAloneWhereTheyServeItAgain) {
  WriteModel({"a.png"});
  CopyCloth("a.png");
  EXPECT_EQ(Run("convert -q hero.fbx -o out"), 0) << errors_;
  EXPECT_EQ(Files("out") + "; " + Files(), "hero.czp hero.xfg; a.png hero.fbx out");
  EXPECT_THAT(Package(folder_.Path("out/hero.czp"))["a.tga"], kIsConverted);
  EXPECT_EQ(Run("convert -q hero.fbx"), 0) << errors_;
  EXPECT_EQ(Files(), "a.png a.tga hero.czp hero.fbx hero.xfg out");
}

}  // namespace
