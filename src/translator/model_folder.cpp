// SPDX-License-Identifier: MIT
#include "translator/model_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace translator {
namespace {

/// A file that the library reads; what it would write goes nowhere.
struct OpenFile {
  aiFile functions{};
  std::string own;
  std::string_view bytes;
  size_t at = 0;
};

OpenFile& Of(aiFile* file) { return *reinterpret_cast<OpenFile*>(file->UserData); }

size_t ReadItems(aiFile* file, char* target, size_t size, size_t count) {
  OpenFile& open = Of(file);
  const size_t items = size == 0 ? 0 : std::min((open.bytes.size() - open.at) / size, count);
  std::memcpy(target, open.bytes.data() + open.at, items * size);
  open.at += items * size;
  return items;
}

aiReturn Seek(aiFile* file, size_t offset, aiOrigin origin) {
  OpenFile& open = Of(file);
  const size_t size = open.bytes.size();
  const size_t from = origin == aiOrigin_SET ? 0 : origin == aiOrigin_CUR ? open.at : size;
  // Offsets may be negative numbers in a type that has none.
  const size_t at = from + offset;
  if (at > size) return aiReturn_FAILURE;
  open.at = at;
  return aiReturn_SUCCESS;
}

void Close(aiFileIO*, aiFile* file) { delete &Of(file); }

aiFile* Open(aiFileIO* io, const char* path, const char* mode) {
  auto& folder = *reinterpret_cast<ModelFolder*>(io->UserData);
  if (std::strpbrk(mode, "wa+") != nullptr) return nullptr;
  auto open = std::make_unique<OpenFile>();
  if (path == folder.Name()) {
    open->bytes = folder.Model();
  } else {
    if (!folder.Read(path, open->own)) return nullptr;
    open->bytes = open->own;
  }
  open->functions.ReadProc = ReadItems;
  open->functions.WriteProc = [](aiFile*, const char*, size_t, size_t) { return size_t{0}; };
  open->functions.TellProc = [](aiFile* file) { return Of(file).at; };
  open->functions.FileSizeProc = [](aiFile* file) { return Of(file).bytes.size(); };
  open->functions.SeekProc = Seek;
  open->functions.FlushProc = [](aiFile*) {};
  open->functions.UserData = reinterpret_cast<aiUserData>(open.get());
  return &open.release()->functions;
}

/// A descriptor that is closed.
class Descriptor {
 public:
  explicit Descriptor(int file) : file_(file) {}
  ~Descriptor() { Take(-1); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  void Take(int file) {
    if (file_ >= 0) close(file_);
    file_ = file;
  }
  int Number() const { return file_; }

 private:
  int file_;
};

bool ReadWhole(int file, std::string& bytes) {
  struct stat info {};
  if (fstat(file, &info) != 0 || !S_ISREG(info.st_mode)) return false;
  bytes.resize(static_cast<size_t>(info.st_size));
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t size = read(file, bytes.data() + done, bytes.size() - done);
    if (size <= 0) break;
    done += static_cast<size_t>(size);
  }
  bytes.resize(done);
  return true;
}

}  // namespace

ModelFolder::ModelFolder(std::string name, std::string_view model, const std::string& folder)
    : name_(std::move(name)), model_(model) {
  if (!folder.empty()) folder_ = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  functions_ = {Open, Close, reinterpret_cast<aiUserData>(this)};
}

ModelFolder::~ModelFolder() {
  if (folder_ >= 0) close(folder_);
}

bool ModelFolder::Read(std::string_view path, std::string& bytes) {
  if (folder_ < 0 || path.empty()) return false;
  Descriptor place(dup(folder_));
  std::string read;
  for (size_t start = 0; start <= path.size();) {
    const size_t end = std::min(path.find_first_of("/\\", start), path.size());
    const std::string part(path.substr(start, end - start));
    start = end + 1;
    if (part == ".") continue;
    // Empty as before the slash of an absolute path; a colon is behind drives and schemes.
    if (part.empty() || part == ".." || part.find_first_of(":\n") != part.npos) return false;
    const bool isLast = start > path.size();
    // Who opens a pipe for reading would wait.
    const int flags = O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | (isLast ? O_RDONLY : O_PATH | O_DIRECTORY);
    place.Take(openat(place.Number(), part.c_str(), flags));
    if (place.Number() < 0) return false;
    read += (read.empty() ? "" : "/") + part;
  }
  if (!ReadWhole(place.Number(), bytes)) return false;
  if (std::find(otherFiles_.begin(), otherFiles_.end(), read) == otherFiles_.end())
    otherFiles_.push_back(read);
  return true;
}

}  // namespace translator
