// Export end to end through aehost: a composition of 1,000 animated 3D solids over 1,000
// frames, written as a project description, exported to a scene file. Reports layer-frames a
// second (each layer is baked at every frame of its animated span) and the export's peak
// resident memory.
#include <benchmark/benchmark.h>
#include <json/json.h>
#include <sys/resource.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "tests/support/run_command.h"

namespace {

constexpr int kLayers = 1000;
constexpr int kFrames = 1000;
constexpr double kFrameRate = 25.0;

Json::Value Keys(const Json::Value& from, const Json::Value& to) {
  Json::Value keys(Json::arrayValue);
  Json::Value first, last;
  first["time"] = 0.0;
  first["value"] = from;
  last["time"] = (kFrames - 1) / kFrameRate;
  last["value"] = to;
  keys.append(first);
  keys.append(last);
  Json::Value stream;
  stream["keys"] = keys;
  return stream;
}

Json::Value Triple(double x, double y, double z) {
  Json::Value v(Json::arrayValue);
  v.append(x);
  v.append(y);
  v.append(z);
  return v;
}

// Every layer moves and turns over the whole composition, so that each is baked at every frame.
std::string ProjectText() {
  Json::Value project;
  project["format"] = "aehost-project";
  project["version"] = 1;
  project["path"] = "/bench/many.aep";
  Json::Value solid;
  solid["id"] = 2;
  solid["name"] = "Solid";
  solid["width"] = 100;
  solid["height"] = 100;
  solid["solid"]["color"] = Triple(0.2, 0.4, 0.6);
  project["footage"].append(solid);
  Json::Value comp;
  comp["id"] = 1;
  comp["name"] = "Many";
  comp["width"] = 1920;
  comp["height"] = 1080;
  comp["frameRate"] = kFrameRate;
  comp["duration"] = kFrames / kFrameRate;
  for (int i = 0; i < kLayers; ++i) {
    Json::Value layer;
    layer["id"] = 100 + i;
    layer["name"] = "Layer " + std::to_string(i);
    layer["source"] = 2;
    layer["threeD"] = true;
    layer["transform"]["anchorPoint"]["value"] = Triple(50, 50, 0);
    layer["transform"]["position"] = Keys(Triple(i, 100, -i), Triple(1900 - i, 1000, i));
    layer["transform"]["rotationY"] = Keys(0.0, 360.0 + i);
    comp["layers"].append(layer);
  }
  project["comps"].append(comp);
  return Json::StyledWriter().write(project);
}

void BM_ExportThousandAnimatedLayers(benchmark::State& state) {
  const std::string dir = qae_test::MakeTempDir("export_bench");
  const std::string projectPath = dir + "/many.json";
  qae_test::WriteFile(projectPath, ProjectText());
  const std::string out = dir + "/many.ory";
  double seconds = 0.0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    const auto run =
        qae_test::RunCommand(qae_test::AehostPath(), {"export", projectPath, "--comp", "Many", "--output", out});
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (run.exitCode != 0) {
      state.SkipWithError(("aehost export failed: " + run.err).c_str());
      break;
    }
  }
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const double layerFrames = static_cast<double>(kLayers) * kFrames * static_cast<double>(state.iterations());
  state.counters["layer_frames_per_s"] = seconds > 0.0 ? layerFrames / seconds : 0.0;
  state.counters["peak_rss_MiB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
  if (qae_test::FileExists(out)) state.counters["file_MiB"] = std::filesystem::file_size(out) / 1048576.0;
  std::filesystem::remove_all(dir);
}

BENCHMARK(BM_ExportThousandAnimatedLayers)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
