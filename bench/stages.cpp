// SPDX-License-Identifier: MIT
// Times the stages of a conversion, each on what the ones before it made of the model.
//
//   ts3d_bench MODEL.fbx ASCII_MODEL.fbx [options of Google Benchmark]
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "driver/convert.h"
#include "driver/scene_loader.h"
#include "mesh/cmf_writer.h"
#include "mesh/material_slices.h"
#include "mesh/pose_deform.h"
#include "mesh/split_vertices.h"
#include "package/actor_package.h"
#include "scene/assemble/build_scene.h"
#include "scene/container/array_reader.h"
#include "scene/container/inflate.h"
#include "scene/fbx_reader.h"
#include "scene/geometry/vertex_normals.h"
#include "scene/model/scene.h"
#include "skeleton/csf_writer.h"

namespace {

std::string modelPath, asciiPath;

std::shared_ptr<std::string> LoadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::make_shared<std::string>(std::istreambuf_iterator<char>(file),
                                       std::istreambuf_iterator<char>());
}

std::shared_ptr<scene::RecordTree> ReadRecords(const std::shared_ptr<std::string>& file) {
  auto tree = std::make_shared<scene::RecordTree>();
  tree->bytes = *file;
  tree->storage = file;
  if (!scene::ReadFbxRecords(*tree).Succeeded()) throw std::runtime_error("this is no FBX file");
  return tree;
}

/// Calls `visit` with every value of the tree that is an array or a list.
template <typename Visit>
void ForEachArray(const scene::RecordTree& tree, const Visit& visit) {
  for (uint32_t i = 0; i < tree.records.size(); ++i) {
    const scene::RecordRef record(&tree, i);
    if (record.ValueCount() == 1 && record.ValueAt(0)->IsList()) visit(record, *record.ValueAt(0));
  }
}

void ReadContainer(benchmark::State& state, const std::string& path) {
  const auto file = LoadFile(path);
  for (auto _ : state) benchmark::DoNotOptimize(ReadRecords(file));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(file->size()));
}

void ContainerBinary(benchmark::State& state) { ReadContainer(state, modelPath); }
void ContainerAscii(benchmark::State& state) { ReadContainer(state, asciiPath); }

void NumbersAscii(benchmark::State& state) {
  const auto tree = ReadRecords(LoadFile(asciiPath));
  uint64_t bytes = 0;
  for (auto _ : state) {
    ForEachArray(*tree, [&](scene::RecordRef record, const scene::Value& value) {
      scene::FbxArray<double> numbers;
      benchmark::DoNotOptimize(scene::ReadArray(record, numbers));
      bytes += value.size;
    });
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}

void InflateArrays(benchmark::State& state) {
  const auto tree = ReadRecords(LoadFile(modelPath));
  uint64_t bytes = 0;
  for (auto _ : state) {
    ForEachArray(*tree, [&](scene::RecordRef, const scene::Value& value) {
      if (!value.compressed) return;
      const size_t size = value.count * scene::ArrayElementSize(value.element);
      const auto out = std::make_unique_for_overwrite<char[]>(size);
      benchmark::DoNotOptimize(scene::Inflate(value.Span(), out.get(), size));
      bytes += size;
    });
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}

void BuildTheScene(benchmark::State& state) {
  const auto tree = ReadRecords(LoadFile(modelPath));
  for (auto _ : state) {
    scene::KFbxScene scene("");
    scene::BuildScene(tree, scene);
  }
}

/// The model loaded into a job, and its first mesh taken as far as the mesh files.
class Model {
 public:
  Model() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ts3d_bench_XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    ResetRun(job);
    job.files.modelDirectory = pattern + "/";
    ts3d::LoadedVersions versions;
    job.loaded.Create();
    if (!LoadScene(job.loaded.Manager(), job.loaded.Scene(), modelPath, {.folder = job.files.modelDirectory},
                   versions) ||
        !WriteSkeleton(job.Model(), *job.skeleton, job.files)) {
      throw std::runtime_error("cannot load " + modelPath);
    }
    scene::KFbxNode& root = job.loaded.Root();
    for (int i = 0; i < root.GetChildCount(); ++i) {
      if (root.GetChild(i)->GetMesh()) node = root.GetChild(i);
    }
    if (!node) throw std::runtime_error("no mesh in " + modelPath);
    mesh = node->GetMesh();
    data.influences = GatherBoneInfluences(*mesh, job.Model(), *job.skeleton);
    data.points = PoseControlPoints(*node, job.Model(), *job.skeleton);
    data.triangles = TriangulateMesh(*mesh);
    data.normals = scene::ComputeVertexNormals(data.points.View(), data.triangles.corners.View(), false);
    data.records = ts3d::SplitVertices(mesh->GetControlPointsCount(), mesh->GetUVs(), data.triangles);
  }
  ~Model() {
    std::error_code ignored;
    std::filesystem::remove_all(job.files.modelDirectory, ignored);
  }
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  void WriteMeshFile() {
    const scene::KFbxNode* errorNode = nullptr;
    ts3d::TextureCoordinates coordinates(*node, mesh->GetUVs(), job.status, errorNode);
    std::vector<int32_t> outputIndex(data.records.size());
    ts3d::MeshSlice slice;
    slice.name = "mesh";
    slice.whole = true;
    ts3d::ActorPackage package(job.files, job.settings, job.status);
    WriteCmfFile(slice, data, coordinates, outputIndex, job.skeleton->bones, ts3d::kFirstThreadId,
                 {job.files, package, job.status});
  }

  ts3d::ConversionJob job;
  scene::KFbxNode* node = nullptr;
  scene::KFbxMesh* mesh = nullptr;
  ts3d::MeshData data;
};

/// Unpacks points and weights again, as the real run does once.
void DeformPose(benchmark::State& state) {
  Model model;
  for (auto _ : state)
    benchmark::DoNotOptimize(PoseControlPoints(*model.node, model.job.Model(), *model.job.skeleton));
}

void SplitVertices(benchmark::State& state) {
  Model model;
  for (auto _ : state) {
    state.PauseTiming();
    scene::KFbxTriangles triangles = TriangulateMesh(*model.mesh);
    state.ResumeTiming();
    benchmark::DoNotOptimize(
        ts3d::SplitVertices(model.mesh->GetControlPointsCount(), model.mesh->GetUVs(), triangles));
  }
}

/// As if the node had two materials; with one the mesh is not looked through.
void SliceByMaterial(benchmark::State& state) {
  Model model;
  for (auto _ : state) {
    ts3d::MaterialSlices slices(*model.mesh, model.data, 2);
    benchmark::DoNotOptimize(slices.Slice("mesh", 0));
  }
}

void WriteMesh(benchmark::State& state) {
  Model model;
  for (auto _ : state) model.WriteMeshFile();
}

void PackMesh(benchmark::State& state) {
  Model model;
  model.WriteMeshFile();
  for (auto _ : state) {
    ts3d::ActorPackage package(model.job.files, model.job.settings, model.job.status);
    package.Open(model.job.files.modelDirectory + "mesh.czp", ts3d::PackageMode::Create);
    package.AddFileToPackage("mesh.cmf", ts3d::AfterAdding::KeepFile);
    package.Close();
  }
}

BENCHMARK(ContainerBinary)->Unit(benchmark::kMillisecond);
BENCHMARK(ContainerAscii)->Unit(benchmark::kMillisecond);
BENCHMARK(NumbersAscii)->Unit(benchmark::kMillisecond);
BENCHMARK(InflateArrays)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildTheScene)->Unit(benchmark::kMillisecond);
BENCHMARK(DeformPose)->Unit(benchmark::kMillisecond);
BENCHMARK(SplitVertices)->Unit(benchmark::kMillisecond);
BENCHMARK(SliceByMaterial)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteMesh)->Unit(benchmark::kMillisecond);
BENCHMARK(PackMesh)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 3) {
    std::fprintf(stderr, "usage: ts3d_bench MODEL.fbx ASCII_MODEL.fbx\n");
    return 2;
  }
  modelPath = argv[1];
  asciiPath = argv[2];
  benchmark::RunSpecifiedBenchmarks();
}
