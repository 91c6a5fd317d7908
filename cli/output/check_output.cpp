// SPDX-License-Identifier: MIT
#include "output/check_output.h"

#include <algorithm>
#include <cstdio>

#include "core/json_output.h"
#include "host/host_paths.h"
#include "results/describe_finding.h"
#include "rig_check/report_json.h"
#include "terminal/terminal.h"

namespace cli {
namespace {

using ts3d::Finding;
using ts3d::RigReport;

constexpr int kJsonVersion = 2;

void PrintLine(const std::string& line) { std::printf("%s\n", Printable(line).c_str()); }

std::string Quoted(const std::string& name) { return "\"" + name + "\""; }

/// "1 bone", "2 bones".
std::string Counted(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

void PrintMeshes(const RigReport& report) {
  constexpr size_t kMostLines = 20;
  size_t vertices = 0, triangles = 0;
  for (const ts3d::OutputMesh& mesh : report.meshes) {
    vertices += mesh.vertices;
    triangles += mesh.triangles;
  }
  PrintLine("  " + Counted(report.meshes.size(), "mesh file", "mesh files") + " with " +
            Counted(vertices, "vertex", "vertices") + ", " + Counted(triangles, "triangle", "triangles"));
  for (size_t i = 0; i < std::min(report.meshes.size(), kMostLines); ++i) {
    const ts3d::OutputMesh& mesh = report.meshes[i];
    PrintLine("    " + mesh.name + ": " + Counted(mesh.vertices, "vertex", "vertices") + ", " +
              Counted(mesh.triangles, "triangle", "triangles") + ", " +
              (mesh.material.empty() ? "no material" : "material " + Quoted(mesh.material)) +
              (mesh.texture.empty() ? "" : ", picture " + mesh.texture));
  }
  if (report.meshes.size() > kMostLines) {
    PrintLine("    and " + std::to_string(report.meshes.size() - kMostLines) + " more");
  }
}

void PrintSummary(const CheckedModel& model) {
  const RigReport& report = model.report;
  PrintLine(model.name + ": " + report.format + (report.version.empty() ? "" : " " + report.version) +
            ", would become " + WithExtension(platform::fs::path(model.name).filename(), "czp").string() +
            " with the name " + Quoted(report.objectId));
  const auto weighted = std::count_if(report.bones.begin(), report.bones.end(),
                                      [](const ts3d::OutputBone& bone) { return bone.weighted; });
  PrintLine("  " + Counted(report.bones.size(), "bone", "bones") + ", " + std::to_string(weighted) +
            " of them with weights");
  PrintMeshes(report);
  if (report.textures.empty()) return;
  std::string line = "  " + Counted(report.textures.size(), "picture", "pictures") + ":";
  for (const ts3d::UsedTexture& texture : report.textures) line += " " + texture.tgaName;
  PrintLine(line);
}

void PrintFinding(const std::string& model, const Finding& finding) {
  std::printf("fbx2czp: %s: %s %s [%s]\n", Printable(model).c_str(), Label(stdout, finding.severity).c_str(),
              Printable(DescribeFinding(finding)).c_str(), finding.code.c_str());
  if (!finding.fix.empty()) PrintLine("    Fix: " + finding.fix);
}

}  // namespace

void PrintReport(const CheckedModel& model, bool quiet, bool isOneOfMany) {
  const Severity least = quiet ? Severity::Warning : Severity::Note;
  if (isOneOfMany && (!quiet || model.report.Worst() >= least)) {
    std::printf("%s\n", Painted(stdout, Colour::Bold, "=== " + Printable(model.name)).c_str());
  }
  if (model.report.loaded && !quiet) PrintSummary(model);
  for (const std::string& rename : model.renames) PrintLine("  --rename " + Quoted(rename));
  for (const Finding& finding : model.report.findings) {
    if (finding.severity >= least) PrintFinding(model.name, finding);
  }
  std::fflush(stdout);
}

std::string ReportsAsJson(const std::vector<CheckedModel>& models) {
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "check", kJsonVersion);
  json.OpenArray("models");
  for (const CheckedModel& model : models) {
    json.OpenObject();
    json.Member("model", model.name);
    ts3d::WriteReport(json, model.report);
    if (!model.renames.empty()) json.Member("renames", model.renames);
    json.CloseObject();
  }
  json.CloseArray();
  json.CloseObject();
  return ts3d::JsonText(json.Text());
}

}  // namespace cli
