// SPDX-License-Identifier: MIT
#include "host/message_frames.h"

#include <cstdint>
#include <cstring>

namespace cli {

std::string FrameOf(std::string_view message) {
  const auto size = static_cast<uint32_t>(message.size());
  std::string frame(sizeof size, '\0');
  std::memcpy(frame.data(), &size, sizeof size);
  frame += message;
  return frame;
}

void TakeMessages(std::string& bytes, const std::function<void(std::string_view message)>& take) {
  uint32_t size = 0;
  size_t begin = 0;
  while (bytes.size() - begin >= sizeof size) {
    std::memcpy(&size, bytes.data() + begin, sizeof size);
    if (bytes.size() - begin - sizeof size < size) break;
    take(std::string_view(bytes).substr(begin + sizeof size, size));
    begin += sizeof size + size;
  }
  bytes.erase(0, begin);
}

}  // namespace cli
