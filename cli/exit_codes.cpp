// SPDX-License-Identifier: MIT
#include "exit_codes.h"

#include <utility>

#include "fbx_to_ts3d.h"

namespace cli {
namespace {

constexpr std::pair<int, const char*> kCodes[] = {
    {FBX_TO_TS3D_OK, "success"},
    {FBX_TO_TS3D_NO_FILE, "the model file does not exist"},
    {FBX_TO_TS3D_LOAD_FAILED, "the model could not be loaded; it is damaged or of a format that is not read"},
    {FBX_TO_TS3D_PACKAGE_FAILED,
     "the package could not be written; is its folder writable and the disk not full?"},
    {FBX_TO_TS3D_SKELETON_FAILED, "the skeleton file could not be written; is the model's folder writable?"},
    {FBX_TO_TS3D_NO_MESH, "the model has no mesh to convert"},
    {FBX_TO_TS3D_DOCUMENT_UNREADABLE,
     "the .xfg document beside the model is missing, cannot be read or lacks a section; convert the model "
     "again"},
    {FBX_TO_TS3D_DOCUMENT_UNWRITABLE, "the .xfg document could not be written; is its folder writable?"},
    {FBX_TO_TS3D_UPDATE_FAILED, "the package could not be opened or extended; it is as it was"},
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

std::string ExitCodeTable() {
  std::string table;
  for (const auto& [code, text] : kCodes) {
    const std::string number = std::to_string(code);
    table += "  " + std::string(3 - number.size(), ' ') + number + "  " + text + "\n";
  }
  return table;
}

}  // namespace cli
