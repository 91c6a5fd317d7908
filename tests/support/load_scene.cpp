// SPDX-License-Identifier: MIT
#include "support/load_scene.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "scene/assemble/build_scene.h"
#include "scene/container/array_reader.h"
#include "scene/container/container.h"
#include "scene/fbx_reader.h"
#include "scene/model/walk_nodes.h"

namespace support {
namespace {

using scene::RecordRef;
using scene::Value;

/// A tree over a copy of `bytes` that ends where they end, so that a reader that goes on is caught.
std::shared_ptr<scene::RecordTree> TreeOver(std::string_view bytes) {
  std::shared_ptr<char[]> copy(new char[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), copy.get());
  auto tree = std::make_shared<scene::RecordTree>();
  tree->bytes = {copy.get(), bytes.size()};
  tree->storage = std::move(copy);
  return tree;
}

std::string DumpNumber(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.10g", number);
  return text;
}

std::string DumpList(RecordRef record) {
  scene::FbxArray<double> numbers;
  if (!ReadArray(record, numbers)) return "[damaged]";
  std::string text;
  for (const double n : numbers.View()) text += (text.empty() ? "" : " ") + DumpNumber(n);
  return "[" + text + "]";
}

std::string DumpValue(RecordRef record, const Value& value) {
  switch (value.kind) {
    case Value::Kind::Integer:
      return std::to_string(value.integer);
    case Value::Kind::Real:
      return DumpNumber(value.real);
    case Value::Kind::Text:
      return "\"" + std::string(value.Span()) + "\"";
    case Value::Kind::Bytes:
      return "<" + std::string(value.Span()) + ">";
    default:
      return DumpList(record);
  }
}

std::string DumpRecord(RecordRef record) {
  std::string text(record.Name());
  for (size_t i = 0; i < record.ValueCount(); ++i) {
    text += (i ? "," : ":") + DumpValue(record, *record.ValueAt(i));
  }
  std::string children;
  for (const RecordRef child : record) children += (children.empty() ? "" : " ") + DumpRecord(child);
  return children.empty() ? text : text + "{" + children + "}";
}

}  // namespace

std::string ReadResult::Dump() const {
  std::string text;
  for (uint32_t i = 0; i < tree->records.size(); i = tree->records[i].end) {
    text += (text.empty() ? "" : " ") + DumpRecord({tree.get(), i});
  }
  return text;
}

ReadResult ReadRecords(std::string_view file) {
  ReadResult result{TreeOver(file), {}};
  result.error = ReadFbxRecords(*result.tree).text;
  return result;
}

ReadResult ReadAsciiText(std::string_view text) {
  ReadResult result{TreeOver(text), {}};
  result.tree->ascii = true;
  result.tree->version = 7400;
  result.error = ReadAsciiRecords(*result.tree).text;
  return result;
}

std::unique_ptr<scene::KFbxScene> LoadSceneBytes(std::string_view file) {
  ReadResult result = ReadRecords(file);
  if (!result.error.empty()) throw std::runtime_error(result.error);
  auto scene = std::make_unique<scene::KFbxScene>("scene");
  BuildScene(std::move(result.tree), *scene);
  return scene;
}

std::unique_ptr<scene::KFbxScene> LoadScene(const FbxFile& file, Container container) {
  const FbxRecords records = file.Records();
  return LoadSceneBytes(container == Container::Binary ? WriteBinary(records) : WriteAscii(records));
}

scene::KFbxNode* FindNode(scene::KFbxScene& scene, std::string_view name) {
  scene::KFbxNode* found = nullptr;
  WalkNodes(*scene.GetRootNode(), [&](scene::KFbxNode& node) {
    if (!found && node.GetName() == name) found = &node;
    return scene::Below::Visit;
  });
  return found;
}

std::string ChildNames(const scene::KFbxNode& node) {
  std::string names;
  for (int i = 0; i < node.GetChildCount(); ++i) names += (i ? " " : "") + node.GetChild(i)->GetName();
  return names;
}

}  // namespace support
