// SPDX-License-Identifier: MIT
#include "finish/apply_finish_settings.h"

#include "driver/final_settings.h"
#include "host/host_paths.h"

namespace cli {

int ApplyFinishSettings(const std::string& model, const FinishSettings& settings,
                        const std::optional<std::string>& document, ts3d::ConversionJob& job) {
  if (settings.rotationX) job.rotationX = *settings.rotationX;
  if (settings.rotationY) job.rotationY = *settings.rotationY;
  job.boneRenameList = JoinList(settings.boneRenames);
  job.nextMeshThreadId = job.nextMaterialThreadId = ts3d::kFirstThreadId;
  constexpr double kFullSize = 100.0;
  const ts3d::FinalSettings finalSettings{ConverterPath(model),
                                          static_cast<float>(settings.scalePercent.value_or(kFullSize)),
                                          JoinList(settings.meshes), ts3d::Unnamed::Keep, document};
  return static_cast<int>(ts3d::ApplyFinalSettings(job, finalSettings));
}

}  // namespace cli
