// SPDX-License-Identifier: MIT
#include "core/status_channel.h"

#include <string>

#include "core/trace.h"

namespace ts3d {
namespace {

constexpr std::string_view kPlace = "{}";

/// `line` with `value` and then `second` in the places for them.
std::string Filled(std::string_view line, std::string_view value, std::string_view second) {
  const size_t first = line.find(kPlace);
  const std::string_view rest = line.substr(first + kPlace.size());
  const size_t next = rest.find(kPlace);
  if (next == std::string_view::npos) return ComposeMessage(line.substr(0, first), value, rest);
  return ComposeMessage(line.substr(0, first), value, rest.substr(0, next), second,
                        rest.substr(next + kPlace.size()));
}

}  // namespace

void StatusChannel::Send(Notice notice, std::string_view value, std::string_view second) const {
  if (onNotice) onNotice(notice, value);
  if (!statusCallback) return;
  const NoticeText& text = TextOf(notice);
  if (text.tag) ReportTagged(value, text.tag);
  for (const char* line : text.lines) {
    if (!line) return;
    const bool isFixed = std::string_view(line).find(kPlace) == std::string_view::npos;
    StatusLog(isFixed ? line : Filled(line, value, second).c_str());
  }
}

void StatusChannel::SendOnce(Notice notice) const {
  if (wasSent_) return;
  wasSent_ = true;
  Send(notice);
}

void StatusChannel::StatusLog(const char* text) const {
  if (statusCallback) statusCallback(callbackContext, text);
}

void StatusChannel::ReportTagged(std::string_view text, std::string_view tag) const {
  StatusLog(ComposeMessage("***", tag, ":", text).c_str());
}

}  // namespace ts3d
