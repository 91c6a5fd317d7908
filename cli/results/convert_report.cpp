// SPDX-License-Identifier: MIT
#include "results/convert_report.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "core/json_output.h"
#include "core/work_files.h"
#include "host/replace_files.h"
#include "platform/file_system.h"
#include "platform/replacement.h"
#include "results/result_messages.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

constexpr int kReportVersion = 2;

void WriteModel(ts3d::JsonWriter& json, const ModelResult& result) {
  json.OpenObject();
  json.Member("model", result.model);
  json.Member("result", result.code);
  json.Member("status", result.status);
  json.Member("reader_output", result.readerOutput);
  json.Member("vertices", result.vertices);
  json.Member("triangles", result.triangles);
  json.Member("seconds", result.seconds);
  json.OpenObject("steps");
  for (const auto& [step, seconds] : result.steps) json.Member(step, seconds);
  json.CloseObject();
  json.Member("up_to_date", result.isCurrent);
  json.Member("inputs", result.inputs);
  json.Member("package", result.package);
  json.Member("package_bytes", result.packageBytes);
  ts3d::WriteMembers(json, result.members);
  json.Member("meaning", DescribeExitCode(result.code));
  json.Key("messages");
  ts3d::WriteFindings(json, MessagesOf(result));
  json.CloseObject();
}

/// Writes the whole file `path` in one step. A pipe or a device is written to; only files are replaced.
bool WriteText(const std::string& path, const std::string& text) {
  std::error_code unknown;
  const fs::file_status target = fs::status(path, unknown);
  if (fs::exists(target) && !fs::is_regular_file(target)) {
    std::ofstream file(platform::ForStream(path), std::ios::binary);
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
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "convert-report", kReportVersion);
  json.OpenObject("totals");
  json.Member("models", results.size());
  json.Member("succeeded", totals.succeeded);
  json.Member("failed", results.size() - totals.succeeded);
  json.Member("warnings", totals.warnings);
  json.Member("vertices", totals.vertices);
  json.Member("triangles", totals.triangles);
  json.Member("package_bytes", totals.packageBytes);
  json.Member("seconds", seconds);
  json.CloseObject();
  json.Key("messages");
  ts3d::WriteFindings(json, messages);
  json.OpenArray("models");
  for (const ModelResult& result : results) WriteModel(json, result);
  json.CloseArray();
  json.CloseObject();
  const std::string text = ts3d::JsonText(json.Text());
  const bool written =
      path == kStandardOutput ? std::fputs(text.c_str(), stdout) >= 0 : WriteText(path, text);
  if (!written) throw Failure(kNotWritten, WhyNotWritten("the report " + path, errno));
}

}  // namespace cli
