// Import end to end through aehost, as a user runs it: a scene of animated cameras (exported
// once from a composition of animated camera layers) imported into an empty project and the
// project saved. Prints the CPU time and peak resident memory of the aehost process, min and
// median of `--runs N` runs (default 3), with the number of keyframes the import made, then
// the machine reference of the same run.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/machine_reference.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_command.h"

namespace {

// Cameras over 1,000 frames, each sampled at every frame.
constexpr int kLayers = 250;
constexpr int kFrames = 1000;

bool MakeScene(const std::string& dir, const std::string& scene) {
  const std::string project = dir + "/scene_source.json";
  qae_test::WriteFile(project, Json::writeString(Json::StreamWriterBuilder(),
                                                 qae_test::ManyAnimatedLayersProject(kLayers, kFrames, qae_test::AnimatedLayerKind::camera)));
  const auto run = qae_test::RunCommand(qae_test::AehostPath(),
                                        {"export", project, "--comp", "Many", "--output", scene, "--quiet"});
  if (run.exitCode == 0) return true;
  std::fprintf(stderr, "import_bench: aehost export of the scene failed (exit %d): %s\n", run.exitCode,
               run.err.c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const int runCount = qae_bench::RunCountFromArguments(argc, argv, "import_bench");
  if (runCount == 0) return 2;
  const std::string dir = qae_test::MakeTempDir("import_bench");
  const std::string scene = dir + "/many.ory";
  const std::string saved = dir + "/imported.json";
  bool done = MakeScene(dir, scene);
  std::vector<double> cpu, peak;
  std::string summary;
  for (int i = 0; done && i < runCount; ++i) {
    const auto run = qae_test::RunCommand(qae_test::AehostPath(), {"import", scene, "--output", saved});
    done = run.exitCode == 0;
    if (!done) std::fprintf(stderr, "import_bench: aehost import failed (exit %d): %s\n", run.exitCode, run.err.c_str());
    cpu.push_back(run.cpuSeconds);
    peak.push_back(static_cast<double>(run.peakResidentKiB) * 1024.0 / 1e6);
    summary = run.out;
  }
  if (done) {
    const auto c = qae_bench::MinAndMedianOf(cpu);
    const auto p = qae_bench::MinAndMedianOf(peak);
    std::printf("%s", summary.c_str());
    std::printf("import of %d cameras x %d frames with saving the project: CPU %.2f s min, %.2f s median; "
                "peak memory %.0f MB min, %.0f MB median; project %.0f MB\n",
                kLayers, kFrames, c.min, c.median, p.min, p.median,
                static_cast<double>(std::filesystem::file_size(saved)) / 1e6);
    qae_bench::PrintMachineReference(qae_bench::MeasureMachine(dir));
  }
  std::filesystem::remove_all(dir);
  return done ? 0 : 1;
}
