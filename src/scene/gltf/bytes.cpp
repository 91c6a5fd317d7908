// SPDX-License-Identifier: MIT
#include "scene/gltf/bytes.h"

#include "base/byte_cursor.h"
#include "scene/gltf/file_reference.h"
#include "scene/gltf/unpack_view.h"

namespace scene::gltf {
namespace {

constexpr std::string_view kMagic = "glTF";
constexpr uint32_t kJsonChunk = 0x4e4f534a, kBinaryChunk = 0x004e4942;

/// A URI as messages show it.
std::string Shown(const std::string& uri) {
  constexpr size_t kLongest = 100;
  return "\"" + (uri.size() > kLongest ? uri.substr(0, kLongest) + "..." : uri) + "\"";
}

}  // namespace

FileParts SplitFile(std::string_view bytes) {
  if (!bytes.starts_with(kMagic)) return {bytes, {}, false};
  base::ByteCursor cursor(bytes.substr(kMagic.size()));
  if (const auto version = cursor.Number<uint32_t>(); version == 1)
    throw VersionFault("glTF 1.0 is too old; export the model as glTF 2.0");
  cursor.Number<uint32_t>();  // the size of the file, which the chunks tell better
  FileParts parts;
  for (bool isFirst = true; cursor.Remaining() >= 8; isFirst = false) {
    const auto size = cursor.Number<uint32_t>();
    const auto type = cursor.Number<uint32_t>();
    const std::string_view content = cursor.Bytes(size);
    // What some programs append is no chunk.
    if (cursor.Failed() && !isFirst && (type != kBinaryChunk || parts.hasBinary)) break;
    if (cursor.Failed()) throw Fault("the glTF file is cut off");
    if (isFirst && type == kJsonChunk) {
      parts.json = content;
    } else if (type == kBinaryChunk && !parts.hasBinary) {
      parts.binary = content;
      parts.hasBinary = true;
    }
  }
  if (parts.json.empty()) throw Fault("the glTF file is cut off or has no JSON at its start");
  return parts;
}

void BufferBytes::Open(const Document& document) {
  for (const Buffer& buffer : document.buffers) {
    const size_t index = buffers_.size();
    buffers_.emplace_back();
    try {
      buffers_[index] = OpenBuffer(buffer, index);
    } catch (const Fault& fault) {
      faults_[static_cast<uint32_t>(index)] = fault.what();
    }
  }
}

uint32_t BufferBytes::Add(Document& document, std::string bytes) {
  buffers_.push_back(decoded_.emplace_back(std::move(bytes)));
  document.buffers.push_back({"", buffers_.back().size()});
  return static_cast<uint32_t>(buffers_.size() - 1);
}

std::string_view BufferBytes::OpenBuffer(const Buffer& buffer, size_t index) {
  std::string_view bytes;
  if (IsDataUri(buffer.uri)) {
    bytes = decoded_.emplace_back(DecodeDataUri(buffer.uri));
  } else if (!buffer.uri.empty()) {
    bytes = OpenFile(buffer.uri);
  } else if (index == 0 && file_.hasBinary) {
    bytes = file_.binary;
  } else {
    // The stand-in of compressed data, which is told where somebody needs it.
    return {};
  }
  if (bytes.size() < buffer.size) {
    throw Fault(buffer.uri.empty() || IsDataUri(buffer.uri)
                    ? "its data is cut off"
                    : "the file " + Shown(buffer.uri) + " beside it is cut off");
  }
  return bytes.substr(0, static_cast<size_t>(buffer.size));
}

std::string_view BufferBytes::OpenFile(const std::string& uri) {
  const std::string path = PathBelowModel(uri);
  if (path.empty()) {
    throw Fault("its data is in " + Shown(uri) +
                ", which is not opened, as it is not below the model's folder");
  }
  if (folder_.empty())
    throw Fault("its data is in another file, " + Shown(uri) + "; convert it from a folder");
  const auto [file, isNew] = files_.try_emplace(path);
  std::string reason;
  std::string native;
  if (isNew && !platform::PathFromUtf8(path, native)) reason = "its name means nothing here";
  if (isNew && (native.empty() || !file->second.Open(folder_ + native, reason))) {
    throw Fault("its data is in the file " + Shown(uri) + " beside it, which cannot be opened: " + reason);
  }
  if (isNew) otherFiles_ += file->second.Bytes().size();
  return file->second.Bytes();
}

std::vector<std::string> BufferBytes::PathsOfOtherFiles() const {
  std::vector<std::string> paths;
  for (const auto& [path, file] : files_) paths.push_back(folder_ + path);
  return paths;
}

std::string_view BufferBytes::BytesOf(uint32_t buffer, uint64_t offset, uint64_t size) const {
  const std::string_view bytes = buffer == kNone ? std::string_view() : buffers_[buffer];
  if (const auto fault = faults_.find(buffer); fault != faults_.end()) throw Fault(fault->second);
  if (offset > bytes.size() || size > bytes.size() - offset)
    throw Fault("an accessor or a picture leads out of its data");
  return bytes.substr(static_cast<size_t>(offset), static_cast<size_t>(size));
}

void BufferBytes::Unpack(const Document& document, Budget& budget) {
  for (uint32_t i = 0; i < document.views.size(); ++i) {
    const BufferView& view = document.views[i];
    if (view.compressed.empty()) continue;
    const PackedView& packed = view.packed;
    const bool isPackedThere = packed.buffer != kNone && !buffers_[packed.buffer].empty();
    if (Has(view) && !(isPackedThere && CanUnpackViews())) continue;
    unpacked_[i] = UnpackView(view, BytesOf(packed.buffer, packed.offset, packed.size), budget);
  }
}

bool BufferBytes::Has(const BufferView& view) const {
  const uint64_t size = view.buffer == kNone ? 0 : buffers_[view.buffer].size();
  return size > 0 && view.offset <= size && view.size <= size - view.offset;
}

std::string_view BufferBytes::At(const Document& document, const Place& place, uint64_t size) const {
  const BufferView& view = document.views[place.view];
  if (place.offset > view.size || size > view.size - place.offset)
    throw Fault("an accessor or a picture leads out of its data");
  const auto unpacked = unpacked_.find(place.view);
  const std::string_view bytes =
      unpacked == unpacked_.end() ? BytesOf(view.buffer, view.offset, view.size) : unpacked->second;
  return bytes.substr(static_cast<size_t>(place.offset), static_cast<size_t>(size));
}

std::string_view BufferBytes::View(const Document& document, uint32_t view) const {
  return At(document, {view, 0}, document.views[view].size);
}

}  // namespace scene::gltf
