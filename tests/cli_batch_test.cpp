// SPDX-License-Identifier: MIT
//
// Many models at once, in terminals and farms.
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "support/character.h"
#include "support/package_reader.h"
#include "support/tool.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using support::ReadWholeFile;
using support::Tool;

class Batch : public Tool {
 protected:
  void MakeModels(int count) const {
    CopySample("models/m.fbx");
    for (int i = 1; i < count; ++i) {
      fs::create_hard_link(folder_.Path("models/m.fbx"),
                           folder_.Path("models/m" + std::to_string(i) + ".fbx"));
    }
  }

  /// Starts the tool in a terminal of its own. @return the terminal; `process_` is the tool
  int StartInTerminal(const std::vector<std::string>& arguments, unsigned short columns = 80) {
    int terminal = -1;
    const winsize size{24, columns, 0, 0};
    process_ = forkpty(&terminal, nullptr, nullptr, &size);
    if (process_ != 0) return terminal;
    setenv("TERM", "xterm", 1);
    std::vector<char*> words{const_cast<char*>("fbx2czp")};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    if (chdir(folder_.Path().c_str()) == 0) execv(FBX2CZP_PATH, words.data());
    _exit(127);
  }

  /// Adds what the terminal shows to `screen` until that holds `text`, or to the end.
  static void ReadUntil(int terminal, const std::string& text, std::string& screen) {
    std::array<char, 4096> chunk;
    while (text.empty() || screen.find(text) == std::string::npos) {
      const ssize_t size = read(terminal, chunk.data(), chunk.size());
      if (size <= 0) return;
      screen.append(chunk.data(), static_cast<size_t>(size));
    }
  }

  /// Reads the terminal to its end. @return the exit status
  int WatchTerminal(int terminal, std::string& screen) const {
    ReadUntil(terminal, "", screen);
    close(terminal);
    int status = 0;
    waitpid(process_, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  size_t WorkFolders() const {
    size_t count = 0;
    for (const auto& entry : fs::directory_iterator(folder_.Path("tmp")))
      count += entry.is_directory() ? 1 : 0;
    return count;
  }

  pid_t process_ = -1;
};

TEST_F(Batch, FoldersAreConvertedWithTheirSubfoldersAndReported) {
  CopySample("in/a.fbx");
  CopySample("in/deep/Actor (Boy).FBX");
  folder_.Write("in/broken.fbx", "Kaydara FBX Binary  ");
  folder_.Write("in/readme.txt", "no model");
  EXPECT_EQ(Run("convert in missing.fbx --jobs 2 -o out --report report.json"), 2);
  EXPECT_EQ(Files("out"), "a.czp a.xfg deep");
  EXPECT_EQ(Files("out/deep"), "Actor (Boy).czp Actor (Boy).xfg");
  EXPECT_TRUE(Printed("fbx2czp: in/broken.fbx: error: ")) << errors_;
  EXPECT_NE(output_.find("\nall                      2/4 "), std::string::npos) << output_;

  const Json report = Json::parse(ReadWholeFile(folder_.Path("report.json")));
  EXPECT_EQ(report["totals"]["failed"], 2);
  const Json& models = report["models"];
  ASSERT_EQ(models.size(), 4u);
  EXPECT_EQ(models[0]["model"], "in/a.fbx");
  EXPECT_EQ(models[0]["package_bytes"], fs::file_size(folder_.Path("out/a.czp")));
  const support::Package package(folder_.Path("out/a.czp"));
  ASSERT_EQ(models[0]["members"].size(), package.Members().size());
  for (size_t i = 0; i < package.Members().size(); ++i) {
    EXPECT_EQ(models[0]["members"][i]["name"], package.Members()[i].name);
    EXPECT_EQ(models[0]["members"][i]["bytes"], package.Members()[i].bytes.size());
  }
  EXPECT_EQ(models[0]["status"].back(), "Successfully created CZP File");
  EXPECT_EQ(models[1]["result"], 2);
  EXPECT_EQ(models[1]["reader_output"], "the file is of no format that is read");
  EXPECT_EQ(models[3]["result"], 66);
  EXPECT_EQ(models[3]["messages"][0]["code"], "no-file");
  EXPECT_EQ(Run("convert in/a.fbx in/broken.fbx --report - -o out"), 2);
  EXPECT_EQ(Json::parse(output_)["models"][0]["package"], folder_.Path("out/a.czp"));
  EXPECT_TRUE(Printed("\nall            1/2 ")) << errors_;
}

TEST_F(Batch, UpdateConvertsWhatIsOlderThanItsInputsAndBytesRepeat) {
  CopySample("in/a.fbx");
  CopySample("in/b.fbx");
  fs::copy(TS3D_SAMPLES_FOLDER "/textures", folder_.Path("in/textures"));
  folder_.Write("final.json", "{}");
  setenv("SOURCE_DATE_EPOCH", "1000000000", 1);
  const std::string convert = "convert -q in -o out --report r.json --finish-settings final.json ";
  const auto package = [&] { return ReadWholeFile(folder_.Path("out/a.czp")); };
  ASSERT_EQ(Run(convert), 0) << errors_;
  const std::string first = package();
  fs::last_write_time(folder_.Path("in/a.fbx"), fs::file_time_type::clock::now() - std::chrono::hours(9));
  EXPECT_EQ(Run(convert), 0);
  EXPECT_EQ(package(), first);
  unsetenv("SOURCE_DATE_EPOCH");
  Run("inspect --json out/a.czp");
  EXPECT_EQ(Json::parse(output_)["packages"][0]["members"][0]["date"], "2001-09-09 01:46");

  const auto converted = [&] {
    EXPECT_EQ(Run(convert + "--update"), 0) << errors_;
    std::string names;
    const Json report = Json::parse(ReadWholeFile(folder_.Path("r.json")));
    for (const Json& model : report["models"])
      names += model["up_to_date"] ? "" : model["model"].get<std::string>() + " ";
    return names;
  };
  const auto touch = [&](const std::string& file) {
    fs::last_write_time(folder_.Path(file), fs::file_time_type::clock::now() + std::chrono::seconds(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  };
  EXPECT_EQ(converted(), "in/a.fbx in/b.fbx ") << "nobody knows what they were made with";
  EXPECT_EQ(converted(), "");
  touch("in/b.fbx");
  EXPECT_EQ(converted(), "in/b.fbx ");
  touch("in/textures/cloth.png");
  EXPECT_EQ(converted(), "in/a.fbx in/b.fbx ");
  touch("final.json");
  fs::remove(folder_.Path("out/a.xfg"));
  EXPECT_EQ(converted(), "in/a.fbx in/b.fbx ");
  EXPECT_EQ(converted(), "");
  EXPECT_EQ(Files("out"), ".a.czp.options .b.czp.options a.czp a.xfg b.czp b.xfg");
  const auto convertedWith = [&](const std::string& options) {
    EXPECT_EQ(Run("convert -q in/a.fbx -o out --report r.json --update " + options), 0) << errors_;
    return !Json::parse(ReadWholeFile(folder_.Path("r.json")))["models"][0]["up_to_date"].get<bool>();
  };
  EXPECT_TRUE(convertedWith(""));
  EXPECT_FALSE(convertedWith("--jobs 2 --prove --strict"));
  EXPECT_TRUE(convertedWith("--unit cm"));
  EXPECT_TRUE(convertedWith("--rotation-x 3"));
  EXPECT_FALSE(convertedWith("--rotation-x 3"));
  EXPECT_TRUE(convertedWith("--rotation-x 4 --exclude hat"));
  EXPECT_TRUE(convertedWith(""));
  EXPECT_FALSE(convertedWith(""));
  EXPECT_TRUE(convertedWith("--pack fast"));
  Run("convert -q in/a.fbx -o out --pack small");
  EXPECT_TRUE(convertedWith("--pack fast")) << "somebody else's package";
  EXPECT_FALSE(convertedWith("--pack fast"));
  folder_.Write("in/fbx2czp.json", "{\"exclude\": [\"hat\"]}");
  touch("in/fbx2czp.json");
  EXPECT_TRUE(convertedWith("--pack fast")) << "other settings";
  EXPECT_EQ(ReadWholeFile(folder_.Path("out/a.xfg")).find("name=\"hat\""), std::string::npos);
}

TEST_F(Batch, WatchConvertsAgainWhatChanges) {
  CopySample("in/a.fbx");
  const int terminal = StartInTerminal({"convert", "in", "-o", "out", "--watch"});
  std::string screen;
  ReadUntil(terminal, "watching 1 model;", screen);
  screen.clear();
  support::Character other;
  other.Triangle("Body");
  fs::create_directory(folder_.Path("in/deep"));
  folder_.Write("in/deep/b.fbx", other.Text());
  ReadUntil(terminal, "out/deep/b.czp: ", screen);
  screen.clear();
  fs::create_directory(folder_.Path("in/textures"));
  fs::copy(TS3D_SAMPLES_FOLDER "/textures/cloth.png", folder_.Path("in/textures"));
  ReadUntil(terminal, "out/a.czp: ", screen);
  ASSERT_EQ(write(terminal, "\x03", 1), 1);
  EXPECT_EQ(WatchTerminal(terminal, screen), 130);
  EXPECT_NE(support::Package(folder_.Path("out/a.czp"))["cloth.tga"], "");
}

TEST_F(Batch, WarnsOfNamesThatNoneOfTheModelsHas) {
  CopySample("a.fbx");
  support::Character other;
  other.Triangle("Hair");
  other.Triangle("Hairpin");
  folder_.Write("b.fbx", other.Text());
  EXPECT_EQ(Run("convert -q a.fbx b.fbx --mesh-mode 0 --mesh HAIR --double-sided hta --exclude hat --report "
                "r.json"),
            0);
  EXPECT_FALSE(Printed("--mesh") || Printed("--exclude")) << errors_;
  EXPECT_TRUE(
      Printed("fbx2czp: warning: --double-sided hta: no mesh or material has this name; the nearest "
              "names are \"hat\", "));
  const Json models = Json::parse(ReadWholeFile(folder_.Path("r.json")))["models"];
  const Json& messages = models[1]["messages"];
  const Json hat = *std::find_if(messages.begin(), messages.end(),
                                 [](const Json& message) { return message["code"] == "unknown-name"; });
  EXPECT_EQ(hat["where"], Json({{"kind", "option"}, {"names", {"hat"}}}));
  EXPECT_TRUE(hat["message"].get<std::string>().ends_with("the nearest names are \"Hair\", \"Hairpin\""));
  // The document names bones as they are written.
  EXPECT_EQ(Run("convert -q a.fbx --rename l_Femur=thigh --rename L_tibia=shin"), 0);
  EXPECT_TRUE(
      Printed("fbx2czp: a.fbx: warning: --rename l_Femur: no bone has this name; the nearest names "
              "are \"L_femur\""))
      << errors_;
  EXPECT_FALSE(Printed("L_tibia:")) << errors_;
  // Only whole meshes can have inward normals.
  EXPECT_EQ(Run("convert -q b.fbx --inward hairpin --inward Hairpin_a"), 0);
  EXPECT_TRUE(Printed("fbx2czp: b.fbx: warning: --inward Hairpin_a: no mesh has this name;")) << errors_;
}

TEST_F(Batch, ListsKeepFoldersAndMayBeEmpty) {
  CopySample("cast/hero.fbx");
  CopySample("cast/old/hero.fbx");
  folder_.Write("list", "cast/hero.fbx\r\n\n" + folder_.Path("cast/old/hero.fbx") + "\r\ncast/hero.fbx");
  EXPECT_EQ(Run("convert -q --files-from list --base cast -o out"), 0) << errors_;
  EXPECT_EQ(Files("out") + " " + Files("out/old"), "hero.czp hero.xfg old hero.czp hero.xfg");
  EXPECT_EQ(Run("convert -q --files-from - -o two <list"), 0) << errors_;
  EXPECT_EQ(Files("two/cast/old"), "hero.czp hero.xfg");
  EXPECT_EQ(Run("convert -q cast/hero.fbx --base cast/old -o out"), 64);
  EXPECT_TRUE(Printed("cast/hero.fbx is not below ")) << errors_;
  EXPECT_EQ(Run("convert --files-from - --report - </dev/null"), 0);
  EXPECT_TRUE(Printed("the list is empty; there is nothing to convert")) << errors_;
  EXPECT_EQ(Json::parse(output_)["totals"]["models"], 0);
  EXPECT_EQ(Run("convert --files-from none"), 66);
  EXPECT_EQ(Run("convert -q --files-from list -o one.czp"), 64) << "two models";
  EXPECT_EQ(Run("convert -q cast -o one.czp"), 64);
  folder_.Write("list", "cast/hero.fbx");
  EXPECT_EQ(Run("convert -q --files-from list -o one.czp"), 0) << errors_;
  EXPECT_EQ(Run("convert -q cast/old -o old.czp"), 0) << errors_;
  for (const char* package : {"one.czp", "old.czp"})
    EXPECT_EQ(ReadWholeFile(folder_.Path(package)).substr(0, 2), "PK") << package;
}

TEST_F(Batch, TwoModelsNeverWriteOnePackage) {
  CopySample("a/hero.fbx");
  CopySample("b/hero.fbx");
  EXPECT_EQ(Run("convert a/hero.fbx b/hero.fbx -o out"), 64);
  EXPECT_TRUE(
      Printed("fbx2czp: b/hero.fbx: error: another model of this command line makes the same package"));
  EXPECT_EQ(Files("out"), "hero.czp hero.xfg");
}

TEST_F(Batch, AConversionThatIsKilledIsToldAndLeavesNothing) {
  CopySample("a.fbx");
  fs::create_directory(folder_.Path("tmp"));
  // A file-size limit ends the conversion by a signal in the middle of a mesh file.
  const std::string command = "cd '" + folder_.Path() +
                              "' && ulimit -f 20 && TMPDIR=tmp '" FBX2CZP_PATH
                              "' convert -q a.fbx missing.fbx 2>err.txt >out.txt";
  EXPECT_EQ(WEXITSTATUS(std::system(("bash -c \"" + command + "\"").c_str())), 70);
  EXPECT_NE(ReadWholeFile(folder_.Path("err.txt")).find("a.fbx: error: the conversion ended with signal 25"),
            std::string::npos);
  EXPECT_EQ(Files(), "a.fbx err.txt out.txt tmp");
  EXPECT_EQ(WorkFolders(), 0u);
}

TEST_F(Batch, ATerminalShowsABarAndColoursUnlessTheyAreSwitchedOff) {
  CopySample("scout.fbx");
  std::string screen;
  EXPECT_EQ(WatchTerminal(StartInTerminal({"convert", "scout.fbx", "missing.fbx"}), screen), 66);
  EXPECT_NE(screen.find("\033[31merror:\033[0m "), std::string::npos) << screen;
  screen.clear();
  setenv("NO_COLOR", "1", 1);
  EXPECT_EQ(WatchTerminal(StartInTerminal({"convert", "scout.fbx"}), screen), 0);
  unsetenv("NO_COLOR");
  EXPECT_NE(screen.find("% head\033[K"), std::string::npos) << screen;
  EXPECT_EQ(screen.find("\033[3"), std::string::npos) << screen;
  EXPECT_NE(screen.find("\r\033[Kfbx2czp: scout.fbx: "), std::string::npos);
}

TEST_F(Batch, ManyAreToldByTheKindInATableThatFitsTheTerminal) {
  const std::string wide = "\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e";  // three letters, six columns
  CopySample("m/a.fbx");
  CopySample("m/" + wide + ".fbx");
  CopySample("m/a name that is much longer than any terminal of this width could be expected to show.fbx");
  std::string screen;
  EXPECT_EQ(WatchTerminal(StartInTerminal({"convert", "m", "none.fbx", "--jobs", "1"}, 50), screen), 66);
  EXPECT_NE(screen.find("2 of 4, 0 failed, "), std::string::npos) << screen;
  EXPECT_NE(screen.find("a name that is much longer than any terminal of this width could be expected to "
                        "show.fbx and 2 more: "),
            std::string::npos)
      << screen;
  EXPECT_EQ(screen.find("cloth.tga\" is not found", screen.find("is not found") + 20), std::string::npos)
      << "one line for all: " << screen;
  const auto column = [](const std::string& line) {
    size_t columns = 0;
    for (const char c : line.substr(0, line.find("ok ")))
      columns += (c & 0xe0) == 0xe0 ? 2u : (c & 0xc0) == 0x80 ? 0u : 1u;
    return columns;
  };
  std::istringstream lines(screen.substr(screen.find("\nmodel ") + 1));
  std::string line;
  std::getline(lines, line);
  const size_t expected = line.find("result");
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(column(line), expected) << line;
    EXPECT_LE(line.size(), 53u) << line;
  }
}

TEST_F(Batch, CtrlCLeavesWholePackagesOrNone) {
  MakeModels(300);
  fs::create_directory(folder_.Path("tmp"));
  setenv("TMPDIR", folder_.Path("tmp").c_str(), 1);
  const int terminal = StartInTerminal({"convert", "models", "-o", "out", "--jobs", "2"});
  unsetenv("TMPDIR");
  std::string screen;
  ReadUntil(terminal, "]   1% ", screen);
  ASSERT_EQ(write(terminal, "\x03", 1), 1);
  EXPECT_EQ(WatchTerminal(terminal, screen), 130);
  EXPECT_NE(screen.find("interrupted; "), std::string::npos) << screen;
  EXPECT_EQ(WorkFolders(), 0u);
  size_t packages = 0;
  for (const auto& entry : fs::directory_iterator(folder_.Path("out"))) {
    if (entry.path().extension() != ".czp") continue;
    ++packages;
    EXPECT_GT(support::Package(entry.path()).Members().size(), 10u) << entry.path();
  }
  EXPECT_GE(packages, 1u);
  EXPECT_LT(packages, 300u);
}

/// The first shell command in `docs/farm.md`.
std::string FarmCommand() {
  const std::string text = ReadWholeFile(TS3D_SOURCE_FOLDER "/docs/farm.md");
  const size_t begin = text.find("```sh\n") + 6;
  return text.substr(begin, text.find("```", begin) - begin);
}

TEST_F(Batch, TheLineForGnuParallelInTheDocsWorks) {
  if (std::system("parallel --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "GNU parallel is not installed";
  CopySample("characters/a/hero.fbx");
  CopySample("characters/b/hero.FBX");
  folder_.Write("characters/broken.fbx", "no model");
  folder_.Write("run.sh",
                "PATH='" + fs::path(FBX2CZP_PATH).parent_path().string() + "':$PATH\n" + FarmCommand());
  EXPECT_EQ(WEXITSTATUS(std::system(("cd '" + folder_.Path() + "' && bash run.sh 2>err.txt").c_str())), 1);
  EXPECT_EQ(Files("packages/characters/a") + Files("packages/characters/b"),
            "hero.czp hero.xfghero.czp hero.xfg");
  EXPECT_EQ(Json::parse(ReadWholeFile(folder_.Path("characters/broken.json")))["models"][0]["result"], 2);
}

}  // namespace
