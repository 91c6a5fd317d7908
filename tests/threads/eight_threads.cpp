// SPDX-License-Identifier: MIT
//
// eight_threads FOLDER...: converts and checks the models in the folders in eight threads at once, each with
// a converter of its own, and expects of every model what one thread alone gets. The functions
// ConvertFBXFile... are called meanwhile. Meant for the thread sanitizer, see scripts/check-threads.
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <thread>
#include <vector>

#include "fbx_to_ts3d.hpp"

namespace {

namespace fs = std::filesystem;

constexpr size_t kThreads = 8;

/// All that the converters tell of the model.
std::string Outcome(fbxToTs3d::Converter& converter, const fs::path& model) {
  std::string text;
  size_t size = 0;
  converter.options.repairs = FBX_TO_TS3D_REPAIR_AS_NEEDED;
  converter.options.onPackage = [&](const void*, size_t count) { size += count; };
  try {
    converter.Convert(model.string());
  } catch (const fbxToTs3d::Error& error) {
    text = error.what();
  }
  text += converter.ResultJson() + std::to_string(size);
  return text + converter.Check(model.string());
}

/// A host of the classic functions, with a model of its own.
void ConvertClassic(const fs::path& model, const fs::path& copy) {
  fs::copy_file(model, copy, fs::copy_options::overwrite_existing);
  std::string path = copy.string();
  for (char& c : path) c = c == '/' ? '\\' : c;
  const auto ignore = [](void*, const char*) {};
  ConvertFBXFile(path.c_str(), 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr, ignore, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<fs::path> models;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : fs::directory_iterator(argv[i])) {
      if (entry.path().extension() == ".fbx") models.push_back(entry.path());
    }
  }
  std::vector<std::string> expected;
  fbxToTs3d::Converter alone;
  for (const fs::path& model : models) expected.push_back(Outcome(alone, model));

  const fs::path folder =
      fs::temp_directory_path() / ("ts3d_threads_" + std::to_string(std::random_device()()));
  fs::create_directory(folder);
  std::atomic<size_t> differences = 0;
  std::vector<std::thread> threads;
  for (size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      fbxToTs3d::Converter converter;
      for (size_t i = 0; i < models.size(); ++i) {
        const size_t at = (i + thread * models.size() / kThreads) % models.size();
        if (Outcome(converter, models[at]) != expected[at]) ++differences;
        if (thread < 2) ConvertClassic(models[at], folder / (std::to_string(thread) + ".fbx"));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  fs::remove_all(folder);
  std::printf("%zu models in %zu threads, %zu differences\n", models.size(), kThreads, differences.load());
  return models.empty() || differences > 0;
}
