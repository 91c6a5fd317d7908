// SPDX-License-Identifier: MIT
// consumer_cpp MODEL: converts the model and tells how many status lines there were.
#include <fbx_to_ts3d.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char** argv) {
  if (argc != 2) return 64;
  std::string model = argv[1];
  std::replace(model.begin(), model.end(), '/', '\\');
  std::vector<std::string> lines;
  const auto keep = [](void* to, const char* line) {
    static_cast<std::vector<std::string>*>(to)->emplace_back(line);
  };
  int32_t vertices = 0;
  const int32_t result =
      ConvertFBXFile(model.c_str(), 100.0f, 0, 0, 0, nullptr, &vertices, nullptr, &lines, keep, nullptr);
  std::printf("%d: %d vertices, %zu lines\n", result, vertices, lines.size());
  return result != FBX_TO_TS3D_OK || lines.empty() || vertices == 0;
}
