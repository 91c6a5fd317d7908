// SPDX-License-Identifier: MIT
//
// Translates a model that assimp reads into glTF:
//   translate_model ENDING FOLDER MEGABYTES SECONDS <model >stream
// and unpacks meshes that are compressed with the library Draco:
//   translate_model draco "" MEGABYTES SECONDS <meshes >stream
// These libraries were not made for hostile files, so they get a process, and in it no more memory and time than is said
// here; it writes nothing. The stream is text in lines up to "data", and behind that a GLB file or the meshes' numbers.
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>

#include "scene/readers/stream_words.h"
#include "translator/translate.h"
#include "translator/unpack_meshes.h"

namespace {

constexpr const char* kNoMemory = "it asks for more memory than a file of its size may have";

#ifdef TRANSLATOR_HAS_ALL_ADDRESSES
constexpr bool kLimitsAddresses = false;
#else
constexpr bool kLimitsAddresses = true;
#endif

/// Bytes of address space that the process has.
uint64_t AddressSpace() {
  unsigned long pages = 0;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/proc/self/statm", "r"),
                                                             std::fclose);
  if (!file || std::fscanf(file.get(), "%lu", &pages) != 1) return uint64_t{256} << 20;
  return uint64_t{pages} * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

void Limit(int resource, uint64_t most) {
  const rlimit limit{most, most};
  if (setrlimit(static_cast<decltype(RLIMIT_AS)>(resource), &limit) != 0)
    throw std::runtime_error("its memory cannot be limited");
}

void LimitProcess(uint64_t megabytes, uint64_t seconds) {
  if (kLimitsAddresses) Limit(RLIMIT_AS, AddressSpace() + (megabytes << 20));
  Limit(RLIMIT_CPU, seconds);
  Limit(RLIMIT_CORE, 0);
  Limit(RLIMIT_FSIZE, 0);
}

std::string ReadInput() {
  std::string bytes;
  std::array<char, 1 << 16> chunk;
  for (ssize_t size; (size = read(STDIN_FILENO, chunk.data(), chunk.size())) > 0;)
    bytes.append(chunk.data(), static_cast<size_t>(size));
  return bytes;
}

bool WriteOutput(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t size = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (size <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(size));
  }
  return true;
}

/// What follows the start of the stream.
std::string Answer(std::string_view task, const std::string& folder) {
  if (task != scene::translation::kMeshesWord) return translator::Translate(task, ReadInput(), folder);
  return std::string(scene::translation::kDataWord) + "\n" + translator::UnpackMeshes(ReadInput());
}

std::string Refusal(std::string reason) {
  // The library gives what it catches as a text.
  if (reason.find("bad_alloc") != reason.npos) reason = kNoMemory;
  if (reason == "Unknown exception") reason = "it is damaged or cut off";
  for (char& c : reason) c = static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
  // Who tells it ends the sentence.
  reason.resize(reason.find_last_not_of(" .") + 1);
  constexpr size_t kLongest = 300;
  if (reason.size() > kLongest) reason = reason.substr(0, kLongest) + "...";
  return std::string(scene::translation::kStreamStart) + "\n" + scene::translation::kErrorWord + reason +
         "\n";
}

}  // namespace

int main(int count, char** words) {
  if (count != 5) {
    std::fprintf(stderr, "usage: translate_model ENDING FOLDER MEGABYTES SECONDS <model >stream\n");
    return 64;
  }
  std::string stream;
  try {
    LimitProcess(std::strtoull(words[3], nullptr, 10), std::strtoull(words[4], nullptr, 10));
    stream = std::string(scene::translation::kStreamStart) + "\n" + Answer(words[1], words[2]);
  } catch (const std::bad_alloc&) {
    stream = Refusal(kNoMemory);
  } catch (const std::exception& error) {
    stream = Refusal(error.what());
  }
  // What the library leaves behind goes with the process.
  _exit(WriteOutput(stream) ? 0 : 1);
}
