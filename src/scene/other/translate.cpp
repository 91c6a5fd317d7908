// SPDX-License-Identifier: MIT
#include "scene/other/translate.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/files.h"
#include "platform/helper_process.h"
#include "scene/other/stream_words.h"

namespace scene::other {
namespace {

/// What a file of `size` bytes may take; the promise of SECURITY.md.
uint64_t Megabytes(uint64_t size) { return 64 + 16 * size / (1 << 20); }

/// Of a processor. The library is fast, and its worst files are small.
uint64_t Seconds(uint64_t size) { return 20 + size / (1 << 20); }

/// Takes the line that `text` starts with.
std::string_view TakeLine(std::string_view& text) {
  const size_t end = text.find('\n');
  if (end == text.npos) throw Fault("the stream of the translated model is cut off");
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

}  // namespace

Translation Translate(const ModelKind& kind, std::string_view model, const std::string& folder,
                      const std::function<void()>& wait) {
  const std::string program = platform::FindOwnPart("translate_model");
  if (platform::FileSize(program) < 0) {
    throw Fault(std::string(kind.name) + " models are read by the library assimp, and this " +
#ifdef _WIN32
                "system has none for it: export the model as FBX or glTF");
#else
                "was built without it: install libassimp-dev and build again, or export the model as FBX or "
                "glTF");
#endif
  }
  const uint64_t most = Megabytes(model.size());
  // What it becomes takes part of the memory that the rest of the import has.
  const auto mostOutput =
      static_cast<size_t>(std::min<uint64_t>((most << 20) / 4, std::numeric_limits<size_t>::max()));
  platform::HelperAnswer answer =
      platform::RunHelper(program,
                          {kind.ending, platform::NativePath(folder), std::to_string(most),
                           std::to_string(Seconds(model.size()))},
                          model, mostOutput, wait);
  if (!answer.problem.empty()) throw Fault(answer.problem);
  return ReadStream(std::move(answer.output));
}

Translation ReadStream(std::string stream) {
  Translation translation{std::move(stream), 0, {}};
  std::string_view rest = translation.stream;
  if (TakeLine(rest) != kStreamStart) throw Fault("what translates the model is of another version");
  for (;;) {
    const std::string_view line = TakeLine(rest);
    if (line == kDataWord) break;
    if (line.starts_with(kErrorWord)) throw Fault(std::string(line.substr(kErrorWord.size())));
    if (!line.starts_with(kFileWord)) throw Fault("the stream of the translated model is damaged");
    translation.otherFiles.emplace_back(line.substr(kFileWord.size()));
  }
  translation.start = translation.stream.size() - rest.size();
  return translation;
}

}  // namespace scene::other
