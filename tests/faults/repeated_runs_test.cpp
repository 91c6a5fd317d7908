// SPDX-License-Identifier: MIT
//
// Conversions in one process: none leaves anything behind that the next one would show.
#include <sys/wait.h>
#include <unistd.h>

#include "faults/strip_runs.h"

namespace {

namespace fs = std::filesystem;
using support::TempFolder;

/// A copy of a model in a folder of its own.
struct Copy {
  Copy(const char* model, const std::string& stem) : stem_(stem) {
    fs::copy_file(model, folder_.Path(stem + ".fbx"));
  }
  int Convert() const {
    const std::string path = folder_.Path() + "\\" + stem_ + ".fbx";
    const auto ignore = [](void*, const char*) {};
    const int code =
        ConvertFBXFile(path.c_str(), 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr, ignore, nullptr);
    return code == 0 ? ConvertFBXFileFinish(path.c_str(), 150, 0, 0, "hip=pelvis", nullptr, nullptr, ignore)
                     : code;
  }
  std::vector<support::Member> Members() const {
    return support::Package(folder_.Path(stem_ + ".czp")).Members();
  }

  TempFolder folder_;
  std::string stem_;
};

void ConvertInOneProcess(std::initializer_list<const Copy*> models) {
  const pid_t child = fork();
  if (child == 0) {
    int code = 0;
    for (const Copy* model : models) code |= model->Convert();
    _exit(code);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(RepeatedRuns, GiveTheSameBytesAsProcessesOfTheirOwn) {
  const char* const actor = TS3D_SAMPLES_FOLDER "/scout.fbx";
  const char* const strip = TS3D_FIXTURES_FOLDER "/strip_7500_binary.fbx";
  const Copy actorAlone(actor, "Actor (Male)"), stripAlone(strip, "strip");
  ConvertInOneProcess({&actorAlone});
  ConvertInOneProcess({&stripAlone});
  const Copy first(actor, "Actor (Male)"), second(strip, "strip"), third(actor, "Actor (Male)");
  ConvertInOneProcess({&first, &second, &third});
  EXPECT_EQ(first.Members(), actorAlone.Members());
  EXPECT_EQ(second.Members(), stripAlone.Members());
  EXPECT_EQ(third.Members(), actorAlone.Members());
}

}  // namespace
