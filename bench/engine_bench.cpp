// The engine's document at export scale: 1,000 objects with 9 baked tracks of 10,000 keys
// each (position, rotation and scale, one key a frame), pruned key by key as the exporter
// prunes them, then written to a scene file and read back.
//
//   build/bin/engine_bench                 all three stages
//   build/bin/engine_bench --benchmark_filter=Read
//
// Each object moves during a span of 400 frames that starts somewhere else for every
// object and holds still the rest of the time; scale never moves. Pruning thus deletes
// most of the 90 million keys one by one and removes the scale tracks whole, as it does
// for a composition whose layers move for a while.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <string>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/animation.h"

namespace {

using namespace quillon;

constexpr int kObjects = 1000;
constexpr int kTracksPerObject = 9;
constexpr int kKeysPerTrack = 10000;
constexpr int kMovingFrames = 400;
constexpr double kFps = 25;
// The single-precision 1e-6 below which two baked values count as equal.
constexpr double kPruneTolerance = 9.999999974752427e-7;

struct Scene {
  std::unique_ptr<Document> document;
  long long keysBaked = 0;
  long long keysKept = 0;
};

std::unique_ptr<Scene>& SharedScene() {
  static std::unique_ptr<Scene> scene;
  return scene;
}

double BakedValue(int object, int channel, int frame) {
  if (channel >= 6) return 1.0;  // scale
  const int start = (object * 37) % (kKeysPerTrack - kMovingFrames);
  const int t = std::clamp(frame - start, 0, kMovingFrames);
  return (channel + 1) * 10.0 * std::sin(t * 0.01 + object);
}

Track* BakeTrack(Object& object, int index, int channel) {
  const std::int32_t parameter = ObjectParam_Position + channel / 3;
  auto* track = new Track({{parameter, DataKind_Vector, 0}, {VectorComponent_X + channel % 3, DataKind_Float, 0}});
  track->curve = std::make_unique<Curve>();
  track->curve->track = track;
  InsertLastUnder(track, object.trackList());
  for (int frame = 0; frame < kKeysPerTrack; ++frame) {
    Key* key = AddKeyAt(*track->curve, BaseTime(frame, kFps));
    key->value = BakedValue(index, channel, frame);
    key->bits.set(kNodeBitKeyLinear);
  }
  return track;
}

// Deletes keys whose neighbours hold the same value, one at a time while walking the
// curve, and the whole track when it is left with no movement.
void PruneTrack(Track* track) {
  Curve& curve = *track->curve;
  double previous = curve.keys.at(0)->value;
  for (std::int32_t i = 1; i < curve.keys.size() - 1; ++i) {
    const double value = curve.keys.at(i)->value;
    const double next = curve.keys.at(i + 1)->value;
    if (std::abs(previous - value) < kPruneTolerance && std::abs(next - value) < kPruneTolerance) {
      DeleteKeyAt(curve, i);
      --i;
    }
    previous = value;
  }
  const std::int32_t left = curve.keys.size();
  if (left < 2 || (left == 2 && curve.keys.at(0)->value == curve.keys.at(1)->value)) {
    Unlink(track);
    delete track;
  }
}

std::unique_ptr<Scene> BuildScene() {
  auto scene = std::make_unique<Scene>();
  scene->document = NewDocument();
  for (int index = 0; index < kObjects; ++index) {
    auto* object = new Object(ObjectType_Null);
    object->name = u"Layer " + FromUtf8(std::to_string(index));
    InsertLastUnder(object, scene->document->objects.get());
    for (int channel = 0; channel < kTracksPerObject; ++channel) PruneTrack(BakeTrack(*object, index, channel));
    scene->keysBaked += static_cast<long long>(kTracksPerObject) * kKeysPerTrack;
  }
  for (Node* object = scene->document->objects->firstChild; object; object = object->next)
    for (Track* track : TracksOf(*object)) scene->keysKept += track->curve->keys.size();
  return scene;
}

Scene& SceneForFiles() {
  if (!SharedScene()) SharedScene() = BuildScene();
  return *SharedScene();
}

// An amount handled by each iteration, shown per second of one iteration.
benchmark::Counter PerSecond(double amount) {
  return benchmark::Counter(amount, benchmark::Counter::kIsIterationInvariantRate);
}

std::string ScenePath() { return (std::filesystem::temp_directory_path() / "engine_bench.ory").string(); }

void BM_BuildAndPrune(benchmark::State& state) {
  for (auto _ : state) SharedScene() = BuildScene();
  state.counters["keys_baked"] = static_cast<double>(SharedScene()->keysBaked);
  state.counters["keys_kept"] = static_cast<double>(SharedScene()->keysKept);
  state.counters["baked_keys_per_second"] = PerSecond(static_cast<double>(SharedScene()->keysBaked));
}

void BM_Write(benchmark::State& state) {
  Scene& scene = SceneForFiles();
  std::string error;
  for (auto _ : state)
    if (!format::WriteDocument(*scene.document, ScenePath(), &error)) state.SkipWithError(error.c_str());
  const auto bytes = static_cast<double>(std::filesystem::file_size(ScenePath()));
  state.counters["file_MB"] = bytes / 1e6;
  state.counters["keys_per_second"] = PerSecond(static_cast<double>(scene.keysKept));
  state.counters["MB_per_second"] = PerSecond(bytes / 1e6);
}

void BM_Read(benchmark::State& state) {
  Scene& scene = SceneForFiles();
  std::string error;
  if (!format::WriteDocument(*scene.document, ScenePath(), &error)) state.SkipWithError(error.c_str());
  const long long keys = scene.keysKept;
  SharedScene().reset();  // the document read takes the place of the one built
  Document document;
  for (auto _ : state)
    if (!format::ReadDocument(ScenePath(), document, &error)) state.SkipWithError(error.c_str());
  const auto bytes = static_cast<double>(std::filesystem::file_size(ScenePath()));
  std::filesystem::remove(ScenePath());
  state.counters["keys_per_second"] = PerSecond(static_cast<double>(keys));
  state.counters["MB_per_second"] = PerSecond(bytes / 1e6);
}

BENCHMARK(BM_BuildAndPrune)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Write)->Iterations(3)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Read)->Iterations(3)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
