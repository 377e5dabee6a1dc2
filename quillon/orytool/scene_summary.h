#pragma once
// The counts that head a dump: objects, cameras, lights, tracks, keys, markers and the
// document's frame range.
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

}  // namespace quillon::orytool
