// SPDX-License-Identifier: MIT
#include "package/deflate_ahead.h"

#include <algorithm>
#include <new>
#include <system_error>

#include "core/names.h"
#include "platform/files.h"

namespace ts3d {
namespace {

/// What is ready or being deflated keeps at most this much memory.
constexpr size_t kMostKept = size_t{32} << 20;

}  // namespace

DeflateAhead::~DeflateAhead() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void DeflateAhead::Start(const std::string& path) {
  const int64_t size = platform::FileSize(path);
  // Little is not worth a thread's while.
  constexpr int64_t kLeast = 1 << 16;
  if (size < kLeast || size > static_cast<int64_t>(kMostKept)) return;
  Forget(path);
  {
    const std::lock_guard lock(mutex_);
    files_.push_back({path, static_cast<size_t>(size), State::Waiting, {}});
    if (files_.size() == 1) return;
  }
  changed_.notify_all();
  if (thread_.joinable()) return;
  try {
    thread_ = std::thread(&DeflateAhead::Run, this);
  } catch (const std::system_error&) {
    // Then the caller's thread deflates everything.
  }
}

void DeflateAhead::Forget(std::string_view path) {
  std::unique_lock lock(mutex_);
  const Files::iterator file = Find(path);
  if (file == files_.end()) return;
  changed_.wait(lock, [&] { return file->state != State::Running; });
  if (file->state == State::Done) keptBytes_ -= file->size;
  files_.erase(file);
}

bool DeflateAhead::Take(std::string_view path, DeflatedMember& member) {
  std::unique_lock lock(mutex_);
  const Files::iterator file = Find(path);
  if (file == files_.end()) return false;
  while (file->state == State::Running) {
    // The caller's thread takes the next one meanwhile.
    const Files::iterator next = NextWaiting(files_.end());
    if (next == files_.end()) {
      changed_.wait(lock);
    } else {
      Deflate(next, MemberDeflater(level_), lock);
    }
  }
  const bool isDone = file->state == State::Done;
  if (isDone) {
    keptBytes_ -= file->size;
    member = std::move(file->member);
  }
  files_.erase(file);
  lock.unlock();
  changed_.notify_all();
  return isDone;
}

void DeflateAhead::Run() {
  const MemberDeflater deflater(level_);
  std::unique_lock lock(mutex_);
  while (!ends_) {
    const Files::iterator newest = files_.empty() ? files_.end() : std::prev(files_.end());
    const Files::iterator next = NextWaiting(newest);
    if (next == newest) {
      changed_.wait(lock);
    } else {
      Deflate(next, deflater, lock);
    }
  }
}

// Names that differ in case only may be one file.
DeflateAhead::Files::iterator DeflateAhead::Find(std::string_view path) {
  return std::find_if(files_.begin(), files_.end(),
                      [path](const File& file) { return EqualsIgnoreCase(file.path, path); });
}

/// The first file before `end` whose turn has come and that there is room for; else `end`.
DeflateAhead::Files::iterator DeflateAhead::NextWaiting(Files::iterator end) {
  return std::find_if(files_.begin(), end, [this](const File& file) {
    return file.state == State::Waiting && keptBytes_ + file.size <= kMostKept;
  });
}

void DeflateAhead::Deflate(Files::iterator file, const MemberDeflater& deflater,
                           std::unique_lock<std::mutex>& lock) {
  file->state = State::Running;
  keptBytes_ += file->size;
  lock.unlock();
  DeflatedMember member;
  bool isDone = false;
  try {
    platform::MappedFile content;
    std::string reason;
    isDone = content.Open(file->path, reason) && deflater.Deflate(content.Bytes(), member);
  } catch (const std::bad_alloc&) {
    // Whoever adds it finds that out and tells.
  }
  lock.lock();
  keptBytes_ -= file->size;
  file->size = isDone ? member.size : 0;
  keptBytes_ += file->size;
  file->member = std::move(member);
  file->state = isDone ? State::Done : State::Failed;
  changed_.notify_all();
}

}  // namespace ts3d
