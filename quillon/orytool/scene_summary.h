#pragma once
// The counts that head a dump: objects, cameras, lights, tracks, keys, markers and the
// document's frame range. `aehost export` prints the same line for the scene it wrote.
#include <string>

#include "quillon/model/document.h"

namespace quillon::orytool {

struct SceneSummary {
  int objects = 0;
  int cameras = 0;
  int lights = 0;
  int tracks = 0;
  long long keys = 0;
  int markers = 0;
  int fps = 0;
  int firstFrame = 0;
  int lastFrame = 0;
};

SceneSummary Summarize(const Document& document);

// The counts as one line: "7 objects, 1 camera, 0 lights, 12 tracks, 300 keys, 2 markers,
// frames 0..49 at 25 fps".
std::string SummaryLine(const SceneSummary& summary);

// "1 camera", "0 lights": a count with its noun in the number it takes.
std::string Count(long long count, const char* one, const char* many);

}  // namespace quillon::orytool
