// SPDX-License-Identifier: MIT
//
// Translates a model that assimp reads into glTF:
//   translate_model ENDING FOLDER MEGABYTES SECONDS <model >stream
// and unpacks meshes that are compressed with the library Draco:
//   translate_model draco "" MEGABYTES SECONDS <meshes >stream
// These libraries were not made for hostile files, so they get a process, and in it no more memory and time than is said
// here; it writes nothing. The stream is text in lines up to "data", and behind that a GLB file or the meshes' numbers.
#include <assimp/cimport.h>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>

#include "scene/readers/stream_words.h"
#include "translator/b3d_bones.h"
#include "translator/collada_joints.h"
#include "translator/inline_materials.h"
#include "translator/mend_blender.h"
#include "translator/model_folder.h"
#include "translator/plain_material.h"
#include "translator/trim_texts.h"
#include "translator/unpack_meshes.h"
#include "translator/write_glb.h"

namespace {

using translator::FormatTraits;

constexpr FormatTraits kFormats[] = {{"dae", "", false, true},
                                     {"x"},
                                     {"b3d"},
                                     {"md5mesh", "<MD5_Hierarchy>", true},
                                     {"smd", "<SMD_root>"},
                                     {"obj"},
                                     {"ply"},
                                     {"3ds"},
                                     {"stl"}};

constexpr const char* kNoMemory = "it asks for more memory than a file of its size may have";

const FormatTraits& FindFormat(std::string_view ending) {
  for (const FormatTraits& format : kFormats) {
    if (ending == format.ending) return format;
  }
  throw std::runtime_error("the format is not known");
}

#ifdef TRANSLATOR_HAS_ALL_ADDRESSES
constexpr bool kLimitsAddresses = false;
#else
constexpr bool kLimitsAddresses = true;
#endif

/// Bytes of address space that the process has.
uint64_t AddressSpace() {
  unsigned long pages = 0;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/proc/self/statm", "r"),
                                                             std::fclose);
  if (!file || std::fscanf(file.get(), "%lu", &pages) != 1) return uint64_t{256} << 20;
  return uint64_t{pages} * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

void Limit(int resource, uint64_t most) {
  const rlimit limit{most, most};
  if (setrlimit(static_cast<decltype(RLIMIT_AS)>(resource), &limit) != 0)
    throw std::runtime_error("its memory cannot be limited");
}

void LimitProcess(uint64_t megabytes, uint64_t seconds) {
  if (kLimitsAddresses) Limit(RLIMIT_AS, AddressSpace() + (megabytes << 20));
  Limit(RLIMIT_CPU, seconds);
  Limit(RLIMIT_CORE, 0);
  Limit(RLIMIT_FSIZE, 0);
}

std::string ReadInput() {
  std::string bytes;
  std::array<char, 1 << 16> chunk;
  for (ssize_t size; (size = read(STDIN_FILENO, chunk.data(), chunk.size())) > 0;)
    bytes.append(chunk.data(), static_cast<size_t>(size));
  return bytes;
}

bool WriteOutput(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t size = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (size <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(size));
  }
  return true;
}

struct ReleaseScene {
  void operator()(const aiScene* scene) const { aiReleaseImport(scene); }
};
using Scene = std::unique_ptr<const aiScene, ReleaseScene>;

/// @param hasNames  names of Collada's nodes; else their identifiers, of which there is one of each
Scene Import(translator::ModelFolder& folder, bool hasNames) {
  const std::unique_ptr<aiPropertyStore, void (*)(aiPropertyStore*)> settings(aiCreatePropertyStore(),
                                                                              aiReleasePropertyStore);
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_REMOVE_EMPTY_BONES, 0);
  // Of models without meshes it would draw the bones.
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_NO_SKELETON_MESHES, 1);
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_MD5_NO_ANIM_AUTOLOAD, 1);
  aiSetImportPropertyInteger(settings.get(), AI_CONFIG_IMPORT_COLLADA_USE_COLLADA_NAMES, hasNames);
  Scene scene(aiImportFileExWithProperties(folder.Name().c_str(), aiProcess_Triangulate, folder.Functions(),
                                           settings.get()));
  if (!scene) throw std::runtime_error(aiGetErrorString());
  if (!scene->mRootNode) throw std::runtime_error("it holds no scene");
  return scene;
}

/// The model as the library understands it.
std::string ReadModel(FormatTraits& format) {
  const std::string_view ending = format.ending;
  std::string model = ReadInput();
  if (ending == "x") return translator::InlineMaterials(std::move(model));
  if (ending != "dae") return model;
  if (translator::IsFromBlender(model)) {
    // The exporter writes the shape of a skin relative to the parent of its mesh, and the joints in the world.
    format.bindsInWorld = true;
    model = translator::MendBlenderFile(std::move(model));
  }
  return translator::WithPlainMaterial(translator::TrimTexts(model));
}

/// Names of what the model calls joints, where the library does not tell.
std::set<std::string> FindJoints(std::string_view ending, std::string_view model) {
  if (ending == "dae") return translator::FindColladaJoints(model);
  if (ending == "b3d") return translator::FindB3dBones(model);
  return {};
}

std::string Translate(FormatTraits format, const std::string& path) {
  const std::string model = ReadModel(format);
  translator::ModelFolder folder(std::string("model.") + format.ending, model, path);
  const std::set<std::string> joints = FindJoints(format.ending, model);
  Scene scene = Import(folder, true);
  auto tree = std::make_unique<translator::NodeTree>(*scene, format.jointRoot, joints);
  if (tree->IsAmbiguous()) {
    const std::vector<std::string> names = tree->Names();
    scene = Import(folder, false);
    tree = std::make_unique<translator::NodeTree>(*scene, format.jointRoot, joints);
    tree->SetNames(names);
  }
  std::string stream;
  for (const std::string& file : folder.OtherFiles()) stream += scene::translation::kFileWord + file + "\n";
  stream += std::string(scene::translation::kDataWord) + "\n";
  return stream + translator::WriteGlb(*scene, *tree, format);
}

/// What follows the start of the stream.
std::string Answer(std::string_view task, const std::string& folder) {
  if (task != scene::translation::kMeshesWord) return Translate(FindFormat(task), folder);
  return std::string(scene::translation::kDataWord) + "\n" + translator::UnpackMeshes(ReadInput());
}

std::string Refusal(std::string reason) {
  // The library gives what it catches as a text.
  if (reason.find("bad_alloc") != reason.npos) reason = kNoMemory;
  for (char& c : reason) c = static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
  // Who tells it ends the sentence.
  reason.resize(reason.find_last_not_of(" .") + 1);
  constexpr size_t kLongest = 300;
  if (reason.size() > kLongest) reason = reason.substr(0, kLongest) + "...";
  return std::string(scene::translation::kStreamStart) + "\n" + scene::translation::kErrorWord + reason +
         "\n";
}

}  // namespace

int main(int count, char** words) {
  if (count != 5) {
    std::fprintf(stderr, "usage: translate_model ENDING FOLDER MEGABYTES SECONDS <model >stream\n");
    return 64;
  }
  std::string stream;
  try {
    LimitProcess(std::strtoull(words[3], nullptr, 10), std::strtoull(words[4], nullptr, 10));
    stream = std::string(scene::translation::kStreamStart) + "\n" + Answer(words[1], words[2]);
  } catch (const std::bad_alloc&) {
    stream = Refusal(kNoMemory);
  } catch (const std::exception& error) {
    stream = Refusal(error.what());
  }
  // What the library leaves behind goes with the process.
  _exit(WriteOutput(stream) ? 0 : 1);
}
