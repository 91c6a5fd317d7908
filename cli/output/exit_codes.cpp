// SPDX-License-Identifier: MIT
#include "output/exit_codes.h"

#include <utility>

#include "converter/describe_result.h"

namespace cli {
namespace {

constexpr std::pair<int, const char*> Known(int32_t code) { return {code, ts3d::DescribeResult(code)}; }

constexpr std::pair<int, const char*> kCodes[] = {
    Known(FBX_TO_TS3D_OK),
    Known(FBX_TO_TS3D_NO_FILE),
    Known(FBX_TO_TS3D_LOAD_FAILED),
    Known(FBX_TO_TS3D_PACKAGE_FAILED),
    Known(FBX_TO_TS3D_SKELETON_FAILED),
    Known(FBX_TO_TS3D_NO_MESH),
    Known(FBX_TO_TS3D_DOCUMENT_UNREADABLE),
    Known(FBX_TO_TS3D_DOCUMENT_UNWRITABLE),
    Known(FBX_TO_TS3D_UPDATE_FAILED),
    {kUsageError, "wrong command line"},
    {kCrashed, "the conversion crashed; the model is told, and the others were converted"},
    {kOutputFailed, "standard output could not be written"},
    {kInterrupted, "interrupted; nothing half done is left"}};

}  // namespace

const char* DescribeExitCode(int code) {
  for (const auto& [known, text] : kCodes) {
    if (known == code) return text;
  }
  return "unknown error";
}

const char* NameOfExitCode(int code) {
  return code == kUsageError ? "wrong-command-line" : code == kCrashed ? "crashed" : ts3d::NameOfResult(code);
}

std::string ExitCodeTable() {
  std::string table;
  for (const auto& [code, text] : kCodes) {
    const std::string number = std::to_string(code);
    table += "  " + std::string(3 - number.size(), ' ') + number + "  " + text + "\n";
  }
  return table;
}

}  // namespace cli
