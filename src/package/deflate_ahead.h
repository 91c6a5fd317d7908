// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstdint>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "package/deflate_member.h"

namespace ts3d {

/// Deflates files in a second thread while the caller goes on making others. What it has ready is bounded; files
/// beyond that wait, and whoever adds them deflates them. Results are those of a MemberDeflater.
class DeflateAhead {
 public:
  /// @param level  of libdeflate, 0 to 12
  explicit DeflateAhead(int level) : level_(level) {}
  ~DeflateAhead();
  DeflateAhead(const DeflateAhead&) = delete;
  DeflateAhead& operator=(const DeflateAhead&) = delete;

  /// Deflates the file `path`, which is complete, when its turn comes: the thread leaves the newest one for later, as
  /// what it was made from may still be in memory.
  void Start(const std::string& path);

  /// Forgets the file `path`, which may change once this has returned.
  void Forget(std::string_view path);

  /// Hands over what the file became, waiting for it if need be; false when it is not being deflated.
  [[nodiscard]] bool Take(std::string_view path, DeflatedMember& member);

 private:
  enum class State { Waiting, Running, Done, Failed };
  struct File {
    std::string path;
    size_t size = 0;  ///< bytes that it keeps in memory: while it runs of the file, then of the result
    State state = State::Waiting;
    DeflatedMember member;
  };
  using Files = std::list<File>;

  void Run();
  Files::iterator Find(std::string_view path);
  Files::iterator NextWaiting(Files::iterator end);
  void Deflate(Files::iterator file, const MemberDeflater& deflater, std::unique_lock<std::mutex>& lock);

  const int level_;
  std::mutex mutex_;
  std::condition_variable changed_;
  Files files_;  ///< in the order in which they were started
  size_t keptBytes_ = 0;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace ts3d
