// A render of a document into a bitmap: the document is evaluated at its
// time, seen through the camera of its render view (else its active view:
// the view's scene camera, else its editor camera), and drawn in rows from the
// top. Before each row the render asks whether to stop; after each it reports
// progress and waits the row delay.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "quillon/model/document.h"
#include "quillon/render/bitmap.h"

namespace quillon::render {

// The environment variable with the whole milliseconds to sleep after each row.
constexpr char kRowDelayVariable[] = "QUILLON_RENDER_ROW_DELAY_MS";
// The longest row delay taken from it; larger values are cut to it.
constexpr int64_t kMaxRowDelayMs = 60000;

struct RenderOptions {
  std::function<bool()> shouldStop;                      // may be empty
  std::function<void(double done, int32_t stage)> progress;  // may be empty
  // The document's own render width, against which a parallel camera scales;
  // 0 for the bitmap's width.
  double documentWidth = 0.0;
  // Folder of relative picture paths; empty for the working folder.
  std::string assetFolder;
};

struct RenderOutcome {
  int32_t code = 0;     // a kRenderResult... code
  std::string message;  // why, for a code other than 0
};

RenderOutcome RenderScene(Document& document, Bitmap& bitmap, const RenderOptions& options);

// The row delay that kRowDelayVariable asks for: 0 when it is unset or not a
// whole number from 0 up.
int64_t RowDelayMs();

}  // namespace quillon::render
