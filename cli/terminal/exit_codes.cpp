// SPDX-License-Identifier: MIT
#include "terminal/exit_codes.h"

#include <utility>

#include "converter/describe_result.h"

namespace cli {
namespace {

constexpr std::pair<int, const char*> Known(int32_t code) { return {code, ts3d::DescribeResult(code)}; }

constexpr std::pair<int, const char*> kCodes[] = {
    {kSuccess, "success"},
    {kWarnings,
     "check, inspect or prove have found something wrong, diff a difference; with --strict: there are "
     "warnings"},
    {kUnreadable, "an input cannot be read; it is damaged or of a format that is not read"},
    {kNotWritten, "an output cannot be written; is its folder writable and the disk not full?"},
    Known(FBX_TO_TS3D_SKELETON_FAILED),
    {kNothingToDo, "there is no mesh to convert or to draw"},
    Known(FBX_TO_TS3D_DOCUMENT_UNREADABLE),
    Known(FBX_TO_TS3D_DOCUMENT_UNWRITABLE),
    Known(FBX_TO_TS3D_UPDATE_FAILED),
    {kConverterWrong, "prove has found an error of the converter"},
    {kUsageError, "wrong command line"},
    {kNoInput, "an input does not exist, or may not be read"},
    {kCrashed, "the conversion of a model crashed, or memory ran out; other models were converted"},
    {kOutputFailed, "standard output could not be written"},
    {kInterrupted, "interrupted (Ctrl-C); nothing half done is left"},
    {kTerminated, "ended by SIGTERM; nothing half done is left"}};

}  // namespace

const char* DescribeExitCode(int code) {
  for (const auto& [known, text] : kCodes) {
    if (known == code) return text;
  }
  return "unknown error";
}

const char* NameOfExitCode(int code) {
  if (code == kNoInput) return ts3d::NameOfResult(FBX_TO_TS3D_NO_FILE);
  return code == kUsageError ? "wrong-command-line" : code == kCrashed ? "crashed" : ts3d::NameOfResult(code);
}

std::string ExitCodeTable() {
  std::string table;
  for (const auto& [code, text] : kCodes) {
    const std::string number = std::to_string(code);
    table += "  " + std::string(3 - number.size(), ' ') + number + "  " + text + "\n";
  }
  return table + "  With several inputs it is that of the first one that failed.\n";
}

}  // namespace cli
