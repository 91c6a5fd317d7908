// SPDX-License-Identifier: MIT
#include <windows.h>

#include <algorithm>

#include "platform/file_system.h"
#include "platform/process.h"
#include "platform/wide_paths_windows.h"

namespace platform {
namespace {

struct Word {
  std::wstring text;
  bool hasWildcards = false;  ///< outside of quotes
};

/// Takes the first word off `line`, quoted as programs on Windows take it: backslashes count before quotes only.
Word TakeWord(std::wstring_view& line) {
  Word word;
  bool isQuoted = false;
  while (!line.empty() && (isQuoted || (line[0] != L' ' && line[0] != L'\t'))) {
    const size_t backslashes = std::min(line.find_first_not_of(L'\\'), line.size());
    line.remove_prefix(backslashes);
    if (line.empty() || line[0] != L'"') {
      word.text.append(backslashes, L'\\');
      if (line.empty() || backslashes > 0) continue;
      word.hasWildcards |= !isQuoted && (line[0] == L'*' || line[0] == L'?');
      word.text += line[0];
    } else {
      word.text.append(backslashes / 2, L'\\');
      if (backslashes % 2 == 1) {
        word.text += L'"';
      } else if (isQuoted && line.size() > 1 && line[1] == L'"') {
        word.text += L'"';
        line.remove_prefix(1);
      } else {
        isQuoted = !isQuoted;
      }
    }
    line.remove_prefix(1);
  }
  line.remove_prefix(std::min(line.find_first_not_of(L" \t"), line.size()));
  return word;
}

/// What the last name of the pattern matches, sorted; none where a folder has a wildcard.
std::vector<std::string> Expand(const std::wstring& pattern) {
  std::vector<std::string> found;
  const size_t name = pattern.find_last_of(L"\\/") + 1;
  if (pattern.starts_with(L'-') || pattern.find_first_of(L"*?") < name) return found;
  WIN32_FIND_DATAW entry;
  void* const search = FindFirstFileW(CallPath(pattern).c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return found;
  do {
    const std::wstring_view text = entry.cFileName;
    if (text != L"." && text != L"..")
      found.push_back(Utf8Text(pattern.substr(0, name) + std::wstring(text)));
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace

std::vector<std::string> CommandLineWords(int, char**) {
  std::vector<std::string> words;
  std::wstring_view line = GetCommandLineW();
  // The program's own name knows no backslashes before quotes.
  const size_t end = line.starts_with(L'"') ? line.find(L'"', 1) : line.find_first_of(L" \t");
  line.remove_prefix(std::min(end, line.size()));
  if (line.starts_with(L'"')) line.remove_prefix(1);
  line.remove_prefix(std::min(line.find_first_not_of(L" \t"), line.size()));
  while (!line.empty()) {
    const Word word = TakeWord(line);
    const std::vector<std::string> found = word.hasWildcards ? Expand(word.text) : std::vector<std::string>();
    words.insert(words.end(), found.begin(), found.end());
    if (found.empty()) words.push_back(Utf8Text(word.text));
  }
  return words;
}

}  // namespace platform
