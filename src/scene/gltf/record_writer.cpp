// SPDX-License-Identifier: MIT
#include "scene/gltf/record_writer.h"

namespace scene::gltf {

RecordWriter& RecordWriter::Begin(std::string_view name) {
  Record record;
  record.name = name;
  record.firstValue = static_cast<uint32_t>(tree_.values.size());
  open_.push_back(static_cast<uint32_t>(tree_.records.size()));
  tree_.records.push_back(record);
  return *this;
}

void RecordWriter::End() {
  tree_.records[open_.back()].end = static_cast<uint32_t>(tree_.records.size());
  open_.pop_back();
}

RecordWriter& RecordWriter::Add(const Value& value) {
  tree_.values.push_back(value);
  ++tree_.records[open_.back()].valueCount;
  return *this;
}

RecordWriter& RecordWriter::Integer(int64_t integer) {
  Value value;
  value.integer = integer;
  return Add(value);
}

RecordWriter& RecordWriter::Real(double real) {
  Value value;
  value.kind = Value::Kind::Real;
  value.real = real;
  return Add(value);
}

RecordWriter& RecordWriter::Text(std::string_view text) {
  Bytes(tree_.decodedTexts.emplace_back(text));
  tree_.values[tree_.values.size() - 1].kind = Value::Kind::Text;
  return *this;
}

RecordWriter& RecordWriter::Data(std::string bytes) {
  tree_.unpackedBytes += bytes.size();
  return Bytes(tree_.decodedTexts.emplace_back(std::move(bytes)));
}

RecordWriter& RecordWriter::Bytes(std::string_view bytes) {
  Value value;
  value.kind = Value::Kind::Bytes;
  value.data = bytes.data();
  value.size = bytes.size();
  return Add(value);
}

RecordWriter& RecordWriter::Copy(std::span<const double> numbers) {
  const std::string& kept =
      tree_.decodedTexts.emplace_back(reinterpret_cast<const char*>(numbers.data()), numbers.size_bytes());
  tree_.unpackedBytes += kept.size();
  return AddList('d', kept, numbers.size());
}

RecordWriter& RecordWriter::AddList(char element, std::string_view bytes, size_t count) {
  Value value;
  value.kind = Value::Kind::Array;
  value.element = element;
  value.count = static_cast<uint32_t>(count);
  value.data = bytes.data();
  value.size = bytes.size();
  return Add(value);
}

RecordWriter& RecordWriter::Later(size_t count, ArrayMaker maker) {
  Value value;
  value.kind = Value::Kind::Made;
  value.count = static_cast<uint32_t>(count);
  value.maker = &tree_.arrayMakers.emplace_back(std::move(maker));
  return Add(value);
}

}  // namespace scene::gltf
