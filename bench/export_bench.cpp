// Export end to end through aehost, as a user runs it: compositions of animated 3D solids (each
// moves and turns over the whole composition, so each is baked at every frame) written as
// project descriptions and exported to scene files. For three sizes it prints the CPU time of
// the aehost process, the layer-frames exported per CPU second and the cost of one, and the
// process's peak resident memory against three times the scene file plus 100 MB; then the
// machine reference of the same run. Each size runs `--runs N` times (default 3): min and median.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/machine_reference.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_command.h"

namespace {

struct Size {
  int layers;
  int frames;
};

// Layers and frames each vary fourfold, so that a cost that grows faster than their product
// shows as a per-layer-frame cost that grows.
constexpr Size kSizes[] = {{250, 1000}, {1000, 250}, {1000, 1000}};

struct Runs {
  std::vector<double> cpuSeconds;
  std::vector<double> peakMB;
  double fileMB = 0.0;
};

bool ExportRuns(const std::string& dir, const Size& size, int count, Runs* runs) {
  const std::string project = dir + "/many.json";
  const std::string scene = dir + "/many.ory";
  qae_test::WriteFile(project, Json::writeString(Json::StreamWriterBuilder(),
                                                 qae_test::ManyAnimatedLayersProject(size.layers, size.frames)));
  for (int i = 0; i < count; ++i) {
    const auto run = qae_test::RunCommand(qae_test::AehostPath(),
                                          {"export", project, "--comp", "Many", "--output", scene, "--quiet"});
    if (run.exitCode != 0) {
      std::fprintf(stderr, "export_bench: aehost export failed (exit %d): %s\n", run.exitCode, run.err.c_str());
      return false;
    }
    runs->cpuSeconds.push_back(run.cpuSeconds);
    runs->peakMB.push_back(static_cast<double>(run.peakResidentKiB) * 1024.0 / 1e6);
  }
  runs->fileMB = static_cast<double>(std::filesystem::file_size(scene)) / 1e6;
  return true;
}

void PrintRuns(const Size& size, const Runs& runs) {
  const double layerFrames = static_cast<double>(size.layers) * size.frames;
  const auto cpu = qae_bench::MinAndMedianOf(runs.cpuSeconds);
  const auto peak = qae_bench::MinAndMedianOf(runs.peakMB);
  std::printf("%4d layers x %4d frames: CPU %.2f s min, %.2f s median; %.0f layer-frames per CPU second "
              "(median); %.3f us per layer-frame (median)\n",
              size.layers, size.frames, cpu.min, cpu.median, layerFrames / cpu.median,
              cpu.median / layerFrames * 1e6);
  std::printf("%4s peak memory %.0f MB min, %.0f MB median; scene file %.0f MB; bound 3 x file + 100 MB = %.0f MB\n",
              "", peak.min, peak.median, runs.fileMB, 3.0 * runs.fileMB + 100.0);
}

}  // namespace

int main(int argc, char** argv) {
  const int runCount = qae_bench::RunCountFromArguments(argc, argv, "export_bench");
  if (runCount == 0) return 2;
  const std::string dir = qae_test::MakeTempDir("export_bench");
  bool done = true;
  for (const Size& size : kSizes) {
    Runs runs;
    done = ExportRuns(dir, size, runCount, &runs);
    if (!done) break;
    PrintRuns(size, runs);
    std::fflush(stdout);
  }
  if (done) qae_bench::PrintMachineReference(qae_bench::MeasureMachine(dir));
  std::filesystem::remove_all(dir);
  return done ? 0 : 1;
}
