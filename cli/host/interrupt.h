// SPDX-License-Identifier: MIT
#pragma once

namespace cli {

/// As long as it lives, a wish to end the process (Ctrl-C, a closed terminal, a batch system) is noted
/// instead of obeyed, so that nothing half done is left. What has not ended three seconds later is ended by
/// the system. One may live inside another.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  bool Interrupted() const { return Signal() != 0; }
  /// Which signal it was; 0 as long as there was none.
  int Signal() const;
};

}  // namespace cli
