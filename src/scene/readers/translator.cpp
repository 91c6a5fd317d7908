// SPDX-License-Identifier: MIT
#include "scene/readers/translator.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "platform/files.h"
#include "platform/helper_process.h"
#include "scene/readers/stream_words.h"

namespace scene::translation {
namespace {

constexpr uint64_t kMegabyte = 1 << 20;
constexpr const char* kProgram = "translate_model";
constexpr const char* kDamaged = "the stream of the translated model is damaged";

/// Of a processor. The libraries are fast, and their worst files are small.
uint64_t Seconds(uint64_t size) { return 20 + size / kMegabyte; }

/// Takes the line that `text` starts with.
std::string_view TakeLine(std::string_view& text) {
  const size_t end = text.find('\n');
  if (end == text.npos) throw Fault("the stream of the translated model is cut off");
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

/// What follows kLostWord: the number of points and the name.
LostJoint ReadLostJoint(std::string_view text) {
  LostJoint lost;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), lost.points);
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  if (error != std::errc() || !text.starts_with(' ')) throw Fault(kDamaged);
  lost.name = text.substr(1);
  return lost;
}

}  // namespace

uint64_t MostMemory(uint64_t size) { return 64 * kMegabyte + 16 * size; }

bool IsThere() { return platform::FileSize(platform::FindOwnPart(kProgram)) >= 0; }

Answer Run(const std::string& task, const std::string& folder, std::string_view input, uint64_t modelSize,
           uint64_t mostOutput, const std::function<void()>& wait) {
  platform::HelperAnswer answer = platform::RunHelper(
      platform::FindOwnPart(kProgram),
      {task, platform::NativePath(folder), std::to_string(MostMemory(modelSize) / kMegabyte),
       std::to_string(Seconds(modelSize))},
      input, static_cast<size_t>(std::min<uint64_t>(mostOutput, std::numeric_limits<size_t>::max())), wait);
  if (!answer.problem.empty()) throw Fault(answer.problem);
  return ReadStream(std::move(answer.output));
}

Answer ReadStream(std::string stream) {
  Answer answer{std::move(stream), 0, {}, {}};
  std::string_view rest = answer.stream;
  if (TakeLine(rest) != kStreamStart) throw Fault("what translates the model is of another version");
  for (;;) {
    const std::string_view line = TakeLine(rest);
    if (line == kDataWord) break;
    if (line.starts_with(kErrorWord)) throw Fault(std::string(line.substr(kErrorWord.size())));
    if (line.starts_with(kFileWord)) {
      answer.otherFiles.emplace_back(line.substr(kFileWord.size()));
    } else if (line.starts_with(kLostWord)) {
      answer.lostJoints.push_back(ReadLostJoint(line.substr(kLostWord.size())));
    } else {
      throw Fault(kDamaged);
    }
  }
  answer.start = answer.stream.size() - rest.size();
  return answer;
}

}  // namespace scene::translation
