// SPDX-License-Identifier: MIT
//
// make_seeds FOLDER: writes the seeds of each target into FOLDER/<target>: the fixtures, the files of the
// packages that they become, and pictures.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "actor/load_actor.h"
#include "driver/convert.h"
#include "export/export_gltf.h"
#include "support/sample_pictures.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

struct Rig {
  std::string name, bytes;
};

void Write(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    std::exit(1);
  }
}

std::vector<Rig> Rigs(const fs::path& source) {
  std::vector<Rig> rigs;
  for (const auto& entry : fs::directory_iterator(source / "tests/fixtures")) {
    if (entry.path().extension() != ".fbx") continue;
    rigs.push_back({entry.path().filename(), support::ReadWholeFile(entry.path())});
  }
  return rigs;
}

uint8_t KindOf(const std::string& name) {
  static constexpr const char* kEndings[] = {".csf", ".cmf", ".xrf", ".xfg", ".tga"};
  uint8_t kind = 0;
  while (kind < std::size(kEndings) && !name.ends_with(kEndings[kind])) ++kind;
  return kind;
}

/// The files that `rig` becomes, each behind its kind's number, and the document for the final settings.
void WritePackageSeeds(const fs::path& out, const Rig& rig) {
  const support::TempFolder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder.Path());
  folder.Write(rig.name, rig.bytes);
  ts3d::ConversionJob job;
  const ts3d::ConversionResult result = RunConversion(job, {folder.Path() + "\\" + rig.name, {}});
  fs::current_path(before);
  if (result != ts3d::ConversionResult::Success) return;
  const std::string stem = rig.name.substr(0, rig.name.size() - 3);
  const std::string package = support::ReadWholeFile(folder.Path(stem + "czp"));
  actor::PackageContents contents;
  std::string error;
  if (!ReadPackageBytes(package, {}, contents, error)) return;
  Write(out / "package_fuzz" / (stem + "czp"), '\x05' + package);
  actor::Actor actor;
  actor::Findings findings;
  if (actor::BuildActor(contents, actor, findings, error)) {
    const auto leaveOut = [](const actor::Picture&) { return actor::EncodedPicture{}; };
    const std::string glb = ExportGlb(actor, "", leaveOut);
    Write(out / "gltf_fuzz" / (stem + "glb"), glb);
    Write(out / "stream_fuzz" / (stem + "glb"), "atranslated model 1\nfile a.mtl\ndata\n" + glb);
  }
  for (const actor::Member& member : contents.members) {
    const auto kind = static_cast<char>(KindOf(member.name));
    Write(out / "package_fuzz" / (stem + member.name), kind + member.bytes);
    if (!member.name.ends_with(".xfg")) continue;
    std::string input = member.bytes;
    input.append("\0body=Skin|hat=~Cap|body_a=`Hat", 31).append("\0hip=pelvis", 11);
    Write(out / "document_fuzz" / member.name, input);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return std::fprintf(stderr, "usage: make_seeds FOLDER\n"), 1;
  const fs::path out = fs::absolute(argv[1]);
  constexpr size_t kBinaryHeader = 27;
  for (const Rig& rig : Rigs(TS3D_SOURCE_FOLDER)) {
    const bool isBinary = rig.bytes.starts_with("Kaydara");
    // The start of a file is the target's own.
    const std::string body = rig.bytes.substr(isBinary ? kBinaryHeader : 0);
    Write(out / (isBinary ? "binary_fuzz" : "ascii_fuzz") / rig.name, (isBinary ? '\x04' : '\0') + body);
    Write(out / "load_fuzz" / rig.name, rig.bytes);
    Write(out / "rig_fuzz" / rig.name, rig.bytes);
    WritePackageSeeds(out, rig);
  }
  for (const support::SamplePicture& picture : support::SamplePictures()) {
    Write(out / "image_fuzz" / picture.kind, picture.file);
    Write(out / "texture_fuzz" / picture.kind, "\x05textures/skin.bmp\n..\\art.bin\n" + picture.file);
    Write(out / "package_fuzz" / picture.kind, '\x04' + picture.file);
  }
  return 0;
}
