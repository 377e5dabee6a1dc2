#include "plugin/exporter/text_shape/shape_layer.h"

#include <algorithm>
#include <memory>

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/text_shape/outline_spline.h"
#include "plugin/exporter/text_shape/shape_colour.h"
#include "plugin/exporter/text_shape/shape_host.h"
#include "plugin/exporter/time_map.h"
#include "plugin/exporter/track_ops.h"
#include "plugin/exporter/transform_channels.h"

namespace {

// Items of one layer lie this far apart in depth, in the order the host lists them.
constexpr double kItemDepthStep = 0.5;
// A shape, item or outline the host does not give while writing.
constexpr A_Err kShapeMissing = 3;
constexpr A_Err kOutOfMemory = 4;
// The extrude object's parameters 2000 and 2001, both set to 1.
constexpr int32_t kExtrudeParamFirst = 2000;
constexpr int32_t kExtrudeParamSecond = 2001;

A_Time FrameTime(int32_t frame, const A_Time& frameDuration) {
  return A_Time{frame * frameDuration.value, frameDuration.scale};
}

// Whether the shape's form differs between two layer times, by the host's identities.
bool FormsDiffer(AEGP_LayerH layer, const A_Time& previous, const A_Time& current, A_Err* err) {
  const HostShape before(layer, previous, kAEGPShapeLayerSuiteVersion3);
  const HostShape after(layer, current, kAEGPShapeLayerSuiteVersion3);
  *err = before.error() ? before.error() : after.error();
  if (*err || !before.get() || !after.get()) return false;
  AEGP_GuidH first = nullptr, second = nullptr;
  A_Boolean equal = true;
  *err = ShapeLayerSuite3()->GetShapeIdentity(before.get(), &first);
  if (!*err) *err = ShapeLayerSuite3()->GetShapeIdentity(after.get(), &second);
  if (!*err) *err = GuidSuite2()->CompareIdentity(first, second, &equal);
  if (first) GuidSuite2()->DisposeIdentity(first);
  if (second) GuidSuite2()->DisposeIdentity(second);
  return !*err && !equal;
}

// The document times at which the form is written, each with the layer time it is read at:
// the two frames beside each change, or the first frame alone for a still form.
TimeMap ShapeTimes(AEToOry& exporter, AEGP_LayerH layer, int32_t first, int32_t total, A_Err* err) {
  TimeMap times;
  const A_Time& step = exporter.frameDuration;
  A_Time previous{0, step.scale};
  BaseTime previousKey(first, exporter.fps);
  for (int32_t k = 1; k < total; ++k) {
    const A_Time current = FrameTime(k, step);
    const BaseTime currentKey(first + k, exporter.fps);
    if (!*err && FormsDiffer(layer, previous, current, err)) {
      times[previousKey] = previous;
      times[currentKey] = current;
    }
    previous = current;
    previousKey = currentKey;
  }
  if (times.empty()) times[BaseTime(first, exporter.fps)] = FrameTime(first, step);
  return times;
}

// The largest contour and vertex counts of the item over all times.
OutlineDims MeasureItem(AEGP_LayerH layer, A_long index, const TimeMap& times) {
  OutlineDims dims;
  for (const auto& entry : times) {
    const HostShape shape(layer, entry.second, kAEGPShapeLayerSuiteVersion2);
    const ItemOutlines outlines(shape.Item(index));
    if (!outlines.ok()) continue;
    const A_long n = outlines.Count();
    A_long vertices = 0;
    for (A_long j = 0; j < n; ++j) {
      A_long count = 0;
      if (PF_PathOutlinePtr path = outlines.Path(j); path && !PathDataSuite1()->PF_PathNumSegments(nullptr, path, &count))
        vertices = std::max(vertices, count);
    }
    IncludeOutline(&dims, n, vertices);
  }
  return dims;
}

// The item's contours at one time, into the spline's own arrays or, with a curve, into the key
// at `time`. Contours beyond those the host gives repeat its last one, so every key has the
// same layout.
A_Err WriteShapeAtTime(AEGP_LayerH layer, A_long index, const BaseTime& time, const A_Time& at, BaseObject* spline,
                       AnimCurve* curve, const OutlineDims& dims) {
  const HostShape shape(layer, at, kAEGPShapeLayerSuiteVersion2);
  const ItemOutlines outlines(shape.Item(index));
  if (!outlines.ok()) return kShapeMissing;
  AnimKey* key = nullptr;
  if (curve && !(key = FindOrAddShapeKey(curve, time))) {
    AddError(kOutOfMemory, "Key track insert memory error.");
    return kOutOfMemory;
  }
  std::unique_ptr<ShapeKeyPayload> payload;
  if (key) {
    payload = std::make_unique<ShapeKeyPayload>(key);
    if (!payload->ok()) {
      AddError(kOutOfMemory, "Key track insert PLA memory error.");
      return kOutOfMemory;
    }
  }
  const SplineArrays arrays = payload ? payload->arrays() : SplineArraysOf(spline);
  if (!arrays.points || !arrays.tangents) {
    AddError(kOutOfMemory, "Export/Merge failed. Out of memory.");
    return kOutOfMemory;
  }
  auto* segments = static_cast<SplineSegment*>(t_ORYOS_Bo->GetTagData(spline, TagType_Segments, 0));
  const A_long n = outlines.Count();
  A_long source = 0;
  for (int32_t j = 0; j < dims.contours; ++j) {
    if (j < n) source = j;
    const PF_PathOutlinePtr path = outlines.Path(source);
    A_long vertices = 0;
    if (!path || PathDataSuite1()->PF_PathNumSegments(nullptr, path, &vertices) || vertices == 0) continue;
    if (A_Err err = WriteOutlineContour(path, vertices, segments, j, dims, arrays, OutlinePlacement{})) return err;
  }
  if (payload) payload->Store(kOutlineKeyTension);
  return A_Err_NONE;
}

void PlaceItem(BaseObject* extrude, BaseObject* spline, A_long index) {
  const Vector position{0.0, 0.0, kItemDepthStep * index};
  t_ORYOS_Bo->SetPosition(spline, &position);
  t_ORYOS_Bc->SetBool(t_ORYOS_Bl->GetDataInstance(spline), SplineParam_Closed, true);
  SetContainerInt32(extrude, kExtrudeParamFirst, 1);
  SetContainerInt32(extrude, kExtrudeParamSecond, 1);
}

struct ItemResult {
  A_Err status = A_Err_NONE;
  bool endsLayer = false;  // the item ended before its form was written: the layer ends too
};

ItemResult ExportShapeItem(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, const TimeMap& times,
                           A_long index, A_long count) {
  if (const int32_t cancel = exporter.ReportSubProgress(index, count)) return {cancel, true};
  const std::string name = NodeName(object) + "-" + std::to_string(index);
  BaseObject* extrude = CreateChildObject(exporter, object, layer, name, ObjectType_Extrude, true, false);
  if (!extrude) return {kOutOfMemory, true};
  bool made = false;
  BaseObject* spline = CreateChildObject(exporter, extrude, layer, name + "-Spline", ObjectType_Spline, true, false, &made);
  if (!spline) return {kOutOfMemory, true};
  PlaceItem(extrude, spline, index);
  AnimTrack* track = nullptr;
  AnimCurve* curve = nullptr;
  if (times.size() > 1) {
    if (!(track = GetOrCreateShapeCurveTrack(spline))) {
      AddError(kOutOfMemory, "Key curve track memory error.");
      return {kOutOfMemory, true};
    }
    if (!(curve = t_ORYOS_CA->GetCurve(track, 1, true))) {
      AddError(kOutOfMemory, "Key track memory error.");
      return {kOutOfMemory, true};
    }
  }
  const OutlineDims dims = MeasureItem(layer, index, times);
  if (made) t_ORYOS_Bo->ResizeSpline(spline, dims.contours * dims.points, dims.contours);
  const auto k = static_cast<int32_t>(times.size());
  A_Err status = A_Err_NONE;
  int32_t j = 0;
  for (const auto& [time, at] : times) {
    if ((status = exporter.ReportSubProgress(j + k * index, k * count))) break;
    if ((status = WriteShapeAtTime(layer, index, time, at, spline, curve, dims))) break;
    ++j;
  }
  if (track) {
    const bool keyed = t_ORYOS_CA->GetKeyCount(curve) > 0;
    SimplifyTrack(track);
    // Without the track the spline's own arrays must hold the form, at the first time.
    if (!keyed || !HasShapeCurveTrack(spline)) {
      t_ORYOS_Bo->ResizeSpline(spline, 0, 0);
      t_ORYOS_Bo->ResizeSpline(spline, dims.contours * dims.points, dims.contours);
      const auto& first = *times.begin();
      status = WriteShapeAtTime(layer, index, first.first, first.second, spline, nullptr, dims);
    }
  }
  if (status == A_Err_NONE) ExportShapeColour(exporter, layer, index, extrude);
  return {status, false};
}

}  // namespace

A_Err ExportShapeLayer(AEToOry& exporter, AEGP_LayerH layer) {
  BaseObject* object = CreateLayerObject(exporter, layer, ObjectType_Null, true);
  if (!object) {
    AddError(kOutOfMemory, "Export failed. Out of memory during shape creation.");
    return kOutOfMemory;
  }
  const int32_t noSize = 0;
  if (A_Err err = ApplyObjectBasics(exporter, object, layer, &noSize, &noSize)) return err;
  ShapeTimeFrame frame;
  A_Err err = ReadShapeTimeFrame(layer, &frame);
  const int32_t first = FrameOf(FromAeTime(frame.inPoint.value, frame.inPoint.scale), frame.rate);
  const int32_t total = FrameOf(FromAeTime(frame.duration.value, frame.duration.scale), frame.rate) + 1;
  const TimeMap times = ShapeTimes(exporter, layer, first, total, &err);
  A_long count = 0;
  {
    const HostShape atStart(layer, exporter.compStart, kAEGPShapeLayerSuiteVersion2);
    if (!err) err = atStart.error();
    if (!err && atStart.get()) err = ShapeLayerSuite2()->GetShapeItemCount(atStart.get(), &count);
  }
  if (count < 1) return err;
  A_Err status = A_Err_NONE;
  for (A_long index = 0; index < count; ++index) {
    const ItemResult item = ExportShapeItem(exporter, layer, object, times, index, count);
    if (item.endsLayer) return item.status;
    status = item.status;
  }
  return status;
}
