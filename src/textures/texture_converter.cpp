// SPDX-License-Identifier: MIT
#include "textures/texture_converter.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "base/file_names.h"
#include "core/names.h"
#include "core/work_files.h"
#include "material/texture_files.h"
#include "platform/files.h"
#include "scene/model/scene.h"
#include "scene/model/texture.h"
#include "textures/image_reader.h"
#include "textures/shrink.h"
#include "textures/tga_file.h"

namespace textures {
namespace fs = platform::fs;
namespace {

/// Whether `a` was written before `b`. False when that is unknown.
bool IsOlder(const fs::path& a, const fs::path& b) {
  std::error_code failedA, failedB;
  const auto timeA = fs::last_write_time(a, failedA), timeB = fs::last_write_time(b, failedB);
  return !failedA && !failedB && timeA < timeB;
}

bool IsSamePath(const fs::path& a, const fs::path& b) {
  std::error_code failed;
  return fs::equivalent(a, b, failed) && !failed;
}

std::string DescribePlaces(const std::vector<std::string>& places) {
  std::string text = "was not found; looked for";
  for (const std::string& place : places) text += (&place == &places.front() ? " " : ", ") + place;
  return text;
}

/// Whether the reader has taken the picture out of the model, into the folder where it is converted.
bool IsEmbedded(const fs::path& picture, const ts3d::WorkFiles& files) {
  return picture.string().starts_with(platform::NativePath(files.modelDirectory));
}

struct MissingPicture : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace

/// One texture on its way into the package.
struct TextureConverter::Request {
  const ts3d::WorkFiles& files;
  const scene::KFbxScene& scene;
  std::string source;
  bool exists;
  std::string tgaName = ts3d::TgaName(source);
  fs::path target = platform::NativePath(files.modelDirectory) + tgaName;

  /// Whether the texture is itself the ".tga" file that the package will hold.
  bool IsTga() const { return ts3d::EqualsIgnoreCase(base::BaseName(source), tgaName); }
  /// Whether nothing stands before the first point of the name, as in "." or "art/": no file is meant.
  bool IsNameless() const { return tgaName == ".tga" && !IsTga(); }
};

TextureConverter::TextureConverter(const fs::path& model, int longestSide,
                                   const std::vector<std::string>& folders, TooLarge tooLarge)
    : finder_(model, folders),
      longestSide_(longestSide),
      tooLarge_(tooLarge),
      budget_{tooLarge == TooLarge::Shrink ? kLargestSide : longestSide} {}

bool TextureConverter::Provide(const ts3d::WorkFiles& files, const scene::KFbxScene& scene,
                               const std::string& source, bool exists) {
  const auto [answer, isNew] = answers_.try_emplace(source, exists);
  if (!isNew) return answer->second;
  const Request request{files, scene, source, exists};
  std::string reason;
  bool isMissing = false;
  try {
    Bring(request);
    return answer->second = true;
  } catch (const MissingPicture& error) {
    reason = error.what();
    isMissing = true;
  } catch (const std::bad_alloc&) {
    reason = "needs more memory than there is";
  } catch (const std::exception& error) {
    reason = error.what();
  }
  // A reused file that this limit refuses is gone from the job's folder.
  const bool remains = exists && !request.IsNameless() && ts3d::WorkFileExists(files, request.tgaName);
  if (remains) reason += "; " + request.tgaName + " beside the model is packed as it is";
  // Embedded pictures were written to a folder that is gone when somebody reads this.
  const bool isInside = source.starts_with(files.modelDirectory);
  problems_.push_back(
      {isInside ? source.substr(files.modelDirectory.size()) : source, std::move(reason), isMissing});
  return answer->second = remains;
}

void TextureConverter::Bring(const Request& request) {
  if (request.IsNameless()) throw std::runtime_error("names no file");
  if (!ts3d::IsPlainFileName(request.tgaName) || !ts3d::EndsWithIgnoreCase(request.tgaName, ".tga") ||
      platform::IsSameFile(request.target.string(), request.files.inputPath)) {
    throw std::runtime_error("has a name that cannot be used for a .tga file");
  }
  if (request.exists && request.IsTga() && !IsWrittenByUs(request.target)) {
    pictures_.try_emplace(request.tgaName, request.target);
    inputs_.insert(finder_.Folder() / request.tgaName);
    return CheckOwn(request);
  }
  const TextureSearch search = FindPicture(request.scene, request.source);
  if (search.found.empty()) {
    inputs_.insert(search.places.begin(), search.places.end());
    if (request.exists) return CheckReused(request);
    throw MissingPicture(DescribePlaces(search.places));
  }
  const auto made = pictures_.find(request.tgaName);
  if (made != pictures_.end() && made->second != search.found) {
    throw std::runtime_error("is not used, as " + request.tgaName + " is made of " + made->second.string() +
                             "; rename one of them");
  }
  ConvertOrEmbedded(request, search.found);
  pictures_[request.tgaName] = search.found;
  if (IsEmbedded(search.found, request.files)) return;
  inputs_.insert(search.found);
  if (finder_.IsOutside(search.found)) outside_.insert(search.found.lexically_normal().string());
}

std::set<fs::path> TextureConverter::FindInputs(const ts3d::WorkFiles& files, const scene::KFbxScene& scene) {
  std::set<fs::path> inputs;
  scene.ForEach<scene::KFbxTexture>([&](const scene::KFbxTexture& texture) {
    const TextureSearch search = FindPicture(scene, texture.GetFileName());
    if (!search.found.empty() && !IsEmbedded(search.found, files)) inputs.insert(search.found);
  });
  return inputs;
}

/// Looks for the picture `source`. One that is embedded, and was taken out to `source`, comes last.
TextureSearch TextureConverter::FindPicture(const scene::KFbxScene& scene, const std::string& source) {
  if (textures_.empty()) {
    scene.ForEach<scene::KFbxTexture>([&](const scene::KFbxTexture& texture) {
      // One with a name relative to the model beside it is preferred.
      const scene::KFbxTexture*& named = textures_[texture.GetFileName()];
      if (!named || named->GetRelativeFileName().empty()) named = &texture;
    });
  }
  const auto named = textures_.find(source);
  if (named == textures_.end()) return finder_.Find(source, {});
  const scene::KFbxTexture& texture = *named->second;
  if (!texture.IsEmbedded()) return finder_.Find(source, texture.GetRelativeFileName());
  const scene::KFbxVideo& video = *texture.GetVideo();
  if (video.IsNamelessFile()) return finder_.Find(source, {});
  TextureSearch search = finder_.Find(video.GetFileName(), video.GetRelativeFileName());
  return search.found.empty() ? finder_.Find(source, {}) : search;
}

/// A picture on disk comes before the one that is embedded, but only if it is any good.
void TextureConverter::ConvertOrEmbedded(const Request& request, const fs::path& picture) {
  try {
    Convert(request, picture);
  } catch (const std::runtime_error& error) {
    const fs::path embedded = platform::NativePath(request.source);
    std::error_code failed;
    if (!request.source.starts_with(request.files.modelDirectory) || !fs::is_regular_file(embedded, failed) ||
        IsSamePath(embedded, picture)) {
      throw;
    }
    Convert(request, embedded);
    problems_.push_back(
        {picture.string(), error.what() + std::string("; the embedded picture is used"), false});
  }
}

/// The picture is in the job's folder under its own name; it has to be of the right kind.
void TextureConverter::CheckOwn(const Request& request) {
  int width = 0, height = 0;
  if (IsPlainTga(request.target, width, height) && FitsOrThrows(width, height)) return;
  WriteTgaOf(request.target, request.target);
}

/// The picture is used again when an earlier conversion made it, unless this one would not.
void TextureConverter::CheckReused(const Request& request) {
  int width = 0, height = 0;
  if (!IsWrittenByUs(request.target) || !IsPlainTga(request.target, width, height)) return;
  try {
    if (FitsOrThrows(width, height)) return;
  } catch (const std::runtime_error&) {
    // Only here: the file beside the model stays for conversions with another limit.
    fs::remove(request.target);
    throw;
  }
  WriteTgaOf(request.target, request.target);
}

/// Whether a picture can stay as large as it is; false when it is to be shrunk.
bool TextureConverter::FitsOrThrows(int width, int height) const {
  if (std::max(width, height) <= longestSide_) return true;
  CheckSize(width, height, budget_.longestSide);
  return false;
}

/// Decodes the picture. To shrink one takes no more memory than one of the usual limit does.
Image TextureConverter::ReadPicture(const fs::path& picture) {
  if (tooLarge_ == TooLarge::LeaveOut) return ReadImage(picture, budget_);
  platform::MappedFile file;
  std::string error;
  if (!file.Open(picture.string(), error)) throw std::runtime_error("cannot be read: " + error);
  budget_.AddFile(file.Bytes().size());
  constexpr uint64_t kMost = uint64_t{kDefaultLongestSide} * kDefaultLongestSide;
  PictureBudget own{budget_.longestSide, std::min(budget_.pixels, kMost)};
  // What a damaged picture took counts as well.
  struct Spent {
    uint64_t& left;
    const PictureBudget& own;
    uint64_t before = own.pixels;
    ~Spent() { left -= before - own.pixels; }
  } const spent{budget_.pixels, own};
  return DecodeImage(file.Bytes(), own);
}

void TextureConverter::Convert(const Request& request, const fs::path& picture) {
  if (request.exists) {
    if (!IsOlder(request.target, picture) || IsSamePath(request.target, picture)) return CheckReused(request);
    if (!IsWrittenByUs(request.target)) {
      throw std::runtime_error("is newer than " + request.tgaName + ", which was not made by this program");
    }
  }
  WriteTgaOf(picture, request.target);
}

/// A model can find one picture under any number of names. It is decoded for the first of them.
void TextureConverter::WriteTgaOf(const fs::path& picture, const fs::path& target) {
  std::error_code failed;
  const auto [entry, isNew] = decoded_.try_emplace(fs::weakly_canonical(picture, failed));
  Decoded& decoded = entry->second;
  if (!isNew) {
    if (!decoded.error.empty()) throw std::runtime_error(decoded.error);
    budget_.Take(decoded.width, decoded.height);
    if (decoded.isShrunk) shrunk_.insert(target.filename().string());
    return CopyTga(decoded.tga, target);
  }
  if (onConvert) onConvert(picture);
  decoded.error = "needs more memory than there is";
  try {
    Image image = ReadPicture(picture);
    const bool isShrunk = std::max(image.width, image.height) > longestSide_;
    if (isShrunk) shrunk_.insert(target.filename().string());
    image = ShrinkToFit(std::move(image), longestSide_);
    WriteTga(image, target);
    decoded = {image.width, image.height, target, {}, isShrunk};
  } catch (const std::runtime_error& error) {
    decoded.error = error.what();
    throw;
  }
}

}  // namespace textures
