// SPDX-License-Identifier: MIT
#include "convert/convert_report.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "convert/result_messages.h"
#include "core/work_file.h"
#include "host/replace_files.h"
#include "output/exit_codes.h"
#include "output/json_parts.h"
#include "platform/replacement.h"

namespace cli {
namespace fs = std::filesystem;
namespace {

using Json = nlohmann::ordered_json;

constexpr int kReportVersion = 2;

Json ModelAsJson(const ModelResult& result) {
  Json members = Json::array();
  for (const MemberSize& member : result.members) {
    members.push_back({{"name", member.name}, {"bytes", member.bytes}});
  }
  return {{"model", result.model},
          {"result", result.code},
          {"meaning", DescribeExitCode(result.code)},
          {"messages", FindingsAsJson(MessagesOf(result))},
          {"status", result.status},
          {"reader_output", result.readerOutput},
          {"vertices", result.vertices},
          {"triangles", result.triangles},
          {"seconds", result.seconds},
          {"steps", StepsAsJson(result.steps)},
          {"up_to_date", result.isCurrent},
          {"inputs", result.inputs},
          {"package", result.package},
          {"package_bytes", result.packageBytes},
          {"members", std::move(members)}};
}

/// Writes the whole file `path` in one step. A pipe or a device is written to; only files are replaced.
bool WriteText(const std::string& path, const std::string& text) {
  std::error_code unknown;
  const fs::file_status target = fs::status(path, unknown);
  if (fs::exists(target) && !fs::is_regular_file(target)) {
    std::ofstream file(path, std::ios::binary);
    return static_cast<bool>(file << text << std::flush);
  }
  platform::Replacement report(path);
  platform::FilePtr file = report.Create("wb");
  return file && ts3d::WriteAndClose(std::move(file), text) && report.TakePlace();
}

}  // namespace

void WriteReport(const std::string& path, const std::vector<ModelResult>& results,
                 const std::vector<ts3d::Finding>& messages, double seconds) {
  const Totals totals = Sum(results);
  Json report = JsonHead("convert-report", kReportVersion);
  report["totals"] = {{"models", results.size()},
                      {"succeeded", totals.succeeded},
                      {"failed", results.size() - totals.succeeded},
                      {"warnings", totals.warnings},
                      {"vertices", totals.vertices},
                      {"triangles", totals.triangles},
                      {"package_bytes", totals.packageBytes},
                      {"seconds", seconds}};
  report["messages"] = FindingsAsJson(messages);
  Json& models = report["models"] = Json::array();
  for (const ModelResult& result : results) models.push_back(ModelAsJson(result));
  const std::string text = JsonText(report);
  const bool written =
      path == kStandardOutput ? std::fputs(text.c_str(), stdout) >= 0 : WriteText(path, text);
  if (!written) throw Failure(kNotWritten, WhyNotWritten("the report " + path, errno));
}

}  // namespace cli
