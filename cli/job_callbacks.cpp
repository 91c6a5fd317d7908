// SPDX-License-Identifier: MIT
#include "job_callbacks.h"

namespace cli {

JobCallbacks::JobCallbacks(ts3d::ConversionJob& job, StatusPrinter& printer, TextureConverter* textures)
    : job_(job), printer_(printer), textures_(textures) {
  job.callbackContext = this;
  job.statusCallback = OnStatus;
  if (!textures) return;
  job.textureCallback = OnTexture;
  job.offerTgaTextures = true;
}

void JobCallbacks::OnStatus(void* context, const char* line) {
  static_cast<JobCallbacks*>(context)->printer_.Print(line);
}

void JobCallbacks::OnTexture(void* context, const char* source, uint8_t* converted) {
  const auto& self = *static_cast<JobCallbacks*>(context);
  *converted = self.textures_->Provide(self.job_, source, *converted != 0) ? 1 : 0;
}

}  // namespace cli
