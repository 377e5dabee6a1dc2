#include "quillon/render/render_scene.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <new>
#include <thread>

#include "quillon/model/evaluate.h"
#include "quillon/render/camera_projection.h"
#include "quillon/render/rasterizer.h"
#include "quillon/render/scene_faces.h"

namespace quillon::render {
namespace {

void ClearBitmap(Bitmap& bitmap) {
  for (float& sample : bitmap.samples) StoreShared(sample, 0.0f);
  if (bitmap.alpha)
    for (float& sample : bitmap.alpha->samples) StoreShared(sample, 0.0f);
}

void StoreRow(const RowPixels& row, int32_t y, Bitmap& bitmap) {
  for (int32_t x = 0; x < bitmap.width; ++x) {
    const float* rgb = row.rgb.data() + static_cast<size_t>(x) * 3;
    float* pixel = PixelAt(bitmap, x, y);
    if (bitmap.channels == 3) {
      for (int32_t c = 0; c < 3; ++c) StoreShared(pixel[c], rgb[c]);
    } else {
      StoreShared(pixel[0], (rgb[0] + rgb[1] + rgb[2]) / 3.0f);
    }
    if (bitmap.alpha) StoreShared(PixelAt(*bitmap.alpha, x, y)[0], row.alpha[static_cast<size_t>(x)]);
  }
}

// One entry a line, without a line break behind the last, as a console prints it.
std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

RenderOutcome Draw(Document& document, Bitmap& bitmap, const RenderOptions& options) {
  auto report = [&](double done, int32_t stage) {
    if (options.progress) options.progress(done, stage);
  };
  ClearBitmap(bitmap);
  bitmap.missingAssets.clear();
  report(0.0, kRenderStagePrepare);
  if (std::string refusal = EvaluateDocumentCaches(document); !refusal.empty())
    return {kRenderResultEvaluationFailed, refusal};
  const Object* camera = RenderCameraOf(document);
  if (!camera) return {kRenderResultNoView, "the document has no view to render through"};
  const double documentWidth = options.documentWidth > 0.0 ? options.documentWidth : bitmap.width;
  const CameraProjection projection = ProjectionOf(*camera, bitmap.width, bitmap.height, documentWidth);
  std::vector<std::string> missing;
  const std::vector<Face> faces = SceneFaces(document, options.assetFolder, missing);
  const std::vector<PreparedFace> prepared = PrepareFaces(faces, projection);
  const int64_t delay = RowDelayMs();
  RowPixels row;
  for (int32_t y = 0; y < bitmap.height; ++y) {
    if (options.shouldStop && options.shouldStop()) return {kRenderResultUserBreak, "stopped"};
    DrawRow(prepared, projection, y, bitmap.width, row);
    StoreRow(row, y, bitmap);
    report(static_cast<double>(y + 1) / bitmap.height, kRenderStageRender);
    if (delay > 0) std::this_thread::sleep_for(std::chrono::milliseconds(delay));
  }
  report(1.0, kRenderStageDone);
  if (missing.empty()) return {};
  bitmap.missingAssets = Lines(missing);
  return {kRenderResultAssetMissing, bitmap.missingAssets};
}

}  // namespace

int64_t RowDelayMs() {
  const char* text = std::getenv(kRowDelayVariable);
  if (!text || !*text) return 0;
  char* end = nullptr;
  const long long value = std::strtoll(text, &end, 10);
  if (*end != '\0' || value < 0) return 0;
  return std::min<int64_t>(value, kMaxRowDelayMs);
}

RenderOutcome RenderScene(Document& document, Bitmap& bitmap, const RenderOptions& options) {
  if (bitmap.width < 1 || bitmap.height < 1) return {kRenderResultNoOutput, "the bitmap has no pixels"};
  try {
    return Draw(document, bitmap, options);
  } catch (const std::bad_alloc&) {
    return {kRenderResultOutOfMemory, "out of memory"};
  }
}

}  // namespace quillon::render
