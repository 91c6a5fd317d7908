// SPDX-License-Identifier: MIT
#include "support/fbx_builder.h"

#include <zlib.h>

#include <bit>
#include <charconv>
#include <cstring>
#include <stdexcept>

namespace support {
namespace {

using namespace std::string_literals;

bool IsArray(char code) { return std::strchr("fdilbc", code) != nullptr; }

class BinaryWriter {
 public:
  explicit BinaryWriter(const BinaryFormat& format)
      : bigEndian_(format.bigEndian), wide_(format.version >= 7500) {
    out_ = "Kaydara FBX Binary  \0\x1a"s;
    out_ += bigEndian_ ? '\1' : '\0';
    Put(format.version);
  }

  void Write(const FbxRecord& record) {
    const size_t start = out_.size();
    NullRecord();
    out_.back() = static_cast<char>(record.name.size());
    out_ += record.name;
    const size_t valuesBegin = out_.size();
    for (const FbxValue& value : record.values) Write(value);
    const size_t valuesEnd = out_.size();
    for (const FbxRecord& child : record.children) Write(child);
    if (!record.children.empty() && record.nullRecord) NullRecord();
    SetWord(start, 0, record.endOffsetZero ? 0 : out_.size());
    SetWord(start, 1, record.values.size());
    SetWord(start, 2, valuesEnd - valuesBegin);
  }

  void NullRecord() { out_.append(wide_ ? 25 : 13, '\0'); }

  std::string Take() { return std::move(out_); }

 private:
  template <typename T>
  std::string Bytes(T value) const {
    std::string raw(sizeof value, '\0');
    std::memcpy(raw.data(), &value, sizeof value);
    const bool swap = bigEndian_ != (std::endian::native == std::endian::big);
    return swap ? std::string(raw.rbegin(), raw.rend()) : raw;
  }
  template <typename T>
  void Put(T value) {
    out_ += Bytes(value);
  }

  void SetWord(size_t start, size_t index, size_t value) {
    const std::string bytes =
        wide_ ? Bytes(static_cast<uint64_t>(value)) : Bytes(static_cast<uint32_t>(value));
    out_.replace(start + index * bytes.size(), bytes.size(), bytes);
  }

  std::string NumberBytes(char code, double real, int64_t whole) const {
    const auto isOneOf = [&](const char* codes) { return std::strchr(codes, code) != nullptr; };
    if (isOneOf("CBZbc")) return Bytes(static_cast<uint8_t>(whole));
    if (isOneOf("Y")) return Bytes(static_cast<int16_t>(whole));
    if (isOneOf("Ii")) return Bytes(static_cast<int32_t>(whole));
    if (isOneOf("Ll")) return Bytes(whole);
    return isOneOf("Ff") ? Bytes(static_cast<float>(real)) : Bytes(real);
  }

  void Write(const FbxValue& value) {
    out_ += value.code;
    if (IsArray(value.code)) return WriteArray(value);
    if (value.code != 'S' && value.code != 'R') {
      out_ += NumberBytes(value.code, value.real, value.whole);
      return;
    }
    const std::string bytes =
        value.objectClass.empty() ? value.bytes : value.bytes + "\0\1"s + value.objectClass;
    Put(static_cast<uint32_t>(bytes.size()));
    out_ += bytes;
  }

  void WriteArray(const FbxValue& value) {
    std::string elements;
    const bool real = value.code == 'f' || value.code == 'd';
    for (const double n : value.numbers) {
      elements += NumberBytes(value.code, n, real ? 0 : static_cast<int64_t>(n));
    }
    if (value.packed) {
      std::string packed(compressBound(elements.size()), '\0');
      uLongf size = packed.size();
      if (compress(reinterpret_cast<Bytef*>(packed.data()), &size,
                   reinterpret_cast<const Bytef*>(elements.data()), elements.size()) != Z_OK) {
        throw std::runtime_error("compress");
      }
      elements = packed.substr(0, size);
    }
    Put(static_cast<uint32_t>(value.numbers.size()));
    Put(static_cast<uint32_t>(value.packed ? 1 : 0));
    Put(static_cast<uint32_t>(elements.size()));
    out_ += elements;
  }

  bool bigEndian_;
  bool wide_;
  std::string out_;
};

std::string NumberText(double number) {
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string Quoted(const FbxValue& value) {
  std::string text = "\"" + (value.objectClass.empty() ? "" : value.objectClass + "::");
  for (const char c : value.bytes) text += c == '"' ? "&quot;" : std::string(1, c);
  return text + "\"";
}

std::string AsciiValue(const FbxValue& value) {
  if (value.code == 'S' || value.code == 'R') return Quoted(value);
  if (value.code == 'F' || value.code == 'D') return NumberText(value.real);
  if (!IsArray(value.code)) return std::to_string(value.whole);
  std::string text = "*" + std::to_string(value.numbers.size()) + " {\n a: ";
  for (size_t i = 0; i < value.numbers.size(); ++i) text += (i ? "," : "") + NumberText(value.numbers[i]);
  return text + "\n}";
}

void AppendAscii(const FbxRecord& record, std::string& out) {
  out += record.name + ": ";
  for (size_t i = 0; i < record.values.size(); ++i) out += (i ? ", " : "") + AsciiValue(record.values[i]);
  if (!record.children.empty()) {
    out += " {\n";
    for (const FbxRecord& child : record.children) AppendAscii(child, out);
    out += "}";
  }
  out += "\n";
}

/// Records that are called otherwise than the class in their objects' names.
std::string ClassOf(const std::string& record, const std::string& subType) {
  return subType == "Cluster" || subType == "BlendShapeChannel" ? "SubDeformer" : record;
}

}  // namespace

FbxValue FbxValue::Number(char code, double number) {
  FbxValue value(number);
  value.code = code;
  if (code != 'F' && code != 'D') value.whole = static_cast<int64_t>(number);
  return value;
}

FbxValue FbxValue::Raw(std::string bytes) {
  FbxValue value(std::move(bytes));
  value.code = 'R';
  return value;
}

FbxValue FbxValue::Name(std::string_view name, std::string_view objectClass) {
  FbxValue value{std::string(name)};
  value.objectClass = objectClass;
  return value;
}

FbxValue FbxValue::Array(char code, std::vector<double> numbers) {
  FbxValue value(0);
  value.code = code;
  value.numbers = std::move(numbers);
  return value;
}

FbxValue FbxValue::PackedArray(char code, std::vector<double> numbers) {
  FbxValue value = Array(code, std::move(numbers));
  value.packed = true;
  return value;
}

std::string WriteBinary(const FbxRecords& records, const BinaryFormat& format) {
  BinaryWriter writer(format);
  for (const FbxRecord& record : records) writer.Write(record);
  if (format.nullRecord) writer.NullRecord();
  return writer.Take();
}

std::string WriteAscii(const FbxRecords& records) {
  std::string text = "; FBX 7.4.0 project file\n";
  for (const FbxRecord& record : records) AppendAscii(record, text);
  return text;
}

std::string Patched(std::string bytes, size_t offset, uint32_t word) {
  for (size_t i = 0; i < 4; ++i) bytes.at(offset + i) = static_cast<char>(word >> (8 * i) & 0xff);
  return bytes;
}

FbxRecord Doubles(std::string name, std::vector<double> numbers) {
  return {std::move(name), {FbxValue::Array('d', std::move(numbers))}};
}

FbxRecord Ints(std::string name, std::vector<double> numbers) {
  return {std::move(name), {FbxValue::Array('i', std::move(numbers))}};
}

FbxRecord LayerElement(std::string type, int number, const char* mapping, const char* reference,
                       FbxRecords arrays) {
  FbxRecord element(std::move(type), {number}, std::move(arrays));
  element.Add({"MappingInformationType", {mapping}});
  element.Add({"ReferenceInformationType", {reference}});
  return element;
}

FbxRecord Property(std::string name, FbxValues values) {
  FbxRecord property("P", {std::move(name), "", "", "A"});
  property.values.insert(property.values.end(), values.begin(), values.end());
  return property;
}

FbxRecord Properties(FbxRecords properties) { return {"Properties70", {}, std::move(properties)}; }

Matrix16 Identity() { return Translation(0, 0, 0); }
Matrix16 Translation(double x, double y, double z) {
  return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

FbxRecord& FbxFile::Object(std::string record, int64_t id, std::string name, std::string subType) {
  const std::string objectClass = ClassOf(record, subType);
  return objects_.emplace_back(record, FbxValues{id, FbxValue::Name(name, objectClass), subType});
}

FbxRecord& FbxFile::Model(int64_t id, std::string name, FbxRecords properties) {
  FbxRecord& model = Object("Model", id, std::move(name), "Null");
  if (!properties.empty()) model.Add(Properties(std::move(properties)));
  return model;
}

FbxRecord& FbxFile::Mesh(int64_t id, std::vector<double> points, std::vector<double> polygonVertexIndex) {
  FbxRecord& mesh = Object("Geometry", id, "", "Mesh");
  mesh.Add(Doubles("Vertices", std::move(points)));
  mesh.Add(Ints("PolygonVertexIndex", std::move(polygonVertexIndex)));
  return mesh;
}

FbxRecord& FbxFile::Material(int64_t id, std::string name, std::string shadingModel, FbxRecords properties) {
  FbxRecord& material = Object("Material", id, std::move(name));
  material.Add({"ShadingModel", {std::move(shadingModel)}});
  material.Add(Properties(std::move(properties)));
  return material;
}

FbxRecord& FbxFile::Cluster(int64_t id, std::vector<double> indices, std::vector<double> weights) {
  FbxRecord& cluster = Object("Deformer", id, "", "Cluster");
  cluster.Add(Ints("Indexes", std::move(indices)));
  cluster.Add(Doubles("Weights", std::move(weights)));
  return cluster;
}

void FbxFile::Connect(int64_t source, int64_t destination) {
  connections_.push_back({"C", {"OO", source, destination}});
}

void FbxFile::Connect(int64_t source, int64_t destination, std::string property) {
  connections_.push_back({"C", {"OP", source, destination, std::move(property)}});
}

void FbxFile::Connect(const std::vector<std::pair<int, int>>& sourcesAndDestinations) {
  for (const auto& [source, destination] : sourcesAndDestinations) Connect(source, destination);
}

void FbxFile::Template(std::string kind, FbxRecords properties) {
  definitions_.push_back({"ObjectType",
                          {std::move(kind)},
                          {{"PropertyTemplate", {"Fbx"}, {Properties(std::move(properties))}}}});
}

FbxRecords FbxFile::Records() const {
  return {{"Definitions", {}, definitions_},
          {"Objects", {}, {objects_.begin(), objects_.end()}},
          {"Connections", {}, connections_}};
}

}  // namespace support
