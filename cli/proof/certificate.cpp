// SPDX-License-Identifier: MIT
#include "proof/certificate.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <vector>

#include "core/json_output.h"
#include "host/replace_files.h"
#include "prove/compare.h"
#include "prove/proof_json.h"
#include "prove/sha256.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

using CertificateJson = nlohmann::ordered_json;

struct Fingerprint {
  uint64_t bytes = 0;
  std::string sha256;
};

constexpr int kCertificateSchema = 1;
constexpr uintmax_t kLargestCertificate = 64 << 20;
/// What compilers and processors may make of the same sums.
constexpr double kSameError = 0.1 * prove::kLimit;

Fingerprint FingerprintOf(const fs::path& path) {
  std::ifstream file(platform::ForStream(path), std::ios::binary);
  prove::Sha256 hash;
  uint64_t size = 0;
  std::vector<char> buffer(1 << 16);
  while (file) {
    file.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    const auto count = static_cast<size_t>(file.gcount());
    hash.Add({buffer.data(), count});
    size += count;
  }
  if (!file.eof()) throw Failure(kNoInput, path.string() + ": cannot be read");
  return {size, hash.Finish()};
}

void WriteFingerprint(ts3d::JsonWriter& json, const char* what, const fs::path& path) {
  const Fingerprint fingerprint = FingerprintOf(path);
  json.OpenObject(what);
  json.Member("name", path.filename().string());
  json.Member("bytes", fingerprint.bytes);
  json.Member("sha256", fingerprint.sha256);
  json.CloseObject();
}

CertificateJson ReadCertificate(const fs::path& path) {
  std::error_code failed;
  if (!fs::is_regular_file(path, failed)) throw Failure(kNoInput, path.string() + ": there is no such file");
  if (fs::file_size(path, failed) > kLargestCertificate || failed)
    throw Failure(kUnreadable, path.string() + ": too large for a certificate");
  std::ifstream file(platform::ForStream(path), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return CertificateJson::parse(text, nullptr, false);
}

/// @param stated  what the certificate says of the file
std::string CompareFile(const fs::path& path, const CertificateJson& stated) {
  if (FingerprintOf(path).sha256 == stated.at("sha256")) return {};
  return path.string() + " is another file than the one that was proven";
}

}  // namespace

void WriteCertificate(const fs::path& path, const fs::path& model, const fs::path& package,
                      const prove::Proof& proof) {
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "certificate", kCertificateSchema);
  WriteFingerprint(json, "model", model);
  WriteFingerprint(json, "package", package);
  json.OpenObject("proof");
  prove::WriteProof(json, proof);
  json.CloseObject();
  json.CloseObject();
  ReplaceFiles(path.parent_path(), {{path.filename().string(), ts3d::JsonText(json.Text())}});
}

Verification VerifyCertificate(const fs::path& path, const fs::path& model, const fs::path& package) {
  const CertificateJson json = ReadCertificate(path);
  try {
    if (json.at("schema").at("name") != "certificate" || json["schema"].at("version") != kCertificateSchema)
      throw Failure(kUnreadable, path.string() + ": this is not a certificate of this version");
    // Names only: a certificate has no say in which folders are read.
    const auto fileOf = [&](const char* what, const fs::path& given) {
      const fs::path named = fs::path(json.at(what).at("name").get<std::string>()).filename();
      return fs::absolute(given.empty() ? path.parent_path() / named : given);
    };
    const CertificateJson& stated = json.at("proof");
    Verification found{fileOf("model", model).string(),
                       fileOf("package", package).string(),
                       {},
                       stated.at("result"),
                       stated.at("worst").at("error")};
    found.problem = CompareFile(found.model, json.at("model"));
    if (found.problem.empty()) found.problem = CompareFile(found.package, json.at("package"));
    if (!found.problem.empty()) return found;
    const int poses = stated.at("random_poses");
    if (poses < 0 || poses > kMostPoses)
      throw Failure(kUnreadable, path.string() + ": absurd number of poses");
    ConvertOptions convert;
    convert.modelUnit = stated.value("unit", "");
    const ProvenModel again =
        ProveModelFile(found.model, found.model, found.package,
                       {stated.at("seed"), poses, 0, stated.value("max_influences", 0)}, convert);
    const std::string result = prove::NameOf(again.proof.verdict);
    const double worst = again.proof.worst.error;
    if (!again.error.empty()) {
      found.problem = again.error;
    } else if (result != found.result ||
               std::abs(worst - found.worst) > kSameError + 1e-3 * std::abs(found.worst)) {
      found.problem = "the proof comes out otherwise: " + result + ", worst error " + std::to_string(worst) +
                      " of the diagonal";
    }
    return found;
  } catch (const nlohmann::json::exception&) {
    throw Failure(kUnreadable, path.string() + ": this is not a certificate");
  }
}

}  // namespace cli
