#include "plugin/exporter/text_shape/outline_spline.h"

#include <vector>

#include "plugin/engine/engine_extensions.h"
#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace {

constexpr ParamLevel kShapeCurveLevel{SplineKeyTrack_Id, SplineKeyTrack_Id, 0};
constexpr ParamLevel kPayloadLevel{SplineKeyParam_Payload, DataKind_SplineKey, 0};

}  // namespace

A_Err WriteOutlineContour(PF_PathOutlinePtr path, A_long n, SplineSegment* segments, int32_t contourIndex,
                          const OutlineDims& dims, const SplineArrays& arrays, const OutlinePlacement& placement) {
  if (!path || n <= 0 || !segments) return A_Err_NONE;
  std::vector<PF_PathVertex> vertices(static_cast<size_t>(n));
  for (A_long v = 0; v < n; ++v) {
    if (const A_Err err = PathDataSuite1()->PF_PathVertexInfo(nullptr, path, v, &vertices[v])) return err;
  }
  WriteContour(vertices.data(), n, contourIndex, dims, placement, segments, arrays);
  return A_Err_NONE;
}

SplineArrays SplineArraysOf(BaseObject* spline) {
  return SplineArrays{static_cast<Vector*>(t_ORYOS_Bo->GetTagData(spline, TagType_Points, 0)),
                      static_cast<SplineTangent*>(t_ORYOS_Bo->GetTagData(spline, TagType_Tangents, 0))};
}

AnimTrack* GetOrCreateShapeCurveTrack(BaseObject* spline) {
  const ParamId id{&kShapeCurveLevel, 1, 0};
  if (AnimTrack* found = t_ORYOS_Bl->FindTrack(spline, &id)) return found;
  AnimTrack* track = t_ORYOS_CA->AllocTrack(spline, &id);
  if (!track) return nullptr;
  SetNodeName(track, "Shape Curve");
  t_ORYOS_Bl->InsertTrack(spline, track);
  return track;
}

bool HasShapeCurveTrack(BaseObject* spline) {
  const ParamId id{&kShapeCurveLevel, 1, 0};
  return t_ORYOS_Bl->FindTrack(spline, &id) != nullptr;
}

AnimKey* FindOrAddShapeKey(AnimCurve* curve, const BaseTime& time) {
  if (AnimKey* key = t_ORYOS_CA->FindKey(curve, &time, nullptr, 0)) return key;
  return t_ORYOS_CA->AddKey(curve, &time, nullptr, 0, 0);
}

ShapeKeyPayload::ShapeKeyPayload(AnimKey* key) : key_(key), data_{DataKind_Empty, 0, {0}} {
  const ParamId id{&kPayloadLevel, 1, 0};
  if (!t_ORYOS_At->GetParameter(key, &id, &data_, 0)) return;
  void* payload = t_ORYOS_Gd->GetCustomData(&data_, DataKind_SplineKey);
  const SplineKeyLibrary* library = ExtensionLibrary<SplineKeyLibrary>(kExtensionSplineKey);
  BaseTag* points = nullptr;
  BaseTag* tangents = nullptr;
  if (!payload || !library || !library->GetSplineKeyTags || !library->GetSplineKeyTags(payload, &points, &tangents) ||
      !points || !tangents) {
    return;
  }
  arrays_.points = static_cast<Vector*>(t_ORYOS_Tg->GetDataAddress(points));
  arrays_.tangents = static_cast<SplineTangent*>(t_ORYOS_Tg->GetDataAddress(tangents));
}

ShapeKeyPayload::~ShapeKeyPayload() { t_ORYOS_Gd->Free(&data_); }

void ShapeKeyPayload::Store(double tension) {
  SetInt32Param(key_, SplineKeyParam_Mode, 0);
  SetFloatParam(key_, SplineKeyParam_Tension, tension);
  const ParamId id{&kPayloadLevel, 1, 0};
  t_ORYOS_At->SetParameter(key_, &id, &data_, 0);
}
