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
  if (!statusCallback && !onLine) return;
  const NoticeText& text = TextOf(notice);
  StatusLine line{notice, value, second, {}, true};
  if (text.tag) {
    SendLine(line, ComposeMessage("***", text.tag, ":", value).c_str());
    line.isFirst = false;
  }
  for (const char* words : text.lines) {
    if (!words) return;
    const bool isFixed = std::string_view(words).find(kPlace) == std::string_view::npos;
    SendLine(line, isFixed ? words : Filled(words, value, second).c_str());
    line.isFirst = false;
  }
}

void StatusChannel::SendOnce(Notice notice) const {
  if (wasSent_) return;
  wasSent_ = true;
  Send(notice);
}

void StatusChannel::SendLine(StatusLine line, const char* text) const {
  if (statusCallback) statusCallback(callbackContext, text);
  if (!onLine) return;
  line.text = text;
  // A few lines bring their own line end.
  while (line.text.ends_with('\n')) line.text.remove_suffix(1);
  onLine(line);
}

}  // namespace ts3d
