#include "quillon/orytool/scene_summary.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/orytool/scene_walk.h"

namespace quillon::orytool {
namespace {

void CountObjects(const Node& parent, SceneSummary& summary) {
  for (const Node* node = parent.firstChild; node; node = node->next) {
    ++summary.objects;
    if (node->type == ObjectType_Camera || node->type == ObjectType_KvCamera) ++summary.cameras;
    if (node->type == ObjectType_Light || node->type == ObjectType_KvLight) ++summary.lights;
    CountObjects(*node, summary);
  }
}

BaseTime TimeParam(const Document& document, std::int32_t id) {
  auto found = document.params.find(id);
  const BaseTime* time = found == document.params.end() ? nullptr : AsTime(found->second.raw);
  return time ? *time : BaseTime();
}

}  // namespace

std::string Count(long long count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

SceneSummary Summarize(const Document& document) {
  SceneSummary summary;
  CountObjects(*document.objects, summary);
  ForEachNode(document, [&summary](const Node& node) {
    if (const Track* track = AsTrack(&node)) {
      ++summary.tracks;
      if (track->curve) summary.keys += track->curve->keys.size();
    }
  });
  summary.markers = static_cast<int>(ChildrenOf(document.markers.get()).size());
  auto fps = document.params.find(DocParam_Fps);
  summary.fps = fps == document.params.end() ? 0 : AsInt32(fps->second.raw);
  summary.firstFrame = FrameOf(TimeParam(document, DocParam_MinTime), summary.fps);
  summary.lastFrame = FrameOf(TimeParam(document, DocParam_MaxTime), summary.fps);
  return summary;
}

std::string SummaryLine(const SceneSummary& s) {
  return Count(s.objects, "object", "objects") + ", " + Count(s.cameras, "camera", "cameras") + ", " +
         Count(s.lights, "light", "lights") + ", " + Count(s.tracks, "track", "tracks") + ", " +
         Count(s.keys, "key", "keys") + ", " + Count(s.markers, "marker", "markers") + ", frames " +
         std::to_string(s.firstFrame) + ".." + std::to_string(s.lastFrame) + " at " + std::to_string(s.fps) + " fps";
}

}  // namespace quillon::orytool
