// Layers and markers of the project description, read and written.
#include "aehost/model/layer_json.h"

#include <string_view>
#include <utility>

#include "aehost/model/mask_json.h"
#include "aehost/model/shape_json.h"
#include "aehost/model/stream_json.h"
#include "aehost/model/text_json.h"

namespace aehost::description {
namespace {

void ReadLayerSwitches(const In& at, Layer& layer) {
  LayerSwitches& s = layer.switches;
  Read(at, "video", s.video);
  Read(at, "audio", s.audio);
  Read(at, "locked", s.locked);
  Read(at, "shy", s.shy);
  Read(at, "solo", s.solo);
  Read(at, "adjustment", s.adjustment);
  Read(at, "motionBlur", s.motionBlur);
  if (IsViewer(layer.objectType)) {
    s.threeD = true;
    s.autoOrient = DefaultAutoOrient(layer.objectType);
    if (Has(at, "autoOrient")) s.autoOrient = Choice(Member(at, "autoOrient"), kAutoOrient);
  } else {
    Read(at, "threeD", s.threeD);
    Read(at, "null", s.nullLayer);
  }
}

void ReadCameraGroup(const In& at, Layer& layer) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  Json::Value streams(Json::objectValue);
  for (const auto& key : at.value.getMemberNames()) {
    const In member = Member(at, key);
    if (key == "type") {
      layer.camera.type = Choice(member, kCameraTypes);
    } else if (key == "filmSize") {
      layer.camera.filmSize = Positive(member);
    } else if (key == "filmSizeUnits") {
      layer.camera.filmSizeUnits = Choice(member, kFilmSizeUnits);
    } else {
      streams[key] = at.value[key];
    }
  }
  ReadStreamGroup({streams, at.path, at.source}, kCameraOptions, layer);
}

void ReadLightGroup(const In& at, Layer& layer) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  Json::Value streams(Json::objectValue);
  for (const auto& key : at.value.getMemberNames()) {
    if (key == "type") {
      layer.light.type = Choice(Member(at, key), kLightTypes);
    } else {
      streams[key] = at.value[key];
    }
  }
  ReadStreamGroup({streams, at.path, at.source}, kLightOptions, layer);
}

// Keys that only some kinds of layer have.
void RefuseKeysOfOtherKinds(const In& at, LayerObjectType type) {
  const bool viewer = IsViewer(type);
  for (const char* key : {"threeD", "null"}) {
    if (viewer && Has(at, key)) Fail(Member(at, key), "cameras and lights have no such switch");
  }
  if (!viewer && Has(at, "autoOrient")) {
    Fail(Member(at, "autoOrient"), "only cameras and lights turn towards a point of interest");
  }
  if (type != LayerObjectType::AudioVideo && Has(at, "source")) {
    Fail(Member(at, "source"), "only audio/video layers have a source");
  }
  if (type != LayerObjectType::Camera && Has(at, "camera")) {
    Fail(Member(at, "camera"), "only camera layers have camera settings");
  }
  if (type != LayerObjectType::Light && Has(at, "light")) {
    Fail(Member(at, "light"), "only light layers have light settings");
  }
  if (type != LayerObjectType::Text && Has(at, "text")) {
    Fail(Member(at, "text"), "only text layers have a source text");
  }
  if (type != LayerObjectType::Shape && Has(at, "shapes")) {
    Fail(Member(at, "shapes"), "only shape layers have shape contents");
  }
  if (type != LayerObjectType::Text && Has(at, "pathOptions")) {
    Fail(Member(at, "pathOptions"), "only text layers have path options");
  }
  if (viewer && Has(at, "masks")) Fail(Member(at, "masks"), "cameras and lights have no masks");
}

void WriteSwitches(const Layer& layer, Json::Value& out) {
  const LayerSwitches& s = layer.switches;
  const LayerSwitches plain;
  if (s.video != plain.video) out["video"] = s.video;
  if (s.audio != plain.audio) out["audio"] = s.audio;
  if (s.locked) out["locked"] = true;
  if (s.shy) out["shy"] = true;
  if (s.solo) out["solo"] = true;
  if (s.adjustment) out["adjustment"] = true;
  if (s.motionBlur) out["motionBlur"] = true;
  if (IsViewer(layer.objectType)) {
    if (s.autoOrient != DefaultAutoOrient(layer.objectType)) {
      out["autoOrient"] = TextOf(kAutoOrient, s.autoOrient);
    }
  } else {
    if (s.threeD) out["threeD"] = true;
    if (s.nullLayer) out["null"] = true;
  }
}

// A group of settings and streams, left out when it holds nothing.
void AddGroup(std::string_view name, Json::Value settings, std::vector<WrittenMember> streams,
              std::vector<WrittenMember>& members) {
  if (settings.empty() && streams.empty()) return;
  members.push_back({name, [settings = std::move(settings), streams = std::move(streams)](JsonOut& out) {
                       WriteObject(out, settings, streams);
                     }});
}

void AddViewerGroups(const Layer& layer, std::vector<WrittenMember>& members) {
  if (layer.objectType == LayerObjectType::Camera) {
    Json::Value camera(Json::objectValue);
    const CameraSettings plain;
    if (layer.camera.type != plain.type) camera["type"] = TextOf(kCameraTypes, layer.camera.type);
    if (layer.camera.filmSize != plain.filmSize) camera["filmSize"] = layer.camera.filmSize;
    if (layer.camera.filmSizeUnits != plain.filmSizeUnits) {
      camera["filmSizeUnits"] = TextOf(kFilmSizeUnits, layer.camera.filmSizeUnits);
    }
    AddGroup("camera", std::move(camera), StreamGroupMembers(layer, kCameraOptions), members);
  } else if (layer.objectType == LayerObjectType::Light) {
    Json::Value light(Json::objectValue);
    if (layer.light.type != LightSettings{}.type) {
      light["type"] = TextOf(kLightTypes, layer.light.type);
    }
    AddGroup("light", std::move(light), StreamGroupMembers(layer, kLightOptions), members);
  }
}

}  // namespace

std::vector<Marker> ReadMarkers(const In& at) {
  std::vector<Marker> markers;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(at, i);
    RequireObject(element, {"time", "duration", "comment"});
    RequireMember(element, "time");
    Marker marker;
    marker.time = Seconds(Member(element, "time"));
    if (Has(element, "duration")) marker.duration = Length(Member(element, "duration"));
    Read(element, "comment", marker.comment);
    markers.push_back(marker);
  }
  return markers;
}

std::unique_ptr<Layer> ReadLayer(const In& at, Item& comp, Pending& pending) {
  RequireObject(at, {"id", "name", "type", "source", "parent", "video", "audio", "locked", "shy",
                     "solo", "threeD", "adjustment", "motionBlur", "null", "autoOrient",
                     "startTime", "inPoint", "duration", "stretch", "markers", "transform",
                     "camera", "light", "text", "shapes", "masks", "pathOptions"});
  auto layer = std::make_unique<Layer>();
  RequireMember(at, "id");
  layer->id = Integer(Member(at, "id"), 1, kMaxId);
  ClaimId(at, pending.layerIds, layer->id);
  pending.layers[layer->id] = {&comp, layer.get()};
  Read(at, "name", layer->name);
  if (Has(at, "type")) layer->objectType = Choice(Member(at, "type"), kLayerTypes);
  RefuseKeysOfOtherKinds(at, layer->objectType);
  ReadLayerSwitches(at, *layer);
  layer->duration = comp.duration;
  if (Has(at, "startTime")) layer->startTime = Seconds(Member(at, "startTime"));
  if (Has(at, "inPoint")) layer->inPoint = Seconds(Member(at, "inPoint"));
  if (Has(at, "duration")) layer->duration = Length(Member(at, "duration"));
  if (Has(at, "stretch")) layer->stretch = Stretch(Member(at, "stretch"));
  if (Has(at, "markers")) layer->markers = ReadMarkers(Member(at, "markers"));
  if (Has(at, "transform")) {
    ReadStreamGroup(Member(at, "transform"), TransformNames(layer->objectType), *layer);
  }
  if (Has(at, "camera")) ReadCameraGroup(Member(at, "camera"), *layer);
  if (Has(at, "light")) ReadLightGroup(Member(at, "light"), *layer);
  if (Has(at, "text")) layer->text = ReadSourceText(Member(at, "text"));
  if (Has(at, "shapes")) layer->shapes = ReadShapeContents(Member(at, "shapes"));
  if (Has(at, "masks")) layer->masks = ReadMasks(Member(at, "masks"));
  if (Has(at, "pathOptions")) layer->pathOptions = ReadPathOptions(Member(at, "pathOptions"), layer->masks.size());
  if (Has(at, "source")) {
    const In source = Member(at, "source");
    layer->sourceId = Integer(source, 1, kMaxId);
    pending.sources.push_back({{source.path, layer->sourceId}, {&comp, layer.get()}});
  }
  if (Has(at, "parent")) {
    const In parent = Member(at, "parent");
    layer->parentId = Integer(parent, 1, kMaxId);
    pending.parents.push_back({{parent.path, layer->parentId}, {&comp, layer.get()}});
  }
  return layer;
}

Json::Value WriteMarkers(const std::vector<Marker>& markers) {
  Json::Value out(Json::arrayValue);
  for (const auto& marker : markers) {
    Json::Value entry(Json::objectValue);
    entry["time"] = marker.time;
    if (marker.duration != 0.0) entry["duration"] = marker.duration;
    if (!marker.comment.empty()) entry["comment"] = marker.comment;
    out.append(std::move(entry));
  }
  return out;
}

// The small members are built as a tree; the streams, which hold nearly all of a large
// project, are written straight out.
void WriteLayer(JsonOut& out, const Layer& layer, const Item& comp) {
  Json::Value plain(Json::objectValue);
  plain["id"] = layer.id;
  if (!layer.name.empty()) plain["name"] = layer.name;
  if (layer.objectType != LayerObjectType::AudioVideo) {
    plain["type"] = TextOf(kLayerTypes, layer.objectType);
  }
  if (layer.sourceId != 0) plain["source"] = layer.sourceId;
  if (layer.parentId != 0) plain["parent"] = layer.parentId;
  WriteSwitches(layer, plain);
  if (layer.startTime != 0.0) plain["startTime"] = layer.startTime;
  if (layer.inPoint != 0.0) plain["inPoint"] = layer.inPoint;
  if (layer.duration != comp.duration) plain["duration"] = layer.duration;
  if (layer.stretch != 1.0) plain["stretch"] = layer.stretch;
  if (!layer.markers.empty()) plain["markers"] = WriteMarkers(layer.markers);
  if (layer.objectType == LayerObjectType::Text) {
    Json::Value text = WriteSourceText(layer.text);
    if (!text.empty()) plain["text"] = std::move(text);
  }
  if (!layer.shapes.empty()) {
    Json::Value shapes(Json::arrayValue);
    for (const ShapeElement& element : layer.shapes) shapes.append(WriteShapeElement(element));
    plain["shapes"] = std::move(shapes);
  }
  if (!layer.masks.empty()) plain["masks"] = WriteMasks(layer.masks);
  if (layer.pathOptions != TextPathOptions{}) plain["pathOptions"] = WritePathOptions(layer.pathOptions);
  std::vector<WrittenMember> written;
  AddGroup("transform", Json::Value(Json::objectValue), StreamGroupMembers(layer, TransformNames(layer.objectType)),
           written);
  AddViewerGroups(layer, written);
  WriteObject(out, plain, std::move(written));
}

}  // namespace aehost::description
