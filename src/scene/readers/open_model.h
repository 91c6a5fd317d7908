// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

#include "platform/files.h"
#include "scene/readers/reader_registry.h"

namespace scene {

/// The file of a model; null, with `status` set, when it cannot be opened.
std::shared_ptr<platform::MappedFile> OpenModelFile(std::string_view path, KFbxImportStatus& status);

}  // namespace scene
