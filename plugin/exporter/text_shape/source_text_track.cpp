#include "plugin/exporter/text_shape/source_text_track.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_baking.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/time_map.h"
#include "plugin/exporter/track_ops.h"

namespace {

// The text track: the text object's text parameter, of string kind, made by the text object.
constexpr ParamLevel kTextTrackLevel{TextParam_Text, DataKind_String, ObjectType_Text};
// The composition's rate when the host does not tell.
constexpr double kFallbackRate = 25.0;

struct LayerTimeFrame {
  double compRate = kFallbackRate;
  A_Time inPoint{0, 1};
  A_Time duration{0, 1};
};

// Each call only after the one before succeeded; the first failure is the status.
A_Err ReadLayerTimeFrame(AEGP_LayerH layer, LayerTimeFrame* frame) {
  AEGP_CompH comp = nullptr;
  A_Err err = LayerSuite13()->AEGP_GetLayerParentComp(layer, &comp);
  if (!err) err = CompSuite21()->AEGP_GetCompFramerate(comp, &frame->compRate);
  if (!err) err = LayerSuite13()->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &frame->inPoint);
  if (!err) err = LayerSuite13()->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &frame->duration);
  return err;
}

bool IsSourceTextAnimated(AEGP_StreamRefH stream) {
  A_Boolean varying = false;
  return !StreamSuite9()->AEGP_IsStreamTimevarying(stream, &varying) && varying;
}

// The times to read: each key's own, or with an expression every frame from the in point on.
TimeMap SourceTextTimes(AEToOry& exporter, AEGP_LayerH layer, AEGP_StreamRefH stream, const LayerTimeFrame& frame) {
  TimeMap times;
  if (HasTimeVaryingExpression(stream)) {
    const int32_t first = FrameOf(FromAeTime(frame.inPoint.value, frame.inPoint.scale), frame.compRate);
    const int32_t end = FrameOf(FromAeTime(frame.duration.value, frame.duration.scale), frame.compRate) + first;
    for (int32_t i = first; i < end; ++i) {
      times[BaseTime(i, exporter.fps)] = A_Time{i * exporter.frameDuration.value, exporter.frameDuration.scale};
    }
    return times;
  }
  const int32_t count = CountStreamKeys(layer, stream);
  for (int32_t i = 0; i < count; ++i) {
    A_Time t{0, 1};
    KeyframeSuite4()->AEGP_GetKeyframeTime(stream, i, AEGP_LTimeMode_CompTime, &t);
    InsertHostTime(&times, t);
  }
  return times;
}

void AddTextKey(AnimCurve* curve, const BaseTime& time, const std::string& text) {
  AnimKey* key = t_ORYOS_CA->AddKey(curve, &time, nullptr, 0, 0);
  if (!key) return;
  const OwnedString engineText(text);
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetString(&value, engineText.get());
  t_ORYOS_CA->SetKeyData(key, curve, &value);
  t_ORYOS_Gd->Free(&value);
}

}  // namespace

std::string SourceTextAt(AEGP_LayerH layer, const A_Time& time) {
  LayerStream stream(layer, AEGP_LayerStream_SOURCE_TEXT);
  if (!stream) return "";
  std::string text;
  AEGP_StreamValue2 value{};
  if (StreamSuite9()->AEGP_GetNewStreamValue(PluginId(), stream.get(), AEGP_LTimeMode_CompTime, &time, false,
                                             &value) == A_Err_NONE) {
    AEGP_MemHandle memory = nullptr;
    if (TextDocumentSuite1()->AEGP_GetNewText(PluginId(), value.val.text, &memory) == A_Err_NONE) {
      text = TakeHandleText(memory);
    }
    StreamSuite9()->AEGP_DisposeStreamValue(&value);
  }
  return text;
}

A_Err SourceTextKeyTimes(AEToOry& exporter, AEGP_LayerH layer, TimeMap* times) {
  LayerStream stream(layer, AEGP_LayerStream_SOURCE_TEXT);
  if (!stream || !IsSourceTextAnimated(stream.get())) return A_Err_NONE;
  LayerTimeFrame frame;
  if (const A_Err err = ReadLayerTimeFrame(layer, &frame)) return err;
  *times = SourceTextTimes(exporter, layer, stream.get(), frame);
  return A_Err_NONE;
}

A_Err ExportSourceTextTrack(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text) {
  TimeMap times;
  if (const A_Err err = SourceTextKeyTimes(exporter, layer, &times)) return err;
  if (times.empty()) return A_Err_NONE;
  const ParamId id{&kTextTrackLevel, 1, 0};
  AnimCurve* curve = CurveOf(GetOrCreateTrack(text, id, "Text"));
  if (!curve) return A_Err_NONE;
  for (const auto& [documentTime, hostTime] : times) AddTextKey(curve, documentTime, SourceTextAt(layer, hostTime));
  return A_Err_NONE;
}
