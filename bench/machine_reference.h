#pragma once
// What this machine does in the same run as a benchmark, so that a figure can be read against
// the machine it came from: how fast it copies memory and how fast it writes a file through a
// buffered stream (into the page cache; nothing waits for the disk).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace qae_bench {

struct MachineReference {
  double memoryCopyGBps = 0.0;
  double bufferedWriteMBps = 0.0;
};

inline double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The best of a few copies of 256 MiB: the first touches the pages, later ones show the copy.
inline double MemoryCopyGBps() {
  constexpr std::size_t kBytes = std::size_t{256} << 20;
  std::vector<char> from(kBytes, 1), to(kBytes, 0);
  double best = 0.0;
  for (int round = 0; round < 4; ++round) {
    const auto start = std::chrono::steady_clock::now();
    std::memcpy(to.data(), from.data(), kBytes);
    const double seconds = SecondsSince(start);
    from[static_cast<std::size_t>(round)] = to[kBytes - 1 - static_cast<std::size_t>(round)];  // keeps the copy
    best = std::max(best, kBytes / seconds / 1e9);
  }
  return best;
}

// 512 MiB written in 64 KiB pieces through stdio to a new file at `path`, which is removed
// afterwards; the best of three, since a shared machine's page cache now and then stalls a
// writer for a while, and the reference is what the machine can do.
inline double BufferedWriteMBps(const std::string& path) {
  constexpr std::size_t kPiece = std::size_t{64} << 10;
  constexpr std::size_t kPieces = 8192;
  const std::vector<char> piece(kPiece, 'x');
  double best = 0.0;
  for (int round = 0; round < 3; ++round) {
    const auto start = std::chrono::steady_clock::now();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return 0.0;
    std::size_t written = 0;
    for (std::size_t i = 0; i < kPieces; ++i) written += std::fwrite(piece.data(), 1, kPiece, file);
    const bool closed = std::fclose(file) == 0;
    const double seconds = SecondsSince(start);
    std::remove(path.c_str());
    if (!closed) return 0.0;
    best = std::max(best, static_cast<double>(written) / seconds / 1e6);
  }
  return best;
}

inline MachineReference MeasureMachine(const std::string& scratchDir) {
  return {MemoryCopyGBps(), BufferedWriteMBps(scratchDir + "/write_reference.bin")};
}

inline void PrintMachineReference(const MachineReference& machine) {
  std::printf("machine: memory copy %.1f GB/s, buffered file write %.0f MB/s\n", machine.memoryCopyGBps,
              machine.bufferedWriteMBps);
}

// The smallest and the middle of the figures of several runs.
struct MinAndMedian {
  double min = 0.0;
  double median = 0.0;
};

inline MinAndMedian MinAndMedianOf(std::vector<double> figures) {
  if (figures.empty()) return {};
  std::sort(figures.begin(), figures.end());
  return {figures.front(), figures[figures.size() / 2]};
}

// The number of runs of each figure from a command line `[--runs N]` (1 to 100, default 3);
// 0 after telling the usage on standard error when the line is anything else.
inline int RunCountFromArguments(int argc, char** argv, const char* program) {
  int runs = argc == 1 ? 3 : 0;
  if (argc == 3 && std::strcmp(argv[1], "--runs") == 0) runs = std::atoi(argv[2]);
  if (runs >= 1 && runs <= 100) return runs;
  std::fprintf(stderr, "usage: %s [--runs N]   (N from 1 to 100, default 3)\n", program);
  return 0;
}

}  // namespace qae_bench
