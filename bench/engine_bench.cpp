// The engine's own figures, each beside the machine it ran on: what a key costs to append,
// find and evaluate at three lengths of a track, and how fast a scene file of about 220 MB
// (1,000 objects, six tracks of 1,000 keys each, as an export of 1,000 layers over 1,000
// frames leaves them) is written and read, with the memory each holds at its peak.
//
//   build/bin/engine_bench [--runs N] [--dir FOLDER]
//
// Every figure is the smallest and the middle of N runs (3 by default). Times are wall
// clock; the scene file goes to FOLDER (the system's temporary folder by default).
#include <malloc.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/machine_reference.h"
#include "plugin/exporter/scene_ids.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/animation.h"

namespace {

using namespace quillon;
using qae_bench::MinAndMedian;
using qae_bench::MinAndMedianOf;
using qae_bench::SecondsSince;

constexpr double kFps = 30;
// Appends per measurement, spread over as many tracks as the length asks, so that a short
// track is timed over as many keys as a long one.
constexpr long kAppendsPerRun = 2000000;
constexpr long kLookUpsPerRun = 2000000;
const long kLengths[] = {1000, 100000, 2000000};

constexpr int kSceneObjects = 1000;
constexpr int kSceneTracks = 6;
constexpr int kSceneKeys = 1000;

std::unique_ptr<Track> NewFloatTrack() {
  auto track = std::make_unique<Track>(
      std::vector<ParamLevel>{{ObjectParam_Position, DataKind_Vector, 0}, {VectorComponent_X, DataKind_Float, 0}});
  track->curve = std::make_unique<Curve>();
  track->curve->track = track.get();
  return track;
}

// The times of `count` frames, made before any timing: making a time reduces a fraction,
// which is no cost of the store.
std::vector<BaseTime> FrameTimes(long count) {
  std::vector<BaseTime> times;
  times.reserve(static_cast<size_t>(count));
  for (long frame = 0; frame < count; ++frame) times.emplace_back(static_cast<double>(frame), kFps);
  return times;
}

// A baked key a frame: in time order, value and bits set through the key's handle, as the
// exporter leaves them.
void AppendKeys(Curve& curve, const std::vector<BaseTime>& times, double phase) {
  double value = phase;
  for (const BaseTime& time : times) {
    Key* key = AddKeyAt(curve, time);
    key->value = value;
    key->bits.set(kNodeBitKeyLinear);
    value += 0.01;
  }
}

double AppendNanoseconds(long length) {
  std::vector<std::unique_ptr<Track>> tracks;
  const long trackCount = std::max(1L, kAppendsPerRun / length);
  for (long i = 0; i < trackCount; ++i) tracks.push_back(NewFloatTrack());
  const std::vector<BaseTime> times = FrameTimes(length);
  const auto start = std::chrono::steady_clock::now();
  for (long i = 0; i < trackCount; ++i) AppendKeys(*tracks[static_cast<size_t>(i)]->curve, times, 0.0);
  return SecondsSince(start) * 1e9 / static_cast<double>(trackCount * length);
}

// Times spread over the track in an order that a cache cannot guess: every look-up finds a
// key of its own, half of them between two keys.
std::vector<BaseTime> LookUpTimes(long length) {
  std::vector<BaseTime> times;
  times.reserve(kLookUpsPerRun);
  std::uint64_t state = 88172645463325252ull;
  for (long i = 0; i < kLookUpsPerRun; ++i) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    const auto frame = static_cast<double>(state % static_cast<std::uint64_t>(length));
    times.emplace_back(2 * frame + static_cast<double>(i % 2), 2 * kFps);
  }
  return times;
}

double LookUpNanoseconds(const Curve& curve, const std::vector<BaseTime>& times,
                         const std::function<double(const Curve&, const BaseTime&)>& lookUp) {
  double sum = 0.0;
  const auto start = std::chrono::steady_clock::now();
  for (const BaseTime& time : times) sum += lookUp(curve, time);
  const double seconds = SecondsSince(start);
  if (std::isnan(sum)) std::printf(" ");  // keeps the look-ups from being optimised away
  return seconds * 1e9 / static_cast<double>(times.size());
}

double FindKey(const Curve& curve, const BaseTime& time) {
  bool exact = false;
  return LowerBound(curve, time, &exact) + (exact ? 1 : 0);
}

double Evaluate(const Curve& curve, const BaseTime& time) { return EvaluateCurve(curve, time, 0.0); }

// The process's resident memory now and at its peak since the last reset, in MiB.
double StatusMegabytes(const char* field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  const std::string prefix = std::string(field) + ":";
  while (std::getline(status, line))
    if (line.rfind(prefix, 0) == 0) return std::stod(line.substr(prefix.size())) / 1024.0;
  return 0.0;
}

double ResidentMB() { return StatusMegabytes("VmRSS"); }
double PeakMB() { return StatusMegabytes("VmHWM"); }
// Gives memory freed before back to the system, so that what is resident is what is held,
// and starts the peak again from there.
void ResetPeak() {
  ::malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
}

std::unique_ptr<Document> ExportSizedScene(long* keys) {
  std::unique_ptr<Document> document = NewDocument();
  const std::vector<BaseTime> times = FrameTimes(kSceneKeys);
  *keys = 0;
  for (int index = 0; index < kSceneObjects; ++index) {
    auto* object = new Object(ObjectType_Null);
    object->name = u"Layer " + FromUtf8(std::to_string(index));
    InsertLastUnder(object, document->objects.get());
    for (int channel = 0; channel < kSceneTracks; ++channel) {
      std::unique_ptr<Track> track = NewFloatTrack();
      track->path[0].id = channel < 3 ? ObjectParam_Position : ObjectParam_Rotation;
      track->path[1].id = VectorComponent_X + channel % 3;
      AppendKeys(*track->curve, times, index + channel);
      InsertLastUnder(track.release(), object->trackList());
      *keys += kSceneKeys;
    }
  }
  return document;
}

struct FileFigures {
  double megabytesPerSecond;
  double peakAboveStartMB;
};

// Writes over whatever `path` holds: with nothing there, a new file as the machine reference
// writes one; over a file of the same size, the system also gives back the pages of the file
// replaced when the new one takes its name.
FileFigures Write(const Document& document, const std::string& path) {
  ResetPeak();
  const double before = ResidentMB();
  std::string error;
  const auto start = std::chrono::steady_clock::now();
  if (!format::WriteDocument(document, path, &error)) std::fprintf(stderr, "engine_bench: %s\n", error.c_str());
  const double seconds = SecondsSince(start);
  return {static_cast<double>(std::filesystem::file_size(path)) / seconds / 1e6, PeakMB() - before};
}

// The peak beyond what the document read holds once it is read.
FileFigures Read(const std::string& path, double* documentMB) {
  auto document = std::make_unique<Document>();
  ResetPeak();
  const double before = ResidentMB();
  std::string error;
  const auto start = std::chrono::steady_clock::now();
  if (!format::ReadDocument(path, *document, &error)) std::fprintf(stderr, "engine_bench: %s\n", error.c_str());
  const double seconds = SecondsSince(start);
  const double held = ResidentMB();
  *documentMB = held - before;
  return {static_cast<double>(std::filesystem::file_size(path)) / seconds / 1e6, PeakMB() - held};
}

void PrintRow(const char* what, const std::vector<double>& figures, const char* unit) {
  const MinAndMedian m = MinAndMedianOf(figures);
  std::printf("  %-34s min %9.1f  median %9.1f %s\n", what, m.min, m.median, unit);
}

// 2000000 as "2,000,000".
std::string Grouped(long n) {
  const std::string digits = std::to_string(n);
  std::string text;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
    text += digits[i];
  }
  return text;
}

int Usage() {
  std::fprintf(stderr, "usage: engine_bench [--runs N] [--dir FOLDER]\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  int runs = 3;
  std::string dir = std::filesystem::temp_directory_path().string();
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--runs" && i + 1 < argc) {
      runs = std::atoi(argv[++i]);
      if (runs < 1 || runs > 100) return Usage();
    } else if (arg == "--dir" && i + 1 < argc) {
      dir = argv[++i];
    } else {
      return Usage();
    }
  }
  const qae_bench::MachineReference machine = qae_bench::MeasureMachine(dir);
  qae_bench::PrintMachineReference(machine);
  std::printf("figures: min and median of %d runs\n", runs);

  std::printf("key append, ns a key (amortised over %s appends):\n", Grouped(kAppendsPerRun).c_str());
  for (long length : kLengths) {
    std::vector<double> figures;
    for (int run = 0; run < runs; ++run) figures.push_back(AppendNanoseconds(length));
    PrintRow(("track of " + Grouped(length) + " keys").c_str(), figures, "ns");
  }
  std::printf("find and evaluate, ns a look-up (%s look-ups at times spread over the track):\n",
              Grouped(kLookUpsPerRun).c_str());
  for (long length : kLengths) {
    std::unique_ptr<Track> track = NewFloatTrack();
    AppendKeys(*track->curve, FrameTimes(length), 0.0);
    const std::vector<BaseTime> times = LookUpTimes(length);
    std::vector<double> finds, evaluations;
    for (int run = 0; run < runs; ++run) {
      finds.push_back(LookUpNanoseconds(*track->curve, times, FindKey));
      evaluations.push_back(LookUpNanoseconds(*track->curve, times, Evaluate));
    }
    PrintRow(("find, track of " + Grouped(length) + " keys").c_str(), finds, "ns");
    PrintRow(("evaluate, track of " + Grouped(length) + " keys").c_str(), evaluations, "ns");
  }

  long keys = 0;
  std::unique_ptr<Document> scene = ExportSizedScene(&keys);
  const std::string path = (std::filesystem::path(dir) / "engine_bench.ory").string();
  std::vector<double> writeRates, replaceRates, writePeaks, readRates, readPeaks, documents;
  for (int run = 0; run < runs; ++run) {
    std::filesystem::remove(path);
    const FileFigures written = Write(*scene, path);
    writeRates.push_back(written.megabytesPerSecond);
    writePeaks.push_back(written.peakAboveStartMB);
    replaceRates.push_back(Write(*scene, path).megabytesPerSecond);
  }
  const double fileMB = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
  scene.reset();
  for (int run = 0; run < runs; ++run) {
    double documentMB = 0.0;
    const FileFigures read = Read(path, &documentMB);
    readRates.push_back(read.megabytesPerSecond);
    readPeaks.push_back(read.peakAboveStartMB);
    documents.push_back(documentMB);
  }
  std::filesystem::remove(path);
  std::printf("scene file of %.0f MB (%s objects, %s keys), through the safe replacement (flushed to the disk):\n",
              fileMB, Grouped(kSceneObjects).c_str(), Grouped(keys).c_str());
  PrintRow("write a new file", writeRates, "MB/s");
  PrintRow("write: peak beyond the document", writePeaks, "MiB");
  PrintRow("write over a file of that size", replaceRates, "MB/s");
  std::printf("  a new file is written at %.0f%% of the machine's buffered write (median)\n",
              100.0 * MinAndMedianOf(writeRates).median / machine.bufferedWriteMBps);
  PrintRow("read", readRates, "MB/s");
  PrintRow("read: the document read holds", documents, "MiB");
  PrintRow("read: peak beyond the document", readPeaks, "MiB");
  std::printf("  the document read holds %.0f bytes a key (median), the file %.0f\n",
              MinAndMedianOf(documents).median * 1048576.0 / static_cast<double>(keys), fileMB * 1e6 / static_cast<double>(keys));
  return 0;
}
