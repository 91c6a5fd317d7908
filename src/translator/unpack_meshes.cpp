// SPDX-License-Identifier: MIT
#include "translator/unpack_meshes.h"

#include <draco/compression/decode.h>

#include <cstring>
#include <stdexcept>
#include <vector>

#include "scene/readers/stream_words.h"
#include "translator/glb_data.h"

namespace translator {
namespace {

using scene::translation::PackedMesh;
using scene::translation::PackedNumbers;

std::string_view TakeBytes(std::string_view& from, size_t size) {
  if (size > from.size()) throw std::runtime_error("what is to be unpacked is cut off");
  const std::string_view bytes = from.substr(0, size);
  from.remove_prefix(size);
  return bytes;
}

template <class T>
T Take(std::string_view& from) {
  T value;
  std::memcpy(&value, TakeBytes(from, sizeof value).data(), sizeof value);
  return value;
}

void Append(uint32_t number, std::string& to) {
  to.append(reinterpret_cast<const char*>(&number), sizeof number);
}

std::unique_ptr<draco::Mesh> Decode(std::string_view bytes) {
  draco::DecoderBuffer buffer;
  buffer.Init(bytes.data(), bytes.size());
  auto mesh = draco::Decoder().DecodeMeshFromBuffer(&buffer);
  if (!mesh.ok())
    throw std::runtime_error(std::string("a compressed mesh is damaged: ") + mesh.status().error_msg());
  return std::move(mesh).value();
}

void AppendCorners(const draco::Mesh& mesh, std::string& to) {
  Append(3 * mesh.num_faces(), to);
  for (uint32_t i = 0; i < mesh.num_faces(); ++i) {
    for (const draco::PointIndex& point : mesh.face(draco::FaceIndex(i))) Append(point.value(), to);
  }
}

/// The numbers of every point, as values of `T`.
template <class T>
void AppendNumbers(const draco::PointAttribute& list, uint32_t points, std::string& to) {
  std::vector<T> element(list.num_components());
  for (uint32_t i = 0; i < points; ++i) {
    if (!list.ConvertValue<T>(list.mapped_index(draco::PointIndex(i)), element.data()))
      throw std::runtime_error("a compressed mesh has numbers that its accessors cannot hold");
    to.append(reinterpret_cast<const char*>(element.data()), element.size() * sizeof(T));
  }
}

void AppendList(draco::Mesh& mesh, const PackedNumbers& asked, std::string& to) {
  const int place = mesh.GetAttributeIdByUniqueId(asked.id);
  if (place < 0) throw std::runtime_error("a compressed mesh lacks an attribute that the file says it has");
  draco::PointAttribute& list = *mesh.attribute(place);
  if (list.num_components() != asked.width)
    throw std::runtime_error("an attribute of a compressed mesh is of another type than its accessor");
  if (asked.isNormalized) list.set_normalized(true);
  switch (asked.component) {
    case 5120:
      return AppendNumbers<int8_t>(list, mesh.num_points(), to);
    case 5121:
      return AppendNumbers<uint8_t>(list, mesh.num_points(), to);
    case 5122:
      return AppendNumbers<int16_t>(list, mesh.num_points(), to);
    case GlbData::kU16:
      return AppendNumbers<uint16_t>(list, mesh.num_points(), to);
    case GlbData::kU32:
      return AppendNumbers<uint32_t>(list, mesh.num_points(), to);
    default:
      return AppendNumbers<float>(list, mesh.num_points(), to);
  }
}

void UnpackMesh(std::string_view& request, std::string& answer) {
  const auto asked = Take<PackedMesh>(request);
  std::vector<PackedNumbers> lists;
  for (uint32_t i = 0; i < asked.lists; ++i) lists.push_back(Take<PackedNumbers>(request));
  const std::unique_ptr<draco::Mesh> mesh = Decode(TakeBytes(request, asked.bytes));
  Append(mesh->num_points(), answer);
  AppendCorners(*mesh, answer);
  for (const PackedNumbers& list : lists) {
    AppendList(*mesh, list, answer);
    constexpr size_t kPadding = scene::translation::kPadding;
    answer.resize((answer.size() + kPadding - 1) / kPadding * kPadding);
  }
}

}  // namespace

std::string UnpackMeshes(std::string_view request) {
  std::string answer;
  while (!request.empty()) UnpackMesh(request, answer);
  return answer;
}

}  // namespace translator
