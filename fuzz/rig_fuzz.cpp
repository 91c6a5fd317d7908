// SPDX-License-Identifier: MIT
//
// A whole conversion in a folder of its own: model -> package -> the package read back. Inputs are changed as
// records (record_mutator.h), so that most of them get past the container.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "actor/load_actor.h"
#include "driver/convert.h"
#include "record_mutator.h"
#include "scene/model/mesh.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

namespace fs = std::filesystem;

constexpr size_t kLargestInput = 1 << 18;

/// "<outer>/model": nothing but that folder may ever be in the outer one.
class WorkFolder {
 public:
  WorkFolder() {
    std::string pattern = (fs::temp_directory_path() / "rig_fuzz_XXXXXX").string();
    if (!mkdtemp(pattern.data())) std::abort();
    outer_ = pattern;
    fs::create_directory(Inner());
  }
  ~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(outer_, ignored);
  }

  std::string Inner() const { return outer_ + "/model"; }
  /// Makes the folder the current one, as hosts of the converter do, and empties it. The fuzzer's own paths
  /// hold again after Leave.
  void Enter() const {
    fs::current_path(Inner());
    Empty();
  }
  void Leave() const { fs::current_path(before_); }
  bool IsAlone() const {
    const auto entries = fs::directory_iterator(outer_);
    return std::distance(begin(entries), end(entries)) == 1;
  }

 private:
  void Empty() const {
    for (const auto& entry : fs::directory_iterator(Inner())) fs::remove_all(entry.path());
  }

  std::string outer_;
  fs::path before_ = fs::current_path();
};

/// What a conversion wrote must be sound, whatever it was made from.
void CheckPackage(const std::string& path) {
  actor::Actor actor;
  actor::Findings findings;
  std::string error;
  if (!LoadActor(path, {}, actor, findings, error)) __builtin_trap();
  for (const actor::Finding& finding : findings) {
    const std::string name = actor::NameIn(finding);
    const bool isOurs = name.ends_with(".csf") || name.ends_with(".cmf");
    if (isOurs && (finding.code == "unreadable-file" || finding.code == "bad-index")) {
      std::fprintf(stderr, "%s\n", actor::InOneLine(finding).c_str());
      __builtin_trap();
    }
  }
}

size_t Store(const fuzz::RecordFile& file, uint8_t* data, size_t size, size_t maxSize) {
  const std::string bytes = WriteBinary(file.records, file.format);
  if (bytes.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
  std::memcpy(data, bytes.data(), bytes.size());
  return bytes.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const WorkFolder folder;
  if (size < 27 || size > kLargestInput) return 0;
  folder.Enter();
  std::ofstream("model.fbx", std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  ts3d::ConversionJob job;
  job.nextMeshThreadId = job.nextMaterialThreadId = ts3d::kFirstThreadId;
  job.settings.repairs = {size % 3 == 0, size % 5 < 2, size % 7 < 3, size % 11 < 5, size % 13 < 6};
  job.boneRenameList = "a=b";
  job.textureCallback = [](void*, const char*, uint8_t* converted) { *converted = 1; };
  const char* actor = size % 2 ? "actor (male)" : "";
  auto result = ts3d::ConversionResult::LoadFailed;
  try {
    result = RunConversion(job, {folder.Inner() + "\\model.fbx", actor});
  } catch (const scene::KFbxMeshExcess&) {
    // What arrays hold may ask for more than is allowed.
  }
  if (result == ts3d::ConversionResult::Success) CheckPackage("model.czp");
  folder.Leave();
  if (!folder.IsAlone()) __builtin_trap();
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed) {
  fuzz::Random random(seed);
  fuzz::RecordFile file;
  constexpr unsigned kPlainMutations = 32;
  if (random() % kPlainMutations == 0 || !ParseRecords({reinterpret_cast<const char*>(data), size}, file)) {
    return LLVMFuzzerMutate(data, size, maxSize);
  }
  for (size_t count = 1 + random() % 4; count > 0; --count) MutateRecords(file, random);
  return Store(file, data, size, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* data, size_t size, const uint8_t* other,
                                            size_t otherSize, uint8_t* out, size_t maxSize,
                                            unsigned int seed) {
  fuzz::Random random(seed);
  fuzz::RecordFile file, from;
  if (!ParseRecords({reinterpret_cast<const char*>(data), size}, file) ||
      !ParseRecords({reinterpret_cast<const char*>(other), otherSize}, from)) {
    return 0;
  }
  SpliceRecords(file, from, random);
  const std::string bytes = WriteBinary(file.records, file.format);
  if (bytes.size() > maxSize) return 0;
  std::memcpy(out, bytes.data(), bytes.size());
  return bytes.size();
}
