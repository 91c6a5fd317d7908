// SPDX-License-Identifier: MIT
#pragma once

namespace faults {

/// A kind of system call that can be made to fail.
enum class Call { Open, Read, Write, Close, Rename, Remove, Map, Memory };

enum class Lasting { Once, FromThenOn };

/// Makes calls of one kind fail as long as it lives, in this program and in every library that it has loaded:
/// the program's own `fopen`, `rename`, `operator new` and so on stand before those of the system. There is
/// at most one at a time.
class Fault {
 public:
  /// The call number `nth`, counted from 0, fails; with `FromThenOn`
  /// all later ones too. Nothing is counted before Arm.
  Fault(Call call, int nth, Lasting lasting);
  ~Fault();
  Fault(const Fault&) = delete;
  Fault& operator=(const Fault&) = delete;

  /// Begins with the counting, if there is a fault at all.
  static void Arm();
  /// Whether a call has failed.
  static bool Happened();
};

}  // namespace faults
