// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

#include "core/notices.h"
#include "fbx_to_ts3d.h"

namespace ts3d {

/// The way to the host's status callback.
class StatusChannel {
 public:
  void* callbackContext = nullptr;
  FbxToTs3dStatusCallback statusCallback = nullptr;
  /// Told of each notice before the host is. May be empty.
  std::function<void(Notice notice, std::string_view value)> onNotice;

  /// Sends the lines of `notice`; without values or with no callback it takes no memory.
  void Send(Notice notice, std::string_view value = {}, std::string_view second = {}) const;
  /// The same, but only the first time: hosts show it in a dialog.
  void SendOnce(Notice notice) const;
  /// What was sent once may be sent again.
  void ForgetSent() { wasSent_ = false; }

 private:
  /// Sends `text` to the host as it stands; does nothing without a callback.
  void StatusLog(const char* text) const;
  /// Sends the coded warning "***" + `tag` + ":" + `text`.
  void ReportTagged(std::string_view text, std::string_view tag) const;

  mutable bool wasSent_ = false;
};

}  // namespace ts3d
