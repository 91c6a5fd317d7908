// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>
#include <thread>

namespace ts3d {

/// What one call at a time may enter.
class Turnstile {
 private:
  friend class Turn;
  std::mutex mutex_;
  std::atomic<std::thread::id> holder_;
};

/// A call's turn. Waits for those of other threads; one that the same thread has, which calls out of a
/// callback, is refused.
class Turn {
 public:
  explicit Turn(Turnstile& turnstile)
      : turnstile_(turnstile), granted_(turnstile.holder_ != std::this_thread::get_id()) {
    if (!granted_) return;
    turnstile_.mutex_.lock();
    turnstile_.holder_ = std::this_thread::get_id();
  }
  ~Turn() {
    if (!granted_) return;
    turnstile_.holder_ = std::thread::id();
    turnstile_.mutex_.unlock();
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  bool IsGranted() const { return granted_; }

 private:
  Turnstile& turnstile_;
  bool granted_;
};

}  // namespace ts3d
