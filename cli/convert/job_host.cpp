// SPDX-License-Identifier: MIT
#include "convert/job_host.h"

namespace cli {
namespace {

void FBX_TO_TS3D_CALL TakeStatus(void* host, const char* text) {
  // A few lines bring their own line end.
  std::string_view line(text);
  while (line.ends_with('\n')) line.remove_suffix(1);
  static_cast<JobHost*>(host)->onStatus(line);
}

void FBX_TO_TS3D_CALL TakeTexture(void* host, const char* source, uint8_t* converted) {
  *converted = static_cast<JobHost*>(host)->onTexture(source, *converted != 0) ? 1 : 0;
}

}  // namespace

void JobHost::Attach(ts3d::ConversionJob& job) {
  job.status.callbackContext = this;
  job.status.statusCallback = TakeStatus;
  job.textureCallback = onTexture ? TakeTexture : nullptr;
}

}  // namespace cli
