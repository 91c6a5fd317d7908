// SPDX-License-Identifier: MIT
#include "convert/job_host.h"

namespace cli {
namespace {

void FBX_TO_TS3D_CALL TakeTexture(void* host, const char* source, uint8_t* converted) {
  *converted = static_cast<JobHost*>(host)->onTexture(source, *converted != 0) ? 1 : 0;
}

}  // namespace

std::string PackedLine(const ts3d::StatusLine& line) {
  std::string packed(1, static_cast<char>(line.notice));
  packed += line.value.substr(0, line.value.find('\0'));
  packed += '\0';
  packed += line.text;
  return packed;
}

ts3d::StatusLine UnpackedLine(std::string_view packed) {
  ts3d::StatusLine line{static_cast<ts3d::Notice>(packed[0]), packed.substr(1, packed.find('\0', 1) - 1)};
  line.text = packed.substr(line.value.size() + 2);
  return line;
}

void JobHost::Attach(ts3d::ConversionJob& job) {
  job.status.callbackContext = this;
  job.status.onLine = onStatus;
  job.textureCallback = onTexture ? TakeTexture : nullptr;
}

}  // namespace cli
