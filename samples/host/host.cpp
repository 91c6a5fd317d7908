// SPDX-License-Identifier: MIT A host in C++: converts a model that it
// has in memory, takes the package into memory, and tells what is in it.
//   host MODEL.fbx PACKAGE.czp     paths in UTF-8
#include <fstream>
#include <iostream>
#include <iterator>

#include "fbx_to_ts3d.hpp"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: host MODEL.fbx PACKAGE.czp\n";
    return 64;
  }
  const std::string path = argv[1];
  const size_t separator = path.find_last_of("/\\");
  std::ifstream file(path, std::ios::binary);
  const std::string model{std::istreambuf_iterator<char>(file), {}};
  std::string package;
  try {
    fbxToTs3d::Converter converter;
    converter.options.repairs = FBX_TO_TS3D_REPAIR_AS_NEEDED;
    converter.options.pictureFolder = separator == std::string::npos ? "." : path.substr(0, separator + 1);
    converter.options.onPackage = [&](const void* bytes, size_t count) {
      package.append(static_cast<const char*>(bytes), count);
    };
    converter.options.onLine = [](const char* line) {
      if (line[0] == '>' || line[0] == '*') std::cout << line << "\n";
    };
    converter.ConvertMemory(path.substr(separator + 1), model);
    std::ofstream(argv[2], std::ios::binary) << package;
    converter.Finish(argv[2], {95, 0, 180, "L_femur=left femur", "hat=~Cap|hat_a=~Cap band"});
  } catch (const fbxToTs3d::Error& error) {
    std::cerr << "host: " << error.what() << " (result " << error.Result() << ")\n";
    return 1;
  }
  std::cout << "a package of " << package.size() << " bytes\nfinished with result 0\n";
}
