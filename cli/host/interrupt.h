// SPDX-License-Identifier: MIT
#pragma once

namespace cli {

/// As long as it lives, a wish to end the process (Ctrl-C, a closed terminal, a batch system) leaves nothing
/// half done. The process ends at once, after its unfinished files are removed, or soon, where somebody ends
/// it gracefully. One at a time.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;
};

/// As long as it lives, its owner looks at InterruptSignal all the time and comes to an end when there is one.
/// After a fifth of a second the process ends nevertheless.
class GracefulEnd {
 public:
  GracefulEnd();
  ~GracefulEnd();
  GracefulEnd(const GracefulEnd&) = delete;
  GracefulEnd& operator=(const GracefulEnd&) = delete;
};

/// The signal that is to end the process; 0 as long as there is none.
int InterruptSignal();

}  // namespace cli
