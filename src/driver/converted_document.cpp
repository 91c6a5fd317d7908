// SPDX-License-Identifier: MIT
#include "driver/converted_document.h"

#include <cstdlib>
#include <string_view>

#include "driver/detect_actor_type.h"
#include "driver/document_lists.h"
#include "platform/files.h"

namespace ts3d {
namespace {

void CutAll(std::string& text, std::string_view begin, std::string_view end) {
  for (size_t at = 0; (at = text.find(begin, at)) != std::string::npos;) {
    const size_t last = text.find(end, at);
    if (last == std::string::npos) return;
    text.erase(at, last + end.size() - at);
  }
}

/// A finished document without what final settings add: materials have the names of their files again.
std::string WithoutFinalSettings(std::string document) {
  CutAll(document, "\n\n<morphs>\n<!--\n", "</morphs>\n");
  CutAll(document, "<switches>\n", "</switches>\n\n");
  CutAll(document, "<glance_adjust>", "</glance_adjust>\n");
  constexpr std::string_view kBegin = "<material_file name=\"";
  constexpr int kProductBody = 150;  // "body", which a mesh may be called as well
  const std::string finished = document;
  for (const ListedMaterial& line : ReadMaterialLines(finished)) {
    if (std::atoi(std::string(line.thread).c_str()) < kProductBody) continue;
    const std::string mesh(line.file.substr(0, line.file.rfind('.')));
    std::string written(kBegin);
    written.append(line.name).append("\" threadID=\"").append(line.thread);
    const size_t at = document.find(written);
    if (at != std::string::npos) document.replace(at + kBegin.size(), line.name.size(), mesh);
  }
  return document;
}

}  // namespace

std::string WithLineFeeds(std::string text) {
  std::erase(text, '\r');
  return text;
}

std::string ConvertedDocument(const std::vector<std::string>& documents) {
  if (documents.empty()) return {};
  std::string converted = WithLineFeeds(documents.front());
  const bool isFinished = converted.find("<switches>") != std::string::npos;
  return isFinished ? WithoutFinalSettings(WithLineFeeds(documents.back())) : converted;
}

ActorType ActorTypeOf(std::string_view document) {
  const std::string_view object = TakeBetween(document, "<object_id>", "</object_id>");
  return DetectActorType("\\" + std::string(object));
}

}  // namespace ts3d
