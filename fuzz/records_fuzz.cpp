// SPDX-License-Identifier: MIT
//
// A container reader alone: bytes behind a sound start -> records -> every value and every array of them.
// Built twice, for the binary container and for the text.
#include <cstdint>
#include <memory>
#include <string>

#include "scene/container/array_reader.h"
#include "scene/fbx_reader.h"

namespace {

constexpr size_t kLargestInput = 1 << 16;

std::string StartOfFile(uint8_t choice) {
#if defined(FUZZ_ASCII)
  return choice % 2 == 0 ? "; FBX 7.5.0 project file\n" : "\xef\xbb\xbf; FBX 6.1.0 project file\n";
#else
  static constexpr int kVersions[] = {3000, 6100, 7400, 7500};
  std::string start("Kaydara FBX Binary  \0\x1a\0", 23);
  const bool bigEndian = choice % 2 != 0;
  start[22] = bigEndian ? '\1' : '\0';
  const int version = kVersions[choice / 2 % 4];
  for (int i = 0; i < 4; ++i) start += static_cast<char>(version >> 8 * (bigEndian ? 3 - i : i) & 0xff);
  return start;
#endif
}

/// Reads a record the ways that the rest of the library does.
void ReadValues(scene::RecordRef record) {
  scene::FbxArray<double> reals;
  scene::FbxArray<int32_t> integers;
  if (ReadArray(record, reals) && ReadArray(record, integers) && reals.size() != integers.size()) {
    __builtin_trap();
  }
  for (size_t i = 0; i < record.ValueCount(); ++i) {
    record.Number(i, 0.0);
    record.Integer(i, 0);
    record.Text(i);
  }
  record.Child("Vertices");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0 || size > kLargestInput) return 0;
  const std::string file =
      StartOfFile(data[0]) + std::string(reinterpret_cast<const char*>(data) + 1, size - 1);
  // Ends where the file ends, so that a read beyond it is seen.
  const std::unique_ptr<char[]> bytes(new char[file.size()]);
  file.copy(bytes.get(), file.size());
  scene::RecordTree tree;
  tree.bytes = {bytes.get(), file.size()};
  if (!ReadFbxRecords(tree).Succeeded()) return 0;
  for (uint32_t i = 0; i < tree.records.size(); ++i) {
    if (tree.records[i].end <= i || tree.records[i].end > tree.records.size()) __builtin_trap();
    ReadValues({&tree, i});
  }
  return 0;
}
