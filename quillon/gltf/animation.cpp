#include "quillon/gltf/animation.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "plugin/exporter/scene_ids.h"
#include "quillon/gltf/axes.h"
#include "quillon/gltf/gltf_buffer.h"
#include "quillon/gltf/object_motion.h"
#include "quillon/gltf/scene_params.h"

namespace quillon::gltf {
namespace {

// The samples of one object: glTF times in seconds and the transform at each.
struct Samples {
  std::vector<float> times;
  std::vector<Trs> transforms;
};

Trs GltfTransform(const Document& document, const Object& object) {
  return DecomposeTrs(ToGltfMatrix(SceneLocalMatrix(document, object)));
}

void AddSample(Samples& samples, float time, const Trs& trs) {
  // Two key times closer than a float can tell apart would make the times not rise; the first counts.
  if (!samples.times.empty() && !(time > samples.times.back())) return;
  Trs sample = trs;
  if (!samples.transforms.empty()) sample.rotation = NearerQuaternion(samples.transforms.back().rotation, trs.rotation);
  samples.times.push_back(time);
  samples.transforms.push_back(sample);
}

template <std::size_t N>
std::vector<float> ComponentsOf(const Samples& samples, std::array<double, N> Trs::*member) {
  std::vector<float> values;
  for (const Trs& trs : samples.transforms) {
    for (double c : trs.*member) values.push_back(GltfFloat(c));
  }
  return values;
}

// Adds a channel of one property when its values change over the samples; gives its key count.
int AddChannelIfMoving(Conversion& conversion, tinygltf::Animation& animation, int node, int input,
                       const std::vector<float>& values, int components, const char* path) {
  bool moves = false;
  for (std::size_t i = components; i < values.size() && !moves; ++i) moves = values[i] != values[i % components];
  if (!moves) return 0;
  tinygltf::AnimationSampler sampler;
  sampler.input = input;
  sampler.output = AddFloatAccessor(conversion.model, values, components, 0);
  sampler.interpolation = "LINEAR";
  animation.samplers.push_back(sampler);
  tinygltf::AnimationChannel channel;
  channel.sampler = static_cast<int>(animation.samplers.size() - 1);
  channel.target_node = node;
  channel.target_path = path;
  animation.channels.push_back(channel);
  ++conversion.summary.channels;
  return static_cast<int>(values.size() / components);
}

void AddChannels(Conversion& conversion, tinygltf::Animation& animation, int node, const Samples& samples) {
  if (samples.times.size() < 2) return;
  const int input = AddFloatAccessor(conversion.model, samples.times, 1, 0);
  const int keys = AddChannelIfMoving(conversion, animation, node, input, ComponentsOf(samples, &Trs::translation), 3, "translation") +
                   AddChannelIfMoving(conversion, animation, node, input, ComponentsOf(samples, &Trs::rotation), 4, "rotation") +
                   AddChannelIfMoving(conversion, animation, node, input, ComponentsOf(samples, &Trs::scale), 3, "scale");
  if (keys == 0) return;
  conversion.summary.keys += keys;
  ++conversion.summary.animatedNodes;
}

tinygltf::Value MarkerEvent(const Conversion& conversion, const Node& marker) {
  const BaseTime time = TimeParam(marker, MarkerParam_Time, BaseTime());
  tinygltf::Value::Object event;
  event["name"] = tinygltf::Value(ToUtf8(marker.name));
  event["time"] = tinygltf::Value(GltfSeconds(conversion, time));
  event["frame"] = tinygltf::Value(FrameOf(time, conversion.summary.frameRate));
  event["duration"] = tinygltf::Value(Seconds(TimeParam(marker, MarkerParam_Length, BaseTime())));
  const std::string note = TextParam(marker, MarkerParam_Note);
  if (!note.empty()) event["note"] = tinygltf::Value(note);
  return tinygltf::Value(event);
}

// The markers go with the animation; a scene without motion keeps them in its own extras,
// since a glTF animation must hold a channel.
void AddMarkers(Conversion& conversion) {
  tinygltf::Value::Array events;
  for (const Node* marker : ChildrenOf(conversion.document.markers.get())) events.push_back(MarkerEvent(conversion, *marker));
  conversion.summary.markers = static_cast<int>(events.size());
  if (events.empty()) return;
  tinygltf::Value::Object extras;
  extras["markers"] = tinygltf::Value(events);
  if (!conversion.model.animations.empty())
    conversion.model.animations.front().extras = tinygltf::Value(extras);
  else
    conversion.model.scenes.front().extras = tinygltf::Value(extras);
}

}  // namespace

void SetNodeTransform(const Document& document, const Object& object, tinygltf::Node& node) {
  const Trs trs = GltfTransform(document, object);
  node.translation.assign(trs.translation.begin(), trs.translation.end());
  node.rotation.assign(trs.rotation.begin(), trs.rotation.end());
  node.scale.assign(trs.scale.begin(), trs.scale.end());
}

void AddAnimation(Conversion& conversion, const std::vector<Object*>& objects) {
  // Every object is posed once per time that any of them needs, and sampled at its own times.
  std::map<BaseTime, std::vector<Object*>> byTime;
  for (Object* object : objects) {
    const std::set<BaseTime> times = MotionKeyTimes(conversion.document, *object);
    if (times.size() < 2) continue;
    for (const BaseTime& time : times) byTime[time].push_back(object);
  }
  std::map<const Object*, Samples> samples;
  for (const auto& [time, due] : byTime) {
    PoseDocumentAt(conversion.document, time);
    const float seconds = GltfFloat(GltfSeconds(conversion, time));
    for (Object* object : due) AddSample(samples[object], seconds, GltfTransform(conversion.document, *object));
  }
  tinygltf::Animation animation;
  animation.name = conversion.model.scenes.front().name;
  for (Object* object : objects) {
    const auto found = samples.find(object);
    if (found != samples.end()) AddChannels(conversion, animation, conversion.nodeOf.at(object), found->second);
  }
  if (!animation.channels.empty()) conversion.model.animations.push_back(animation);
  AddMarkers(conversion);
}

}  // namespace quillon::gltf
