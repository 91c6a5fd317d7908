// SPDX-License-Identifier: MIT
#include "convert/made_with.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string_view>

#include "host/replace_files.h"
#include "prove/sha256.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// Options that decide what a package holds. Files with settings have a date.
/// Options that packages do not depend on. All others count, so that none is missed.
constexpr std::array<std::string_view, 13> kWithoutEffect = {
    "--output", "--files-from", "--base",  "--jobs",   "--report", "--prove",  "--update",
    "--watch",  "--timings",    "--force", "--strict", "--quiet",  "--verbose"};

std::string HashOf(std::string_view bytes) {
  prove::Sha256 hash;
  hash.Add(bytes);
  return hash.Finish();
}

std::string WholeFile(const fs::path& path) {
  std::ifstream file(platform::ForStream(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Empty when no option shapes the package.
bool HasEffect(std::string_view word) {
  const std::string_view name = word.substr(0, word.find('='));
  return std::find(kWithoutEffect.begin(), kWithoutEffect.end(), name) == kWithoutEffect.end();
}

/// Empty when there are no options that packages depend on.
std::string HashOfOptions(const ConvertOptions& options) {
  std::string words;
  for (const std::string& word : options.words) {
    // The value of an option may be empty, and a word of its own then.
    if (!word.empty() && HasEffect(word)) words += word + '\0';
  }
  return words.empty() ? words : HashOf(words);
}

fs::path RecordOf(const ModelTask& task) {
  return task.folder / ("." + task.Package().filename().string() + ".options");
}

/// The end of a record: about another package, one that somebody has made again since, it says nothing.
std::string PackageLine(const fs::path& package) {
  return " options\n" + HashOf(WholeFile(package)) + " package\n";
}

}  // namespace

bool WasMadeWith(const ModelTask& task, const ConvertOptions& options) {
  const std::string record = WholeFile(RecordOf(task)), fingerprint = HashOfOptions(options);
  if (record.empty()) return fingerprint.empty();
  const std::string line = PackageLine(task.Package());
  return fingerprint.empty() ? !record.ends_with(line) : record == fingerprint + line;
}

void RememberOptions(const ModelTask& task, const ConvertOptions& options) {
  const fs::path record = RecordOf(task);
  const std::string fingerprint = HashOfOptions(options);
  std::error_code ignored;
  if (fingerprint.empty()) {
    fs::remove(record, ignored);
    return;
  }
  try {
    ReplaceFiles(task.folder, {{record.filename().string(), fingerprint + PackageLine(task.Package())}});
  } catch (const Failure&) {
    // What is not remembered is made again.
    fs::remove(record, ignored);
  }
}

}  // namespace cli
