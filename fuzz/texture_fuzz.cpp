// SPDX-License-Identifier: MIT
//
// The picture of a texture, on its way from the model's folder into a package: found by whatever name the model has
// for it, decoded, shrunk, written, and used again by a second conversion. Input: a byte of choices, the texture's two
// names with a line break behind each, and the picture.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/work_files.h"
#include "material/texture_files.h"
#include "scene/model/scene.h"
#include "support/temp_folder.h"
#include "textures/texture_converter.h"
#include "textures/texture_search.h"
#include "textures/tga_file.h"

namespace {

namespace fs = std::filesystem;

/// A folder with a model, the picture under test, and things that are none of a model's business.
struct Place {
  support::TempFolder folder;
  std::string model = folder.Path("model/hero.fbx");

  Place() {
    for (const char* made : {"model/textures", "model/skin.png", "secret", "work"}) {
      fs::create_directories(folder.Path(made));
    }
    fs::create_directory_symlink("../secret", folder.Path("model/link"));
    folder.Write("secret/key.tga", "not a picture");
  }
  /// Whether nothing but the work folder has changed.
  bool IsUntouched() const {
    return folder.Names() == "model secret work" && folder.Names("secret") == "key.tga" &&
           folder.Names("model") == "art.bin link skin.png textures" &&
           folder.Names("model/textures") == "Skin.bmp";
  }
};

struct Input {
  uint8_t choices = 0;
  std::string source, relative;
  std::string_view picture;

  explicit Input(std::string_view bytes) {
    choices = static_cast<uint8_t>(bytes.front());
    bytes.remove_prefix(1);
    for (std::string* name : {&source, &relative}) {
      const size_t end = std::min(bytes.find('\n'), bytes.size());
      *name = bytes.substr(0, end);
      bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    picture = bytes;
  }
};

/// Converts the texture; whether the work folder holds its picture then.
bool Convert(const Place& place, const ts3d::WorkFiles& files, const Input& input, int longestSide,
             bool exists) {
  const bool shrinks = input.choices & 1;
  const auto tooLarge = shrinks ? textures::TooLarge::Shrink : textures::TooLarge::LeaveOut;
  textures::TextureConverter converter(place.model, longestSide, {}, tooLarge);
  const scene::KFbxScene none("");
  if (!converter.Provide(files, none, input.source, exists)) {
    if (converter.Problems().empty()) __builtin_trap();
    return false;
  }
  int width = 0, height = 0;
  if (!textures::IsPlainTga(files.modelDirectory + ts3d::TgaName(input.source), width, height))
    __builtin_trap();
  if (std::max(width, height) > longestSide) __builtin_trap();
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kLargestInput = 1 << 15;
  constexpr int kLongestSide = 128;
  static const Place place;
  if (size < 2 || size > kLargestInput) return 0;
  const Input input({reinterpret_cast<const char*>(data), size});
  for (const char* name : {"model/art.bin", "model/textures/Skin.bmp"})
    place.folder.Write(name, input.picture);
  fs::remove_all(place.folder.Path("work"));
  fs::create_directory(place.folder.Path("work"));

  textures::TextureFinder finder(place.model, {place.folder.Path("model/textures")});
  const textures::TextureSearch search = finder.Find(input.source, input.relative);
  if (!search.found.empty() && !fs::is_regular_file(search.found)) __builtin_trap();

  ts3d::WorkFiles files;
  files.modelDirectory = place.folder.Path("work/");
  files.inputPath = files.modelDirectory + "hero.fbx";
  const bool exists = Convert(place, files, input, kLongestSide, false);
  // A host with a smaller limit finds the picture of the first.
  if (exists) Convert(place, files, input, kLongestSide >> (input.choices % 8), true);
  if (!place.IsUntouched()) __builtin_trap();
  return 0;
}
