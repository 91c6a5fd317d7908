// SPDX-License-Identifier: MIT
//
// Runs a fuzz target over files, without a fuzzer: ts3d_fuzz_replay TARGET FOLDER...
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

extern "C" {
int document_fuzz(const uint8_t* data, size_t size);
int gltf_fuzz(const uint8_t* data, size_t size);
int image_fuzz(const uint8_t* data, size_t size);
int load_fuzz(const uint8_t* data, size_t size);
int package_fuzz(const uint8_t* data, size_t size);
int rig_fuzz(const uint8_t* data, size_t size);
int stream_fuzz(const uint8_t* data, size_t size);
int texture_fuzz(const uint8_t* data, size_t size);

/// Nothing is changed here.
size_t LLVMFuzzerMutate(uint8_t*, size_t size, size_t) { return size; }
}

int main(int count, char** arguments) {
  namespace fs = std::filesystem;
  using Target = int (*)(const uint8_t* data, size_t size);
  const std::map<std::string, Target> targets{
      {"document_fuzz", document_fuzz}, {"gltf_fuzz", gltf_fuzz},       {"image_fuzz", image_fuzz},
      {"load_fuzz", load_fuzz},         {"package_fuzz", package_fuzz}, {"rig_fuzz", rig_fuzz},
      {"stream_fuzz", stream_fuzz},     {"texture_fuzz", texture_fuzz}};
  const auto target = targets.find(count > 1 ? arguments[1] : "");
  if (target == targets.end()) return 64;
  size_t inputs = 0;
  for (int i = 2; i < count; ++i) {
    for (const fs::directory_entry& entry : fs::directory_iterator(arguments[i])) {
      std::printf("%s\n", entry.path().c_str());
      std::fflush(stdout);
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      target->second(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
      ++inputs;
    }
  }
  return inputs > 0 ? 0 : 1;
}
