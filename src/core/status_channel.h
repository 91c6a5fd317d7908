// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

#include "core/notices.h"
#include "fbx_to_ts3d.h"

namespace ts3d {

/// A line of a notice, as hosts get it.
struct StatusLine {
  Notice notice;
  std::string_view value = {}, second = {};  ///< of the notice
  std::string_view text = {};                ///< without line end
  bool isFirst = true;                       ///< of the notice
};

/// The way to the host's status callback.
class StatusChannel {
 public:
  void* callbackContext = nullptr;
  FbxToTs3dStatusCallback statusCallback = nullptr;
  /// Takes each line, as the callback does, with what it tells. May be empty.
  std::function<void(const StatusLine& line)> onLine;
  /// Told of each notice before the host is. May be empty.
  std::function<void(Notice notice, std::string_view value)> onNotice;

  /// Sends the lines of `notice`; without values or with no callback it takes no memory.
  void Send(Notice notice, std::string_view value = {}, std::string_view second = {}) const;
  /// The same, but only the first time: hosts show it in a dialog.
  void SendOnce(Notice notice) const;
  /// What was sent once may be sent again.
  void ForgetSent() { wasSent_ = false; }

 private:
  void SendLine(StatusLine line, const char* text) const;

  mutable bool wasSent_ = false;
};

}  // namespace ts3d
