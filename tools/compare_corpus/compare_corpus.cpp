// SPDX-License-Identifier: MIT
//
// Compares the models of a folder that hold one scene in several versions and encodings, and models with
// their reference meshes. File names read scene_version_encoding[_variant].fbx and scene[_variant].obj.
//
//     ts3d_compare_corpus [--known] folder
//
// Prints one line for every difference, with --known also those whose reason is known. Exit status 0 when
// nothing else differs, 1 when something does, 2 when there is nothing to compare.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <regex>
#include <tuple>

#include "compare_corpus/compare_obj.h"
#include "compare_corpus/known_differences.h"

namespace {

namespace fs = std::filesystem;
using corpus::Difference;
using corpus::Differences;

/// One file of a family.
struct Member {
  fs::path path;
  int version = 0;
  bool binary = false;
  bool mustFail = false;  ///< damaged on purpose: it need not load

  std::string Name() const { return path.filename().string(); }
};

class Comparison {
 public:
  Comparison(fs::path folder, bool printKnown) : folder_(std::move(folder)), printKnown_(printKnown) {}

  int Run() {
    FindFiles();
    for (const auto& [name, members] : families_) CompareFamily(members);
    for (const fs::path& path : references_) CompareReference(path);
    std::printf("%zu models in %zu families, %zu of them refused\n", modelCount_, families_.size(),
                refusedCount_);
    std::printf("%zu pairs of models compared, %zu without any difference\n", pairCount_, equalPairs_);
    std::printf("%zu reference meshes: %zu agree, %zu differ, %zu show another moment or axis system\n",
                references_.size(), equalReferences_, unequalReferences_, skippedReferences_);
    for (const auto& [reason, count] : knownCounts_) std::printf("known, %zu: %s\n", count, reason.c_str());
    std::printf("%zu differences are not explained\n", unknownCount_);
    if (modelCount_ == 0) return 2;
    return unknownCount_ == 0 ? 0 : 1;
  }

 private:
  void FindFiles();
  void CompareFamily(const std::vector<Member>& members);
  void CompareReference(const fs::path& reference);
  void CompareReference(const fs::path& reference, const std::string& family, bool isMoment);
  void Report(const std::string& file, const Differences& differences);

  fs::path folder_;
  bool printKnown_;
  std::map<std::string, std::vector<Member>> families_;
  std::vector<fs::path> references_;
  std::map<std::string, size_t> knownCounts_;
  size_t modelCount_ = 0, refusedCount_ = 0, pairCount_ = 0, equalPairs_ = 0;
  size_t equalReferences_ = 0, unequalReferences_ = 0, skippedReferences_ = 0;
  size_t unknownCount_ = 0;
};

void Comparison::FindFiles() {
  static const std::regex kName("(.*?)(_fail)?_([0-9]{4})_(ascii|binary)(_.*)?\\.fbx");
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() == ".obj") references_.push_back(entry.path());
    std::smatch parts;
    if (!std::regex_match(name, parts, kName)) continue;
    Member member{entry.path(), std::stoi(parts[3]), parts[4] == "binary", parts[2].matched};
    families_[parts[1].str() + parts[5].str()].push_back(std::move(member));
    ++modelCount_;
  }
  std::ranges::sort(references_);
  // The model that the others are compared with comes first: the newest binary one.
  for (auto& [name, members] : families_) {
    std::ranges::sort(members, [](const Member& a, const Member& b) {
      return std::tuple(a.mustFail, !a.binary, -a.version, a.path) <
             std::tuple(b.mustFail, !b.binary, -b.version, b.path);
    });
  }
}

void Comparison::CompareFamily(const std::vector<Member>& members) {
  std::unique_ptr<scene::KFbxScene> first;
  for (const Member& member : members) {
    std::string error;
    std::unique_ptr<scene::KFbxScene> scene = corpus::LoadScene(member.path.string(), error);
    if (!scene) {
      ++refusedCount_;
      if (!member.mustFail || printKnown_)
        std::printf("%s: refused: %s\n", member.Name().c_str(), error.c_str());
      if (!member.mustFail) ++unknownCount_;
      continue;
    }
    if (!first) {
      first = std::move(scene);
      continue;
    }
    const Differences differences = corpus::CompareScenes(*first, *scene);
    ++pairCount_;
    equalPairs_ += differences.empty();
    Report(member.Name(), differences);
  }
}

/// A number behind the name is a moment of the animation; other models' names end in one, too.
void Comparison::CompareReference(const fs::path& reference) {
  const std::string name = reference.stem().string();
  const std::string family = name.substr(0, name.find_last_not_of("_0123456789") + 1);
  if (families_.contains(name)) {
    CompareReference(reference, name, false);
  } else if (name.find("_lefthanded") == std::string::npos && families_.contains(family)) {
    CompareReference(reference, family, true);
  } else {
    ++skippedReferences_;
    if (printKnown_) std::printf("%s: not compared\n", reference.filename().string().c_str());
  }
}

void Comparison::CompareReference(const fs::path& reference, const std::string& family, bool isMoment) {
  corpus::WorldMesh expected;
  std::string error;
  Differences differences;
  if (!ReadObj(reference.string(), expected, error)) differences.push_back({"load", "", error});
  bool isEqual = differences.empty();
  for (const Member& member : families_[family]) {
    const std::unique_ptr<scene::KFbxScene> scene = corpus::LoadScene(member.path.string(), error);
    if (!scene) continue;
    differences = CompareWithObj(expected, corpus::WorldPolygons(*scene));
    isEqual = isEqual && differences.empty();
    for (Difference& difference : differences) difference.where = reference.filename().string();
    if (!isMoment) Report(member.Name(), differences);
  }
  if (isMoment && !isEqual) {
    ++skippedReferences_;
    if (printKnown_) std::printf("%s: another moment\n", reference.filename().string().c_str());
  } else {
    ++(isEqual ? equalReferences_ : unequalReferences_);
  }
}

void Comparison::Report(const std::string& file, const Differences& differences) {
  for (const Difference& difference : differences) {
    const char* reason = corpus::ReasonFor(file, difference);
    if (reason) {
      ++knownCounts_[reason];
    } else {
      ++unknownCount_;
    }
    if (reason && !printKnown_) continue;
    std::printf("%s: %s: %s: %s%s%s\n", file.c_str(), difference.aspect.c_str(), difference.where.c_str(),
                difference.text.c_str(), reason ? " -- " : "", reason ? reason : "");
  }
}

}  // namespace

int main(int argc, char** argv) try {
  const bool printKnown = argc == 3 && std::string_view(argv[1]) == "--known";
  if (argc != 2 && !printKnown) {
    std::fprintf(stderr, "usage: ts3d_compare_corpus [--known] folder\n");
    return 2;
  }
  std::error_code error;
  if (!fs::is_directory(argv[argc - 1], error)) {
    std::fprintf(stderr, "ts3d_compare_corpus: error: there is no folder %s\n", argv[argc - 1]);
    return 2;
  }
  return Comparison(argv[argc - 1], printKnown).Run();
} catch (const std::exception& error) {
  std::fprintf(stderr, "ts3d_compare_corpus: error: %s\n", error.what());
  return 2;
}
