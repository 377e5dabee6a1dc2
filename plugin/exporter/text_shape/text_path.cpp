#include "plugin/exporter/text_shape/text_path.h"

#include <algorithm>
#include <cmath>

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_baking.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/text_shape/outline_spline.h"
#include "plugin/exporter/text_shape/property_bridge.h"
#include "plugin/exporter/text_shape/script_queries.h"
#include "plugin/exporter/track_ops.h"

namespace {

// The time the still form and length are read at: the composition's start, as 0 of 30.
constexpr A_Time kStillTime{0, 30};
// Sampling frequency asked of the host for each segment length.
constexpr A_long kLengthFrequency = 100;
constexpr double kQuarterTurn = 1.5707963267948966;

// The outline stream of one of the layer's masks, disposed with the mask on every way out.
class MaskOutlineStream {
 public:
  MaskOutlineStream(AEGP_LayerH layer, A_long maskIndex) {
    if (LayerMaskSuite7()->AEGP_GetLayerMaskByIndex(layer, maskIndex, &mask_) || !mask_) {
      mask_ = nullptr;
      return;
    }
    if (StreamSuite9()->AEGP_GetNewMaskStream(PluginId(), mask_, AEGP_MaskStream_OUTLINE, &stream_)) stream_ = nullptr;
  }
  ~MaskOutlineStream() {
    if (stream_) StreamSuite9()->AEGP_DisposeStream(stream_);
    if (mask_) LayerMaskSuite7()->AEGP_DisposeMask(mask_);
  }
  MaskOutlineStream(const MaskOutlineStream&) = delete;
  MaskOutlineStream& operator=(const MaskOutlineStream&) = delete;
  AEGP_StreamRefH get() const { return stream_; }

 private:
  AEGP_MaskRefH mask_ = nullptr;
  AEGP_StreamRefH stream_ = nullptr;
};

// The mask's outline at one time, disposed with its scope.
class MaskOutline {
 public:
  MaskOutline(AEGP_StreamRefH stream, const A_Time& time, AEGP_LTimeMode mode) {
    held_ = StreamSuite9()->AEGP_GetNewStreamValue(PluginId(), stream, mode, &time, false, &value_) == A_Err_NONE;
  }
  ~MaskOutline() {
    if (held_) StreamSuite9()->AEGP_DisposeStreamValue(&value_);
  }
  MaskOutline(const MaskOutline&) = delete;
  MaskOutline& operator=(const MaskOutline&) = delete;
  AEGP_MaskOutlineValH get() const { return held_ ? value_.val.mask : nullptr; }
  // The host counts one point more than segments: a closed outline ends on its first vertex.
  A_long Points() const {
    A_long segments = 0;
    if (!held_ || MaskOutlineSuite3()->AEGP_GetMaskOutlineNumSegments(value_.val.mask, &segments)) return 0;
    return segments + 1;
  }

 private:
  AEGP_StreamValue2 value_{};
  bool held_ = false;
};

// The one-based index of the mask the text follows; 0 for none.
int TextPathMask(AEToOry& exporter, AEGP_LayerH layer) {
  int index = 0;
  return GetTextPathMaskIndex(exporter, layer, &index) ? index : 0;
}

// Writes points 0 .. count-1 of `outline`; places from `count` to `total` - 1 repeat the last,
// so that every key of an animated mask has the same number of points.
void WriteMaskPoints(const MaskOutline& outline, A_long count, A_long total, const SplineArrays& arrays) {
  AEGP_MaskVertex vertex{};
  for (A_long i = 0; i < total; ++i) {
    if (i < count && MaskOutlineSuite3()->AEGP_GetMaskOutlineVertexInfo(outline.get(), i, &vertex)) return;
    WriteMaskVertex(vertex, i, arrays);
  }
}

// Sizes the spline as one segment of `points` points; false without a segment array.
bool ShapeSpline(BaseObject* spline, A_long points, bool closed) {
  t_ORYOS_Bo->ResizeSpline(spline, points, 1);
  auto* segment = static_cast<SplineSegment*>(t_ORYOS_Bo->GetTagData(spline, TagType_Segments, 0));
  if (!segment) return false;
  segment->count = points;
  segment->closed = closed ? 1 : 0;
  return true;
}

// The mask's form at each of `times` as a key of the spline's point level animation. Every key
// holds as many points as the largest form has, the shorter forms repeating their last point;
// the spline is sized so before the first key copies its arrays. False, with the error in the
// list, when a track, key or payload cannot be had.
bool WriteMaskKeys(AEGP_StreamRefH stream, const TimeMap& times, BaseObject* spline, bool closed) {
  A_long points = 0;
  for (const auto& entry : times) points = std::max(points, MaskOutline(stream, entry.second, AEGP_LTimeMode_CompTime).Points());
  if (!ShapeSpline(spline, points, closed)) return true;
  AnimTrack* track = GetOrCreateShapeCurveTrack(spline);
  if (!track) {
    AddError(4, "Key curve didn't take.");
    return false;
  }
  AnimCurve* curve = t_ORYOS_CA->GetCurve(track, 1, true);
  if (!curve) {
    AddError(4, "Key track didn't take.");
    return false;
  }
  for (const auto& [documentTime, hostTime] : times) {
    AnimKey* key = FindOrAddShapeKey(curve, documentTime);
    if (!key) {
      AddError(4, "Key track insert didn't take.");
      return false;
    }
    const MaskOutline outline(stream, hostTime, AEGP_LTimeMode_LayerTime);
    ShapeKeyPayload payload(key);
    if (!payload.ok()) {
      AddError(4, "Export/Merge failed. Out of memory.");
      return false;
    }
    WriteMaskPoints(outline, std::min(outline.Points(), points), points, payload.arrays());
    payload.Store(kMaskKeyTension);
  }
  return true;
}

double OffsetAlong(double margin, double length) { return length > 0.0 ? margin / length : 0.0; }

// The offset keyed at each key of the First Margin: key times in seconds become host times of
// the composition's time scale, as the margin's value and the path's length are read there.
void WriteOffsetKeys(AEToOry& exporter, AEGP_LayerH layer, BaseObject* deformer, int keyCount) {
  static constexpr ParamLevel kOffsetLevel{DeformerParam_Offset, DataKind_Float, 0};
  AnimTrack* track = GetOrCreateTrack(deformer, ParamId{&kOffsetLevel, 1, 0}, "Deformer Offset");
  AnimCurve* curve = CurveOf(track);
  for (int k = 1; k <= keyCount; ++k) {
    const double seconds = GetPathMarginKeyTime(exporter, layer, true, k);
    A_Time t{0, exporter.compStart.scale};
    t.value = static_cast<A_long>(std::trunc(static_cast<double>(static_cast<float>(t.scale)) * seconds));
    const BaseTime time(t.value, t.scale);
    const double margin = GetPathMarginValue(exporter, layer, true, BuildPropertyPath("", &time));
    AddKeyValue(curve, time, OffsetAlong(margin, GetTextPathLength(exporter, layer, t)));
  }
  if (curve) SimplifyTrack(track);
}

void LinkSpline(BaseObject* deformer, BaseObject* pathSpline) {
  LinkHolder* holder = t_ORYOS_Ln->AllocLinkHolder();
  if (!holder) return;
  t_ORYOS_Ln->SetLinkTarget(holder, pathSpline);
  DataValue link{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetLinkHolder(&link, holder);
  SetDataParam(deformer, DeformerParam_Spline, link);
  t_ORYOS_Gd->Free(&link);
  t_ORYOS_Ln->FreeLinkHolder(holder);
  SetInt32Param(deformer, DeformerParam_Align, 1);
  SetFloatParam(deformer, DeformerParam_Turn, kQuarterTurn);
}

}  // namespace

BaseObject* ConvertTextPathMask(AEToOry& exporter, AEGP_LayerH layer, BaseObject* holder) {
  const int maskIndex = TextPathMask(exporter, layer);
  if (maskIndex == 0) return nullptr;
  BaseObject* spline = CreateChildObject(exporter, holder, layer, "Path", ObjectType_Spline, true, true);
  if (!spline) return nullptr;
  t_ORYOS_Bo->ResizeSpline(spline, 0, 1);
  const MaskOutlineStream stream(layer, maskIndex - 1);
  if (!stream.get()) return spline;
  TimeMap times;
  CollectKeyTimes(exporter, layer, stream.get(), true, &times);
  const MaskOutline still(stream.get(), kStillTime, AEGP_LTimeMode_CompTime);
  A_Boolean open = false;
  if (!still.get() || MaskOutlineSuite3()->AEGP_IsMaskOutlineOpen(still.get(), &open)) return spline;
  t_ORYOS_Bc->SetBool(t_ORYOS_Bl->GetDataInstance(spline), SplineParam_Closed, !open);
  if (!times.empty()) return WriteMaskKeys(stream.get(), times, spline, !open) ? spline : nullptr;
  const A_long points = still.Points();
  if (!ShapeSpline(spline, points, !open)) return nullptr;
  WriteMaskPoints(still, points, points, SplineArraysOf(spline));
  return spline;
}

double GetTextPathLength(AEToOry& exporter, AEGP_LayerH layer, const A_Time& time) {
  const int maskIndex = TextPathMask(exporter, layer);
  if (maskIndex == 0) return 0.0;
  const MaskOutlineStream stream(layer, maskIndex - 1);
  if (!stream.get()) return 0.0;
  const MaskOutline outline(stream.get(), time, AEGP_LTimeMode_CompTime);
  auto* path = reinterpret_cast<PF_PathOutlinePtr>(outline.get());
  A_long segments = 0;
  if (!path || PathDataSuite1()->PF_PathNumSegments(nullptr, path, &segments)) return 0.0;
  double sum = 0.0;
  for (A_long segment = 0; segment < segments; ++segment) {
    PF_PathSegPrepPtr prepared = nullptr;
    if (PathDataSuite1()->PF_PathPrepareSegLength(nullptr, path, segment, kLengthFrequency, &prepared)) break;
    double length = 0.0;
    const A_Err err = PathDataSuite1()->PF_PathGetSegLength(nullptr, path, segment, &prepared, &length);
    PathDataSuite1()->PF_PathCleanup(nullptr, &prepared);
    if (err) break;
    sum += length;
  }
  return sum;
}

void ExportTextPathDeformer(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text, BaseObject* pathSpline) {
  BaseObject* deformer = CreateChildObject(exporter, text, layer, "Deformer", ObjectType_Deformer, true, true);
  if (!deformer) return;
  const int keyCount = GetPathMarginNumKeys(exporter, layer, true);
  if (keyCount > 0) {
    WriteOffsetKeys(exporter, layer, deformer, keyCount);
  } else if (TextPathMask(exporter, layer) != 0) {
    const double length = GetTextPathLength(exporter, layer, kStillTime);
    SetFloatParam(deformer, DeformerParam_Offset,
                  OffsetAlong(GetPathMarginValue(exporter, layer, true, "value"), length));
  }
  LinkSpline(deformer, pathSpline);
}
