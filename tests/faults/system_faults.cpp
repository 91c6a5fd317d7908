// SPDX-License-Identifier: MIT
#include "faults/system_faults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace faults {
namespace {

struct Plan {
  Call call = Call::Open;
  int left = 0;
  Lasting lasting = Lasting::Once;
  bool set = false;
  bool armed = false;
  bool happened = false;
} plan;

/// Whether the call that is about to be made is to fail instead.
bool Fails(Call call, int error) {
  if (!plan.armed || plan.call != call) return false;
  const int left = plan.left--;
  if (left > 0 || (left < 0 && plan.lasting == Lasting::Once)) return false;
  plan.happened = true;
  errno = error;
  return true;
}

/// The system's function that one of ours stands before.
template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// A stream whose system calls are counted: what is written
// fails when the buffer is emptied, as it does on a full disk.

ssize_t ReadStream(void* file, char* data, size_t size) {
  if (Fails(Call::Read, EIO)) return -1;
  return static_cast<ssize_t>(std::fread(data, 1, size, static_cast<std::FILE*>(file)));
}

ssize_t WriteStream(void* file, const char* data, size_t size) {
  // Half of it still found room.
  const bool fails = Fails(Call::Write, ENOSPC);
  const size_t written = std::fwrite(data, 1, fails ? size / 2 : size, static_cast<std::FILE*>(file));
  return fails ? 0 : static_cast<ssize_t>(written);
}

int SeekStream(void* file, off64_t* offset, int origin) {
  auto* stream = static_cast<std::FILE*>(file);
  if (fseeko64(stream, *offset, origin) != 0) return -1;
  *offset = ftello64(stream);
  return 0;
}

int CloseStream(void* file) {
  const bool fails = Fails(Call::Close, EIO);
  return std::fclose(static_cast<std::FILE*>(file)) == 0 && !fails ? 0 : -1;
}

std::FILE* Counted(std::FILE* file, const char* mode) {
  if (!file || !plan.armed) return file;
  return fopencookie(file, mode, {ReadStream, WriteStream, SeekStream, CloseStream});
}

std::FILE* OpenStream(const char* path, const char* mode) {
  static const auto next = Next<std::FILE*(const char*, const char*)>("fopen64");
  return Fails(Call::Open, EACCES) ? nullptr : Counted(next(path, mode), mode);
}

}  // namespace

Fault::Fault(Call call, int nth, Lasting lasting) { plan = {call, nth, lasting, true}; }
Fault::~Fault() { plan.set = plan.armed = false; }
void Fault::Arm() { plan.armed = plan.set; }
bool Fault::Happened() { return plan.happened; }

}  // namespace faults

using faults::Call;
using faults::Fails;
using faults::Next;

// The program's own functions win over those of every library, if they are visible to it.
#pragma GCC visibility push(default)
extern "C" {

std::FILE* fopen(const char* path, const char* mode) { return faults::OpenStream(path, mode); }
std::FILE* fopen64(const char* path, const char* mode) { return faults::OpenStream(path, mode); }

std::FILE* fdopen(int file, const char* mode) noexcept {
  static const auto next = Next<std::FILE*(int, const char*)>("fdopen");
  return faults::Counted(next(file, mode), mode);
}

int open(const char* path, int flags, ...) {
  static const auto next = Next<int(const char*, int, ...)>("open");
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return Fails(Call::Open, EACCES) ? -1 : next(path, flags, mode);
}

ssize_t sendfile(int to, int from, off_t* offset, size_t size) {
  static const auto next = Next<ssize_t(int, int, off_t*, size_t)>("sendfile");
  if (!Fails(Call::Write, ENOSPC)) return next(to, from, offset, size);
  next(to, from, offset, size / 2);
  return -1;
}

int rename(const char* from, const char* to) noexcept {
  static const auto next = Next<int(const char*, const char*)>("rename");
  return Fails(Call::Rename, EACCES) ? -1 : next(from, to);
}

int unlink(const char* path) noexcept {
  static const auto next = Next<int(const char*)>("unlink");
  return Fails(Call::Remove, EACCES) ? -1 : next(path);
}

void* mmap(void* place, size_t size, int access, int flags, int file, off_t offset) noexcept {
  static const auto next = Next<void*(void*, size_t, int, int, int, off_t)>("mmap");
  return file >= 0 && Fails(Call::Map, ENOMEM) ? MAP_FAILED : next(place, size, access, flags, file, offset);
}

}  // extern "C"

void* operator new(size_t size) {
  void* memory = Fails(Call::Memory, ENOMEM) ? nullptr : std::malloc(size > 0 ? size : 1);
  if (!memory) throw std::bad_alloc();
  return memory;
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return Fails(Call::Memory, ENOMEM) ? nullptr : std::malloc(size > 0 ? size : 1);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }
#pragma GCC visibility pop
