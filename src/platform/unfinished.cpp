// SPDX-License-Identifier: MIT
#include "platform/unfinished.h"

#include <chrono>
#include <mutex>
#include <set>
#include <thread>

#include "platform/folders.h"

namespace platform {
namespace {

struct Notes {
  std::mutex mutex;
  std::set<std::string> paths;
};

/// One for the process, as signals are. Never freed: other threads may be at work when the process ends.
Notes& TheNotes() {
  static Notes* const notes = new Notes;
  return *notes;
}

/// Somebody may still be writing into a folder.
void RemoveForGood(const std::string& path) {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    if (RemoveTree(path)) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace

std::string MakeUnfinished(const std::function<std::string()>& make) {
  Notes& notes = TheNotes();
  const std::lock_guard lock(notes.mutex);
  std::string path = make();
  try {
    if (!path.empty()) notes.paths.insert(path);
  } catch (...) {
    RemoveTree(path);
    throw;
  }
  return path;
}

void ForgetUnfinished(const std::string& path) {
  Notes& notes = TheNotes();
  const std::lock_guard lock(notes.mutex);
  notes.paths.erase(path);
}

void RemoveUnfinished() {
  Notes& notes = TheNotes();
  notes.mutex.lock();
  for (const std::string& path : notes.paths) RemoveForGood(path);
}

}  // namespace platform
