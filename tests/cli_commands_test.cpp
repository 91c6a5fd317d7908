// SPDX-License-Identifier: MIT
//
// The command-line tool as a person or a script runs it.
#include <algorithm>
#include <cstring>

#include "support/character.h"
#include "support/package_reader.h"
#include "support/tool.h"

namespace {

namespace fs = std::filesystem;
using support::Package;
using support::ReadWholeFile;
using support::Tool;

TEST_F(Tool, AWrongCommandLineIsToldInOneLineAndHasItsOwnExitStatus) {
  for (const char* arguments :
       {"konvert a.czq", "convert", "convert a.fbx --mesh-mode 3", "convert a.fbx --rename Bone",
        "convert a.fbx --scal 3", "convert a.fbx --mesh 'a|b'", "finish", "repack"}) {
    EXPECT_EQ(Run(arguments), 64) << arguments;
    EXPECT_EQ(std::count(errors_.begin(), errors_.end(), '\n'), 1) << errors_;
    EXPECT_TRUE(errors_.starts_with("fbx2czp: error: ")) << errors_;
  }
}

TEST_F(Tool, SlipsAreUnderstoodOrToldWithTheNearestWord) {
  for (const char* arguments : {"", "help", "-h"}) {
    EXPECT_EQ(Run(arguments), 0) << errors_;
    EXPECT_NE(output_.find("\nSubcommands:\n"), std::string::npos) << output_;
  }
  EXPECT_EQ(Run("help preview"), 0);
  EXPECT_NE(output_.find("--turntable"), std::string::npos) << output_;
  EXPECT_EQ(Run("-V"), 0);
  EXPECT_TRUE(output_.starts_with("fbx2czp ")) << output_;
  const std::pair<const char*, const char*> slips[] = {
      {"chekc x", "no command \"chekc\"; the nearest one is \"check\""},
      {"help chekc", "the nearest one is \"check\""},
      {"preview a.czp -o a.png --turntabel=3",
       "\"preview\" has no option \"--turntabel\"; the nearest one is \"--turntable\""},
      {"--jbos 3", "the command comes first"},
      {"export a.czp -o a.stl", ".gltf (separate files)"},
      {"convert a.fbx -o a.xfg", "ends in .czp"}};
  for (const auto& [arguments, told] : slips) {
    EXPECT_EQ(Run(arguments), 64) << arguments;
    EXPECT_TRUE(Printed(told)) << arguments << ": " << errors_;
  }
  CopySample("a/hero.fbx");
  CopySample("b.FBX");
  EXPECT_EQ(Run("a b.FBX"), 0) << errors_;
  EXPECT_EQ(Run("-q b.FBX -o out/villain.czp"), 0) << errors_;
  EXPECT_EQ(Files("a") + "; " + Files("out"), "hero.czp hero.fbx hero.xfg; villain.czp villain.xfg");
  const Package package(folder_.Path("out/villain.czp"));
  EXPECT_NE(package["villain.xfg"].find("<object_id>villain<"), std::string::npos);
  EXPECT_EQ(Run("a b.FBX -o one.czp"), 64);
  EXPECT_EQ(Run("export b.czp -o 'b c.gltf'"), 0) << errors_;
  EXPECT_NE(ReadWholeFile(folder_.Path("b c.gltf")).find("\"uri\": \"b%20c.bin\""), std::string::npos);
  EXPECT_EQ(Files(), "a b c.bin b c.gltf b.FBX b.czp b.xfg out");
}

TEST_F(Tool, HelpTellsEveryExitCode) {
  EXPECT_EQ(Run("convert --help"), 0);
  for (const char* line : {"    0  ", "    1  ", "    2  ", "    3  ", "    4  ", "    5  ", "    6  ",
                           "    7  ", "    8  ", "   64  ", "   66  ", "  130  ", "  143  "}) {
    EXPECT_NE(output_.find(line), std::string::npos) << line;
  }
}

TEST_F(Tool, ConvertLeavesPackageAndDocumentBesideTheModelAndNothingElse) {
  CopySample("models/scout.fbx");
  EXPECT_EQ(Run("convert models/scout.fbx"), 0) << errors_;
  EXPECT_EQ(Files("models"), "scout.czp scout.fbx scout.xfg");
  EXPECT_TRUE(output_.ends_with(" bytes\n  beside it: scout.xfg\n")) << output_;
  EXPECT_FALSE(Printed("CZP") || Printed(">>>")) << "the engine's own lines: " << errors_;
  EXPECT_EQ(Run("convert models/scout.fbx -v"), 0) << errors_;
  EXPECT_TRUE(Printed("Successfully created CZP File\n"));
}

TEST_F(Tool, ConvertIntoAFolderTouchesNothingBesideTheModel) {
  CopySample("Actor (Male)/scout.fbx");
  folder_.Write("Actor (Male)/cloth.tga", "not looked into");
  EXPECT_EQ(Run("convert 'Actor (Male)/scout.fbx' -q -o packages/new"), 0) << errors_;
  EXPECT_EQ(Files("Actor (Male)"), "cloth.tga scout.fbx");
  EXPECT_EQ(Files("packages/new"), "scout.czp scout.xfg");
  const Package package(folder_.Path("packages/new/scout.czp"));
  EXPECT_EQ(package["cloth.tga"], "not looked into");
  // The folder of the model decides on the actor type, not that of the work files.
  EXPECT_NE(package["scout.xfg"].find("<object_id>actor (male)</object_id>"), std::string::npos);
}

TEST_F(Tool, PackagesAreNamedByTheStemOfEveryModelName) {
  for (const char* name : {"a", "hero", "hero.fbx7", "pose.2", "x.obj"}) {
    CopySample(name);
    const std::string package = std::filesystem::path(name).stem().string() + ".czp";
    EXPECT_EQ(Run("convert -q -o out " + std::string(name)), 0) << errors_;
    EXPECT_EQ(Files("out"), package + " " + std::filesystem::path(name).stem().string() + ".xfg");
    EXPECT_EQ(Run("finish -q out/" + std::string(name)), 0) << errors_;
    std::filesystem::remove_all(folder_.Path("out"));
  }
  EXPECT_EQ(Files(), "a hero hero.fbx7 pose.2 x.obj");
}

TEST_F(Tool, AModelThatFailsDoesNotStopTheOthersAndLeavesNothing) {
  CopySample("good.fbx");
  folder_.Write("text.fbx", "no model\n");
  folder_.Write("empty.fbx", "; FBX 7.5.0 project file\nObjects: {\n}\nConnections: {\n}\n");
  EXPECT_EQ(Run("convert missing.fbx text.fbx empty.fbx good.fbx -q"), 66);
  EXPECT_EQ(Files(), "empty.fbx good.czp good.fbx good.xfg text.fbx");
  EXPECT_TRUE(Printed("fbx2czp: missing.fbx: error: the file does not exist\n"));
  EXPECT_TRUE(Printed("text.fbx: error: the model cannot be loaded: the file is of no format that is read"));
  EXPECT_TRUE(Printed("fbx2czp: empty.fbx: error: The model has no mesh with points, "));
  EXPECT_EQ(Run("convert empty.fbx good.fbx -q"), 5);
  CopySample("sub\\x.fbx");
  for (const char* beside : {"", " good.fbx"}) {
    EXPECT_EQ(Run("convert -q 'sub\\x.fbx'" + std::string(beside)), 2);
    EXPECT_TRUE(Printed("a path with a backslash cannot be converted")) << errors_;
  }
}

TEST_F(Tool, WhatIsMissingOrSomethingElseIsToldAlikeByEveryCommand) {
  for (const char* command :
       {"convert", "check", "preview -o a.png", "inspect", "export -o a.glb", "repack", "finish",
        "check --textures none", "convert --textures none", "finish x.fbx --settings"}) {
    EXPECT_EQ(Run(std::string(command) + " missing.fbx"), 66) << command;
  }
  using namespace std::string_literals;
  const std::pair<std::string, const char*> kinds[] = {
      {"version https://git-lfs.github.com/spec/v1\noid sha256:4d7a\n", "git lfs pull"},
      {"glTF\2\0\0\0"s, "glTF file"},
      {"{ \"scene\": 0, \"asset\": {} }", "glTF file"},
      {"BLENDER-v300", "Blender file"},
      {"\0\x10[MeshSerializer_v1.8]\n"s, "Ogre mesh"},
      {"\x1f\x8b\x08", "gunzip"},
      {"\n<!DOCTYPE html><html>", "web page"},
      {std::string(5000, '\0'), "zeros"},
      {"", "empty"}};
  for (const auto& [bytes, told] : kinds) {
    folder_.Write("hero.fbx", bytes);
    for (const char* command :
         {"convert", "check", "preview -o a.png", "inspect", "export -o a.glb", "repack"}) {
      EXPECT_EQ(Run(std::string(command) + " hero.fbx"), 2) << command;
      EXPECT_NE((errors_ + output_).find(told), std::string::npos) << command << ": " << errors_ << output_;
      EXPECT_EQ((errors_ + output_).find("Fbx"), std::string::npos) << errors_ << output_;
    }
  }
  EXPECT_EQ(Files(), "hero.fbx");
  CopySample("scout.fbx");
  EXPECT_EQ(Run("convert scout.fbx -q --strict"), 1) << "its pictures are missing";
  EXPECT_EQ(output_, "");
  EXPECT_TRUE(Printed("warning: ")) << errors_;
  EXPECT_EQ(Run("export --strict scout.czp -o a.glb"), 0) << errors_;
  fs::rename(folder_.Path("scout.czp"), folder_.Path("x.fbx"));
  EXPECT_EQ(Run("convert x.fbx"), 2);
  EXPECT_TRUE(Printed("this is a package already")) << errors_;
}

TEST_F(Tool, ArraysThatCannotBeUnpackedAreToldByTheirOwners) {
  const std::pair<std::string, std::string> cases[] = {
      {"Weights", "\"Weights\" of bone \"hip\" in mesh \"strip\""},
      {"UV", "\"UV\" of mesh \"strip\""},
      {"Vertices", "\"Vertices\" of mesh \"strip\""}};
  for (const auto& [array, told] : cases) {
    std::string model = ReadWholeFile(TS3D_SOURCE_FOLDER "/tests/fixtures/strip_7500_binary.fbx");
    constexpr size_t kHead = 1 + 12 + 2;  // type code, three lengths, head of the stream
    const size_t stream = model.find(array + "d") + array.size() + kHead;
    model.replace(stream, 4, "\xff\xff\xff\xff");
    folder_.Write("strip.fbx", model);
    EXPECT_EQ(Run("convert strip.fbx -q --report report.json"), array == "Vertices" ? 5 : 0) << errors_;
    EXPECT_TRUE(Printed("warning: the file is damaged: " + told + " cannot")) << errors_;
    const std::string report = ReadWholeFile(folder_.Path("report.json"));
    EXPECT_NE(report.find(">>> Damaged: "), std::string::npos) << report;
    EXPECT_EQ(Run("check strip.fbx"), array == "Vertices" ? 5 : 1);
    EXPECT_NE(output_.find("[damaged-array]"), std::string::npos) << output_;
  }
}

TEST_F(Tool, OptionsReachTheDocument) {
  CopySample("scout.fbx");
  EXPECT_EQ(
      Run("convert scout.fbx -q --rotation-x -90 --rotation-y 180 --rename 'L_femur=left femur' --rename "
          "headcontrol=hc --double-sided HAT --exclude backpack"),
      0)
      << errors_;
  const std::string document = ReadWholeFile(folder_.Path("scout.xfg"));
  for (const char* line :
       {"\t<rotation x=\"-90\" y=\"180\"/>\n", "\t<bone_rename old=\"L_femur\" new=\"left femur\"/>\n",
        "\t<bone_rename old=\"headcontrol\" new=\"!hc\"/>\n",
        "\t<mesh name=\"hat\" file=\"hat.cmf\" backfacing=\"both\"/>\n"}) {
    EXPECT_NE(document.find(line), std::string::npos) << line;
  }
  EXPECT_EQ(document.find("name=\"backpack\""), std::string::npos);
}

TEST_F(Tool, FinishKeepsTheDocumentAndRepackDropsTheOldOnes) {
  CopySample("scout.fbx");
  ASSERT_EQ(Run("convert scout.fbx -q"), 0);
  folder_.Write(
      "s.json",
      R"({"scale": 50, "rotation": {"y": 7}, "meshes": {"body": "Skin"}, "switch_off": {"hat": "<Cap>"}})");
  EXPECT_EQ(Run("finish scout.fbx --settings s.json --rotation-x 3 --rename 'L_femur=\"<&>\"'"), 0)
      << errors_;
  EXPECT_EQ(Run("finish scout.fbx --scale 200"), 0) << errors_;
  const std::string document = ReadWholeFile(folder_.Path("scout.xfg"));
  EXPECT_NE(document.find("<scale>2.000000</scale>"), std::string::npos);
  EXPECT_NE(document.find("<material_file name=\"Skin\" threadID=\"151\">"), std::string::npos);
  const Package grown(folder_.Path("scout.czp"));
  EXPECT_EQ(grown.Count("scout.xfg"), 3u);

  EXPECT_EQ(Run("repack scout.czp"), 0) << errors_;
  const Package repacked(folder_.Path("scout.czp"));
  EXPECT_EQ(repacked.Count("scout.xfg"), 1u);
  EXPECT_EQ(repacked["scout.xfg"], document);
  EXPECT_EQ(repacked.Members().size(), grown.Members().size() - 2);
  for (const auto& member : repacked.Members()) EXPECT_EQ(member.bytes, grown[member.name]) << member.name;

  // Anew at another level: the bytes depend on what is packed and the level alone.
  const std::string usual = ReadWholeFile(folder_.Path("scout.czp"));
  std::vector<std::string> packages;
  for (const char* level : {"small", "fast", "default", "small"}) {
    EXPECT_EQ(Run("repack scout.czp --pack " + std::string(level)), 0) << errors_;
    packages.push_back(ReadWholeFile(folder_.Path("scout.czp")));
    const Package packed(folder_.Path("scout.czp"));
    EXPECT_EQ(packed.Members(), repacked.Members());
  }
  EXPECT_LT(packages[0].size(), usual.size());
  EXPECT_GT(packages[1].size(), usual.size());
  EXPECT_EQ(packages[2], usual) << "as a conversion packs them";
  EXPECT_EQ(packages[3], packages[0]);
  EXPECT_EQ(Files(), "s.json scout.czp scout.fbx scout.xfg");
  // An XML parser finds the meshes of the settings, and all others.
  EXPECT_EQ(Run("inspect scout.czp"), 1) << "it has no pictures";
  EXPECT_EQ(output_.find("is not named by the document"), std::string::npos) << output_;
}

/// The list of files in the archive `bytes`, as the offset of each entry.
std::vector<size_t> DirectoryEntries(const std::string& bytes) {
  std::vector<size_t> entries;
  const char kEntry[] = "PK\1\2";
  for (size_t at = bytes.find(kEntry); at != std::string::npos; at = bytes.find(kEntry, at + 4)) {
    entries.push_back(at);
  }
  return entries;
}

TEST_F(Tool, RepackRefusesPackagesThatGrowOrHoldNamesWithZeroBytes) {
  CopySample("scout.fbx");
  ASSERT_EQ(Run("convert scout.fbx -q"), 0);
  const std::string sound = ReadWholeFile(folder_.Path("scout.czp"));
  std::string overlapping = sound, withZero = sound;
  withZero[sound.rfind("scout.xfg") + 2] = '\0';
  // Everything from the checksum to the sizes, and the place, are those of the largest file.
  const std::vector<size_t> entries = DirectoryEntries(sound);
  const auto packedSize = [&](size_t entry) {
    uint32_t size = 0;
    std::memcpy(&size, &sound[entry + 20], sizeof size);
    return size;
  };
  const size_t largest = *std::max_element(entries.begin(), entries.end(),
                                           [&](size_t a, size_t b) { return packedSize(a) < packedSize(b); });
  for (const size_t entry : entries) {
    overlapping.replace(entry + 16, 12, sound, largest + 16, 12);
    overlapping.replace(entry + 42, 4, sound, largest + 42, 4);
  }
  const std::pair<std::string, const char*> cases[] = {{overlapping, "its files overlap"},
                                                       {withZero, "holds a zero byte"}};
  for (const auto& [bytes, reason] : cases) {
    folder_.Write("scout.czp", bytes);
    EXPECT_EQ(Run("repack scout.czp"), 2);
    EXPECT_TRUE(Printed(reason)) << errors_;
    EXPECT_EQ(ReadWholeFile(folder_.Path("scout.czp")), bytes);
  }
  EXPECT_EQ(Files(), "scout.czp scout.fbx scout.xfg");
}

TEST_F(Tool, ConvertWithFinalSettingsKnowsTheSkeletonAndTheActorType) {
  CopySample("Actor (Girl).fbx");
  folder_.Write("s.json", R"({"renames": {"L_femur": "left femur"}})");
  ASSERT_EQ(Run("convert 'Actor (Girl).fbx' -q -o out --finish-settings s.json"), 0) << errors_;
  const std::string document = ReadWholeFile(folder_.Path("out/Actor (Girl).xfg"));
  EXPECT_NE(document.find("\t<bone_rename old=\"headcontrol\" new=\"head control\"/>\n"), std::string::npos);
  EXPECT_NE(document.find("<glance_adjust>-17</glance_adjust>\n"), std::string::npos);
  EXPECT_EQ(Package(folder_.Path("out/Actor (Girl).czp"))["Actor (Girl).xfg"], document);
}

TEST_F(Tool, FinishKeepsWhatItIsNotAskedToChangeAndAddsNothingTwice) {
  CopySample("Actor (Girl).fbx");
  const auto document = [&] { return ReadWholeFile(folder_.Path("Actor (Girl).xfg")); };
  const auto count = [&](std::string_view part) {
    size_t found = 0, at = 0;
    for (const std::string text = document(); (at = text.find(part, at)) != std::string::npos; ++at) ++found;
    return found;
  };
  folder_.Write("s.json", R"({"scale": 95, "meshes": {"Body": "Skin"}, "switch_on": {"HAT": "Cap"},
                              "renames": {"l_FEMUR": "thigh"}})");
  const std::string convert = "convert 'Actor (Girl).fbx' -q --double-sided hat --rotation-y 9 ";
  ASSERT_EQ(Run(convert + "--finish-settings s.json"), 0) << errors_;
  const std::string atOnce = document();
  ASSERT_EQ(Run(convert), 0) << errors_;
  const size_t meshes = count("<mesh name=");
  EXPECT_EQ(Run("finish 'Actor (Girl).fbx' -q --settings s.json --switch-off Hut=x --rename L_femu=y"), 0);
  EXPECT_TRUE(Printed("final mesh Hut: no mesh has this name; the nearest names are \"hat\"")) << errors_;
  EXPECT_TRUE(Printed("final rename L_femu: no bone has this name; the nearest names are \"L_femur\""));
  EXPECT_EQ(document(), atOnce);
  EXPECT_EQ(count("<mesh name="), meshes);
  EXPECT_EQ(count("file=\"hat.cmf\" backfacing=\"both\""), 1u);
  EXPECT_EQ(count("<rotation x=\"0\" y=\"9\"/>") + count("<glance_adjust>") + count("<switches>"), 3u);
  EXPECT_TRUE(Printed("warning: \"body.xrf\" names the picture \"cloth.tga\", which is not in the package"));

  for (const char* repack : {"finish", "repack"}) {
    EXPECT_EQ(Run(std::string(repack) + " 'Actor (Girl).czp'"), 0) << errors_;
    EXPECT_EQ(Run("finish 'Actor (Girl).fbx' -q"), 0) << errors_;
    EXPECT_EQ(document(), atOnce) << repack;
  }
  folder_.Write("Actor (Girl).xfg", "by hand");
  EXPECT_EQ(Run("finish 'Actor (Girl).fbx' -q --mesh hat=Hood"), 0);
  EXPECT_TRUE(Printed("this one is kept as Actor (Girl).xfg.before")) << errors_;
  EXPECT_EQ(ReadWholeFile(folder_.Path("Actor (Girl).xfg.before")), "by hand");
  EXPECT_EQ(count("<switch name=\"Cap\">") + count("name=\"Hood\""), 1u);
}

TEST_F(Tool, PackagesOfOthersAreReplacedOnRequestOnly) {
  CopySample("scout.fbx");
  ASSERT_EQ(Run("convert scout.fbx -q"), 0);
  ASSERT_EQ(Run("finish scout.fbx -q"), 0);
  EXPECT_EQ(Run("convert scout.fbx -q"), 0) << "a finished package is ours: " << errors_;
  const std::string ours = ReadWholeFile(folder_.Path("scout.czp"));
  std::string extended = ours;
  for (size_t at = 0; (at = extended.find("hat.cmf", at)) != std::string::npos;)
    extended.replace(at, 7, "hat.caf");
  for (const std::string& bytes : {std::string("my notes"), std::string(), extended}) {
    folder_.Write("scout.czp", bytes);
    EXPECT_EQ(Run("convert scout.fbx -q"), 3);
    EXPECT_EQ(Run("convert scout.fbx -q --report r.json"), 3);
    EXPECT_TRUE(Printed("scout.czp is not by fbx2czp and stays: it ")) << errors_;
    EXPECT_EQ(ReadWholeFile(folder_.Path("scout.czp")), bytes);
    EXPECT_EQ(Run("convert scout.fbx -q --force"), 0) << errors_;
  }
  EXPECT_EQ(ReadWholeFile(folder_.Path("scout.czp")).size(), ours.size());
  const std::pair<const char*, const char*> others[] = {{"scout.xfg", "its document is another's"},
                                                        {"hat.cmf", "it has no document"}};
  for (const auto& [member, told] : others) {
    const std::string write = "import zipfile; zipfile.ZipFile(\"scout.czp\", \"w\").writestr(\"" +
                              std::string(member) + "\", \"<cal_config>\")";
    ASSERT_EQ(std::system(("cd '" + folder_.Path() + "' && python3 -c '" + write + "'").c_str()), 0);
    EXPECT_EQ(Run("convert scout.fbx -q"), 3) << member;
    EXPECT_TRUE(Printed(told)) << errors_;
  }
}

TEST_F(Tool, NothingIsNoResultAndSidesAreAskedForByName) {
  CopySample("scout.fbx");
  EXPECT_EQ(Run("convert scout.fbx -q --exclude body --exclude head --exclude HAT --exclude backpack"), 5);
  EXPECT_TRUE(Printed("all meshes are left out")) << errors_;
  EXPECT_EQ(Run("convert scout.fbx -q --mesh hat"), 64);
  EXPECT_TRUE(Printed("use --inward NAME")) << errors_;
  EXPECT_EQ(Run("convert scout.fbx -q --mesh-mode 2"), 64);
  EXPECT_EQ(Run("convert scout.fbx -q --inward hat --outward HAT"), 64);
  EXPECT_EQ(Files(), "scout.fbx");
  const auto convert = [&](const std::string& options) {
    EXPECT_EQ(Run("convert scout.fbx -q " + options), 0) << errors_;
    const Package package(folder_.Path("scout.czp"));
    return std::pair(package["hat.cmf"], package["body.cmf"]);
  };
  const auto plain = convert(""), inward = convert("--inward Hat"), all = convert("--mesh-mode 1");
  EXPECT_TRUE(inward.first != plain.first && inward.second == plain.second);
  EXPECT_EQ(inward.first, all.first);
  EXPECT_EQ(convert("--outward hat"), plain);
  EXPECT_EQ(convert("--outward hat --mesh-mode 1"), std::pair(plain.first, all.second));
  EXPECT_EQ(convert("--double-sided hat"), plain) << "the sides are the document's";
  EXPECT_EQ(convert("--double-sided hat --inward hat"), inward);
}

TEST_F(Tool, DamagedSettingsAndPackagesAreNamed) {
  CopySample("scout.fbx");
  folder_.Write("s.json", "{\"scale\": }");
  EXPECT_EQ(Run("convert scout.fbx --finish-settings s.json"), 64);
  EXPECT_TRUE(Printed("fbx2czp: error: s.json: ")) << errors_;
  const std::pair<const char*, const char*> mistyped[] = {
      {R"({"swich_on": {"hat": "Cap"}})",
       "the key \"swich_on\" in the file is not known; the nearest one is \"switch_on\""},
      {R"({"rotation": {"z": 1}})", "the key \"z\" in \"rotation\" is not known"},
      {R"({"meshes": ["hat"]})", "\"meshes\" is not of the form"},
      {R"({"scale": 1e300})", "the scale is not a number"},
      {R"({"rotation": {"x": 4294967297}})", "4294967297 is not a whole number"},
      {R"({"rotation": {"y": 1.5}})", "1.5 is not a whole number"},
      {R"({"renames": {"a\u0000b": "c"}})", "\"a\\u0000b=c\" holds a zero byte"}};
  for (const auto& [settings, problem] : mistyped) {
    folder_.Write("s.json", settings);
    EXPECT_EQ(Run("convert scout.fbx --finish-settings s.json"), 64);
    EXPECT_TRUE(Printed("fbx2czp: error: s.json: " + std::string(problem))) << errors_;
  }
  for (const char* scale : {"1e300", "1e-300", "nan"}) {
    EXPECT_EQ(Run("finish scout.fbx --scale " + std::string(scale)), 64) << scale;
  }
  EXPECT_EQ(Run("finish scout.fbx"), 66);
  folder_.Write("broken.czp", "PK no zip at all");
  EXPECT_EQ(Run("repack broken.czp"), 2);
  EXPECT_EQ(ReadWholeFile(folder_.Path("broken.czp")), "PK no zip at all");
  EXPECT_EQ(Files(), "broken.czp s.json scout.fbx");
}

TEST_F(Tool, TheNearestSettingsFileHoldsAndTheCommandLineHasTheLastWord) {
  CopySample("cast/hero.fbx");
  CopySample("cast/props/Lamp.fbx");
  folder_.Write("fbx2czp.json", R"({"exclude": ["hat"]})");
  folder_.Write("cast/fbx2czp.json", R"({"exclude": "backpack", "rotation": {"x": 3, "y": 9}, "pack": "small",
    "renames": {"L_femur": "left femur", "R_femur": "right femur"}, "final": {"scale": 50},
    "models": {"HERO.*": {"actor_type": "girl", "rotation": {"y": 8}}, "props/?amp.fbx": {"exclude": ["hat"]}}})");
  ASSERT_EQ(Run("convert -q cast -o out --rotation-x 4 --rename L_femur=thigh"), 0) << errors_;
  const std::string hero = ReadWholeFile(folder_.Path("out/hero.xfg")),
                    lamp = ReadWholeFile(folder_.Path("out/props/Lamp.xfg"));
  for (const char* part :
       {"<object_id>actor (girl)<", "<rotation x=\"4\" y=\"8\"/>", "old=\"L_femur\" new=\"thigh\"",
        "old=\"R_femur\" new=\"right femur\"", "<scale>0.500000<", "name=\"hat\""})
    EXPECT_NE(hero.find(part), std::string::npos) << part << hero;
  EXPECT_NE(lamp.find("<rotation x=\"4\" y=\"9\"/>"), std::string::npos);
  EXPECT_EQ(hero.find("name=\"backpack\""), std::string::npos);
  EXPECT_EQ(lamp.find("name=\"hat\""), std::string::npos);

  EXPECT_EQ(Run("settings cast/hero.fbx"), 0);
  for (const char* line :
       {"cast/fbx2czp.json\n", "actor_type      \"girl\"", "models \"HERO.*\"\n", "max_texture     8192"})
    EXPECT_NE(output_.find(line), std::string::npos) << line << output_;
  EXPECT_EQ(Run("settings cast --json --settings fbx2czp.json"), 0);
  Run("check cast/hero.fbx");
  EXPECT_NE(output_.find("with the name \"actor (girl)\""), std::string::npos) << output_;
  EXPECT_EQ(Run("prove --json --poses 0 cast/hero.fbx"), 0);
  EXPECT_NE(output_.find("\"hat\""), std::string::npos) << output_;
  EXPECT_EQ(output_.find("\"backpack\""), std::string::npos) << output_;
  folder_.Write("cast/fbx2czp.json", R"({"models": {"hero.fbx": {"exclud": "x"}}})");
  EXPECT_EQ(Run("convert -q cast/hero.fbx"), 64);
  EXPECT_TRUE(
      Printed("the key \"exclud\" in the section \"hero.fbx\" is not known; the nearest one is \"exclude\""));
  EXPECT_EQ(Run("settings cast/hero.fbx"), 64);
  EXPECT_EQ(Run("convert -q cast/hero.fbx --no-settings"), 0) << errors_;
  folder_.Write("cast/fbx2czp.json", R"({"textures": ["props", "nowhere"]})");
  EXPECT_EQ(Run("convert -q cast/hero.fbx"), 64);
  EXPECT_TRUE(Printed("\"textures\" names a folder that does not exist: ")) << errors_;
}

TEST_F(Tool, TellsItsBuildItsStepsAndWhatShellsComplete) {
  EXPECT_EQ(Run("--version --json"), 0);
  EXPECT_NE(output_.find("\"webp\""), std::string::npos) << output_;
  CopySample("a b.fbx");
  CopySample("c.FBX");
  EXPECT_EQ(Run("convert -q 'a b.fbx' c.FBX --timings"), 0);
  EXPECT_TRUE(Printed("fbx2czp: all models together: load 0.")) << errors_;
  EXPECT_EQ(Run("completion bash"), 0);
  folder_.Write("complete.sh", output_);
  const std::pair<const char*, const char*> cases[] = {{"convert --pack s", "small\n"},
                                                       {"convert ''", "a b.fbx\nc.FBX\n"},
                                                       {"inspect ''", "a b.czp\nc.czp\n"},
                                                       {"completion f", "fish\n"},
                                                       {"settings --js", "--json\n"}};
  for (const auto& [words, completed] : cases) {
    const std::string script = std::string(". ./complete.sh; COMP_WORDS=(fbx2czp ") + words +
                               "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _fbx2czp; printf \"%s\\n\" "
                               "\"${COMPREPLY[@]}\" | sort >completed";
    folder_.Write("script.sh", script);
    EXPECT_EQ(std::system(("cd '" + folder_.Path() + "' && bash script.sh").c_str()), 0);
    EXPECT_EQ(ReadWholeFile(folder_.Path("completed")), completed) << words;
  }
}

TEST_F(Tool, CompletesInFish) {
  if (std::system("command -v fish >/dev/null") != 0)
    GTEST_SKIP() << "fish is not installed: it is not tried";
  CopySample("c.FBX");
  folder_.Write("b.txt", "");
  EXPECT_EQ(Run("completion fish"), 0);
  folder_.Write("complete.fish", output_);
  for (const auto& [words, completed] : {std::pair("convert --pack s", "small\t"), {"convert ", "c.FBX\n"}}) {
    const std::string script = "HOME=. fish --no-config -c 'source complete.fish; complete -C \"fbx2czp " +
                               std::string(words) + "\"' >completed";
    EXPECT_EQ(std::system(("cd '" + folder_.Path() + "' && " + script).c_str()), 0);
    const std::string found = ReadWholeFile(folder_.Path("completed"));
    EXPECT_EQ(found.substr(0, std::string(completed).size()), completed) << found;
    EXPECT_EQ(found.find("b.txt"), std::string::npos) << found;
  }
}

TEST_F(Tool, CompletesInZsh) {
  if (std::system("command -v zsh >/dev/null") != 0) GTEST_SKIP() << "zsh is not installed: it is not tried";
  CopySample("a b.fbx");
  CopySample("c.FBX");
  folder_.Write("b.txt", "");
  EXPECT_EQ(Run("completion zsh"), 0);
  folder_.Write("_fbx2czp", output_);
  // In a terminal of its own: what the shell lists there.
  folder_.Write("try.zsh",
                "zmodload zsh/zpty; zpty z zsh -f -i\n"
                "zpty -w z \"PS1=; autoload -Uz compinit; compinit -u -D; source ./_fbx2czp; "
                "bindkey '^I' list-choices; PS1=REA; PS1+=DY\"\n"
                "zpty -r z out '*READY*'; zpty -w -n z \"fbx2czp $1\"$'\\t'\n"
                "zpty -r z out \"*$2*\"; print -r -- $out; zpty -d z\n");
  for (const auto& [words, listed] : {std::pair("convert --pack ", "default*fast*small"),
                                      {"convert ", "a? b.fbx*c.FBX"},
                                      {"con", "Convert models"}}) {
    const std::string command = "cd '" + folder_.Path() + "' && TERM=xterm timeout 60 zsh -f try.zsh '" +
                                words + "' '" + listed + "' >completed";
    EXPECT_EQ(std::system(command.c_str()), 0) << words;
    EXPECT_EQ(ReadWholeFile(folder_.Path("completed")).find("b.txt"), std::string::npos) << words;
  }
}

TEST_F(Tool, PresetsGiveTheBonesOfKnownRigsTheirProductNames) {
  struct {
    const char *preset, *bone, *name, *product;
  } const cases[] = {{"mixamo", "mixamorig7:LeftUpLeg", "mixamorigLeftUpLeg", "left femur"},
                     {"biped", "Bip001 R Forearm", "Bip001 R Forearm", "right forearm"},
                     {"rocketbox", "Bip01 L Finger12", "Bip01 L Finger12", "left index finger c"},
                     {"unreal", "Thigh_R", "Thigh_R", "right femur"}};
  for (const auto& [preset, bone, name, product] : cases) {
    support::Character model;
    const auto root = model.Bone("root");
    model.Bone("Head", root);  // no part of a rig whose names have a prefix
    model.Bone(bone, root);
    model.Bone("tail", root);
    model.Triangle("Body");
    folder_.Write("rig.fbx", model.Text());
    const std::string option = std::string(" rig.fbx --rename-preset ") + preset;
    Run("check" + option);
    EXPECT_NE(output_.find("\n  --rename \"" + std::string(name) + "=" + product + "\"\n"), std::string::npos)
        << output_;
    EXPECT_EQ(output_.find("tail="), std::string::npos) << output_;
    EXPECT_EQ(output_.find("Head=") != std::string::npos, preset == std::string("unreal")) << output_;
    const std::string line = "old=\"" + std::string(name) + "\" new=\"!";
    EXPECT_EQ(Run("convert -q" + option), 0);
    EXPECT_NE(ReadWholeFile(folder_.Path("rig.xfg")).find(line + product + "\""), std::string::npos)
        << preset;
    EXPECT_EQ(Run("convert -q --rename '" + std::string(name) + "=mine'" + option), 0);
    EXPECT_NE(ReadWholeFile(folder_.Path("rig.xfg")).find(line + "mine\""), std::string::npos) << preset;
  }
  EXPECT_EQ(Run("convert rig.fbx --rename-preset other"), 64);
}

}  // namespace
