#include "quillon/orytool/render_command.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <regex>
#include <sstream>

#include "files/replace_file.h"
#include "files/same_file.h"
#include "plugin/exporter/scene_ids.h"
#include "quillon/format/ory_format.h"
#include "quillon/render/node_values.h"
#include "quillon/render/png_file.h"
#include "quillon/render/render_scene.h"

namespace quillon::orytool {
namespace {

constexpr int kExitFailed = 1;
constexpr int kExitBadInput = 2;
// A frame larger than this on either side is surely a typing mistake.
constexpr int kMaxSide = 16384;
constexpr long long kMaxFrame = 21474836;
constexpr int kBarWidth = 30;
// A PNG holds at most 16 bits a channel: a float render is written with 16.
constexpr int kMaxPngBits = 16;

bool ParseSize(const std::string& text, int* width, int* height) {
  static const std::regex form("([0-9]{1,5})x([0-9]{1,5})");
  std::smatch parts;
  if (!std::regex_match(text, parts, form)) return false;
  *width = std::stoi(parts[1]);
  *height = std::stoi(parts[2]);
  return *width >= 1 && *height >= 1 && *width <= kMaxSide && *height <= kMaxSide;
}

// "rendering [#####     ] 50%" over the current line.
void DrawBar(double done) {
  const int filled = static_cast<int>(done * kBarWidth);
  std::fprintf(stderr, "\rrendering [%s%s] %3d%%", std::string(static_cast<size_t>(filled), '#').c_str(),
               std::string(static_cast<size_t>(kBarWidth - filled), ' ').c_str(), static_cast<int>(done * 100.0));
}

int BadInput(std::string* error, const std::string& message) {
  *error = message;
  return kExitBadInput;
}

// The frame's time by the document's frame rate.
BaseTime FrameTime(const Document& document, long long frame) {
  const double fps = render::FloatOf(document, DocParam_Fps, 30.0);
  return BaseTime(static_cast<double>(frame), fps > 0.0 ? fps : 30.0);
}

}  // namespace

int RunRender(const RenderArguments& arguments, std::string* error) {
  int width = 0;
  int height = 0;
  if (!ParseSize(arguments.size, &width, &height))
    return BadInput(error, "--size must be WIDTHxHEIGHT, each a whole number from 1 to 16384, not \"" +
                               arguments.size + "\"");
  if (arguments.frame < -kMaxFrame || arguments.frame > kMaxFrame)
    return BadInput(error, "--frame must be a whole number from -21474836 to 21474836");
  if (qae::files::SameFile(arguments.scene, arguments.output))
    return BadInput(error, arguments.output + ": the output is the scene file itself");
  // An output that can never be written fails before the render is spent on it.
  if (!qae::files::CheckReplaceable(arguments.output, error)) return kExitFailed;
  Document document;
  if (!format::ReadDocument(arguments.scene, document, error)) return kExitBadInput;
  document.currentTime = FrameTime(document, arguments.frame);

  Bitmap picture;
  const int32_t channelBytes = arguments.depth / 8;
  picture.alpha = std::make_unique<Bitmap>();
  if (!render::ResizeBitmap(picture, width, height, 3, channelBytes) ||
      !render::ResizeBitmap(*picture.alpha, width, height, 1, channelBytes)) {
    *error = "out of memory for a picture of " + arguments.size + " pixels";
    return kExitFailed;
  }
  render::RenderOptions options;
  if (document.activeSettings)
    options.documentWidth = render::FloatOf(*document.activeSettings, RenderParam_Width, 0.0);
  options.assetFolder = std::filesystem::path(arguments.scene).parent_path().string();
  const bool bar = isatty(STDERR_FILENO) != 0;
  int drawn = -1;  // the percent on the bar, redrawn only when it changes
  if (bar) {
    options.progress = [&drawn](double done, int32_t) {
      if (static_cast<int>(done * 100.0) != drawn) DrawBar(done);
      drawn = static_cast<int>(done * 100.0);
    };
  }
  const render::RenderOutcome outcome = render::RenderScene(document, picture, options);
  if (bar) std::fputc('\n', stderr);

  if (outcome.code == kRenderResultAssetMissing) {
    std::istringstream lines(outcome.message);
    for (std::string line; std::getline(lines, line);) std::cerr << "orytool: missing picture: " << line << '\n';
  } else if (outcome.code == kRenderResultOutOfMemory) {
    *error = "out of memory while rendering " + arguments.scene;
    return kExitFailed;
  } else if (outcome.code != kRenderResultOk) {
    return BadInput(error, arguments.scene + ": cannot be rendered: " + outcome.message);
  }
  std::string bytes;
  if (!render::EncodePng(picture, picture.alpha.get(), std::min(arguments.depth, kMaxPngBits), &bytes, error))
    return kExitFailed;
  return qae::files::ReplaceFileContent(arguments.output, bytes, error) ? 0 : kExitFailed;
}

}  // namespace quillon::orytool
