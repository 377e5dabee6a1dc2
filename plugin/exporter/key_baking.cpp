#include "plugin/exporter/key_baking.h"

#include <cmath>
#include <limits>
#include <vector>

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/layer_matrix.h"
#include "plugin/exporter/track_ops.h"

bool HasTimeVaryingExpression(AEGP_StreamRefH stream) {
  A_Boolean enabled = false, varying = false;
  if (StreamSuite9()->AEGP_GetExpressionState(PluginId(), stream, &enabled) || !enabled) return false;
  return !StreamSuite9()->AEGP_IsStreamTimevarying(stream, &varying) && varying;
}

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
// Frame rates assumed when the host does not tell; they only matter if a call fails.
constexpr double kFallbackExpressionRate = 30.0;
constexpr double kFallbackLayerRate = 25.0;

double LayerCompRate(AEGP_LayerH layer, double fallback, A_Err* err) {
  double rate = fallback;
  AEGP_CompH comp = nullptr;
  *err = LayerSuite13()->AEGP_GetLayerParentComp(layer, &comp);
  if (!*err) *err = CompSuite21()->AEGP_GetCompFramerate(comp, &rate);
  return rate;
}

int32_t FrameOfHostTime(const A_Time& t, double rate) { return FrameOf(FromAeTime(t.value, t.scale), rate); }

// Frames `from` to `to`, both included, of the current composition.
void InsertFrames(AEToOry& exporter, int32_t from, int32_t to, TimeMap* times, double* low, double* high) {
  for (int32_t i = from; i <= to; ++i) {
    InsertFrame(times, i, exporter.fps, exporter.frameDuration);
    const double r = TimeRatio(BaseTime(i, exporter.fps));
    *low = std::min(*low, r);
    *high = std::max(*high, r);
  }
}

struct FrameRange {
  int32_t first = 0;
  int32_t last = -1;
};

// The frames of the layer from its in point to its end, in its composition's rate.
FrameRange LayerFrames(AEGP_LayerH layer) {
  A_Err err = A_Err_NONE;
  const double rate = LayerCompRate(layer, kFallbackLayerRate, &err);
  A_Time in{0, 1}, duration{0, 1};
  LayerSuite13()->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &in);
  LayerSuite13()->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &duration);
  const int32_t first = FrameOfHostTime(in, rate);
  return FrameRange{first, first + FrameOfHostTime(duration, rate)};
}

// The smallest and the largest time ratio of a set of times; none while the set is empty.
struct RatioBounds {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();
  void Take(double r) {
    low = std::min(low, r);
    high = std::max(high, r);
  }
};

// Widens `bounds` by the times CollectKeyTimes with keys would add for `stream`: the frames it
// adds between the first and the last key lie inside them, so only the keys themselves, or the
// frames of a time-varying expression, count. No time map is built. Gives the error of asking
// for the number of keys, as CollectKeyTimes does.
A_Err WidenByKeyTimes(AEToOry& exporter, AEGP_StreamRefH stream, RatioBounds* bounds) {
  A_long keyCount = 0;
  const A_Err err = KeyframeSuite4()->AEGP_GetStreamNumKFs(stream, &keyCount);
  if (HasTimeVaryingExpression(stream)) {
    for (int32_t i = exporter.firstFrame; i <= exporter.frameCount; ++i) bounds->Take(TimeRatio(BaseTime(i, exporter.fps)));
    return err;
  }
  for (A_long i = 0; i < keyCount; ++i) {
    A_Time t{0, 1};
    KeyframeSuite4()->AEGP_GetKeyframeTime(stream, i, AEGP_LTimeMode_CompTime, &t);
    bounds->Take(TimeRatio(FromAeTime(t.value, t.scale)));
  }
  return err;
}

// Calls `visit(documentTime, hostTime)` for every frame of the layer from its in point to its
// end, in order: the times CollectLayerStreamTimes without keys puts in its map, without the map.
template <class Visit>
void ForEachLayerFrame(AEToOry& exporter, AEGP_LayerH layer, Visit visit) {
  const FrameRange range = LayerFrames(layer);
  for (int32_t i = range.first; i <= range.last; ++i) {
    const A_Time hostTime{i * exporter.frameDuration.value, exporter.frameDuration.scale};
    visit(BaseTime(i, exporter.fps), hostTime);
  }
}

// One frame's decomposed world matrix, kept until the whole span is baked so that each curve
// then takes its keys in one run.
struct BakedFrame {
  BaseTime time;
  Vector position, rotation, scale;
};

void AddBakedKeys(const std::vector<BakedFrame>& baked, AnimTrack* const* tracks, Vector BakedFrame::*part) {
  for (int axis = 0; axis < 3; ++axis) {
    AnimCurve* curve = CurveOf(tracks[axis]);
    if (!curve) continue;
    for (const BakedFrame& frame : baked) {
      const Vector& v = frame.*part;
      AddKeyValue(curve, frame.time, axis == 0 ? v.x : axis == 1 ? v.y : v.z);
    }
  }
}

}  // namespace

int32_t CountStreamKeys(AEGP_LayerH layer, AEGP_StreamRefH stream) {
  A_long count = 0;
  if (KeyframeSuite4()->AEGP_GetStreamNumKFs(stream, &count)) count = 0;
  if (!HasTimeVaryingExpression(stream)) return count;
  A_Time duration{0, 1};
  A_Err err = LayerSuite13()->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &duration);
  A_Err rateErr = A_Err_NONE;
  const double rate = LayerCompRate(layer, kFallbackExpressionRate, &rateErr);
  if (err || rateErr) return count;
  return static_cast<int32_t>(std::floor((rate + 0.5) * duration.value) / std::floor(static_cast<double>(duration.scale)));
}

int32_t CountLayerStreamKeys(AEGP_LayerH layer, AEGP_LayerStream streamId) {
  if (!layer || streamId == AEGP_LayerStream_NONE) return 0;
  LayerStream stream(layer, streamId);
  return stream ? CountStreamKeys(layer, stream.get()) : 0;
}

A_Err CollectKeyTimes(AEToOry& exporter, AEGP_LayerH layer, AEGP_StreamRefH stream, bool useKeys, TimeMap* times) {
  if (!stream) return A_Err_PARAMETER;
  A_long keyCount = 0;
  A_Err err = KeyframeSuite4()->AEGP_GetStreamNumKFs(stream, &keyCount);
  double low = std::numeric_limits<float>::max(), high = std::numeric_limits<float>::min();
  if (!useKeys) {
    const FrameRange range = LayerFrames(layer);
    InsertFrames(exporter, range.first, range.last, times, &low, &high);
    return err;
  }
  if (HasTimeVaryingExpression(stream)) {
    // frameCount stands as it is, not added to firstFrame.
    InsertFrames(exporter, exporter.firstFrame, exporter.frameCount, times, &low, &high);
    return err;
  }
  for (A_long i = 0; i < keyCount; ++i) {
    A_Time t{0, 1};
    KeyframeSuite4()->AEGP_GetKeyframeTime(stream, i, AEGP_LTimeMode_CompTime, &t);
    InsertHostTime(times, t);
    low = std::min(low, TimeRatio(t));
    high = std::max(high, TimeRatio(t));
  }
  if (times->size() <= 1) return err;
  // Keys pull in all frames between the first and the last; position surely exists and serves
  // to ask the layer's frames, whichever stream has the keys.
  if (!LayerStream(layer, AEGP_LayerStream_POSITION)) return err;
  const FrameRange range = LayerFrames(layer);
  for (int32_t i = range.first; i <= range.last; ++i) {
    const double r = TimeRatio(BaseTime(i, exporter.fps));
    if (r > low && r < high) InsertFrame(times, i, exporter.fps, exporter.frameDuration);
  }
  return err;
}

A_Err CollectLayerStreamTimes(AEToOry& exporter, AEGP_LayerH layer, AEGP_LayerStream streamId, bool useKeys,
                              TimeMap* times) {
  LayerStream stream(layer, streamId);
  if (!stream) return A_Err_PARAMETER;
  return CollectKeyTimes(exporter, layer, stream.get(), useKeys, times);
}

bool BakeLayerTransform(AEToOry& exporter, AEGP_LayerH layer, const LayerStream& anchor, const LayerStream& scale,
                        const TransformTracks& tracks, int32_t width, int32_t height, bool isPlaneOrNull,
                        bool hasRotation, bool hasScale) {
  if (hasRotation && (!tracks.rotation[0] || !tracks.rotation[1] || !tracks.rotation[2])) return false;
  if (hasScale && (!tracks.scale[0] || !tracks.scale[1] || !tracks.scale[2])) return false;

  RatioBounds span;
  A_Err err = A_Err_NONE;
  for (AEGP_LayerStream id : {AEGP_LayerStream_POSITION, AEGP_LayerStream_ANCHORPOINT, AEGP_LayerStream_ROTATE_X,
                              AEGP_LayerStream_ROTATE_Y, AEGP_LayerStream_ROTATION, AEGP_LayerStream_ORIENTATION}) {
    LayerStream stream(layer, id);
    if (stream) WidenByKeyTimes(exporter, stream.get(), &span);
  }
  if (scale) err = WidenByKeyTimes(exporter, scale.get(), &span);

  // Position is the stream that surely exists for asking the layer's frames; without it there
  // are none.
  std::vector<BakedFrame> baked;
  if (LayerStream(layer, AEGP_LayerStream_POSITION)) {
    Vector previousRotation;
    bool continueRotation = false;
    ForEachLayerFrame(exporter, layer, [&](const BaseTime& docTime, const A_Time& hostTime) {
      const double r = TimeRatio(docTime);
      if (r > span.high || r < span.low) return;
      A_Matrix4 m{};
      if (!err) err = LayerSuite13()->AEGP_GetLayerToWorldXform(layer, &hostTime, &m);
      BakedFrame frame{docTime, {}, {}, {}};
      DecomposeLayerMatrix(width, height, isPlaneOrNull && anchor, hasScale && scale, &frame.position,
                           &frame.rotation, &frame.scale, continueRotation, &previousRotation, m);
      frame.position.z += exporter.TopZOffset();
      if (hasRotation) {
        previousRotation = frame.rotation;
        continueRotation = true;
      }
      baked.push_back(frame);
    });
  }
  const bool writeScale = hasScale && !(exporter.exportTextAsPlanes && LayerObjectType(layer) == AEGP_ObjectType_TEXT);
  AddBakedKeys(baked, tracks.position, &BakedFrame::position);
  if (hasRotation) AddBakedKeys(baked, tracks.rotation, &BakedFrame::rotation);
  if (writeScale) AddBakedKeys(baked, tracks.scale, &BakedFrame::scale);
  for (AnimTrack* track : tracks.position) SimplifyTrack(track);
  if (hasScale) {
    for (AnimTrack* track : tracks.scale) SimplifyTrack(track);
  }
  return err == A_Err_NONE;
}

namespace {

// The values that one sampling mode writes to the three tracks.
struct SampledValues {
  double v[3] = {};
};

SampledValues ConvertSample(SampleMode mode, const AEGP_StreamVal2& a, const AEGP_StreamVal2* b, double divisor,
                            double compWidth, double pixelAspect) {
  SampledValues out;
  switch (mode) {
    case SampleMode::targetPosition:
      out.v[0] = a.three_d.x;
      out.v[1] = -a.three_d.y;
      out.v[2] = a.three_d.z;
      break;
    case SampleMode::divided:
      out.v[0] = a.one_d / divisor;
      break;
    case SampleMode::fieldOfView:
      out.v[0] = 2.0 * std::atan(compWidth * 0.5 / (a.one_d / pixelAspect));
      break;
    case SampleMode::coneAngles:
      out.v[0] = a.one_d * kRadiansPerDegree;
      out.v[1] = (1.0 - (b ? b->one_d : 0.0) / 100.0) * a.one_d * kRadiansPerDegree;
      break;
    case SampleMode::colour:
      out.v[0] = a.color.red;
      out.v[1] = a.color.green;
      out.v[2] = a.color.blue;
      break;
    case SampleMode::falloff:
      out.v[0] = a.one_d + (b ? b->one_d : 0.0);
      break;
  }
  return out;
}

}  // namespace

A_Err SampleStreamToTracks(AEToOry& exporter, AEGP_LayerH layer, AEGP_LayerStream streamId, AnimTrack* t1,
                           AnimTrack* t2, AnimTrack* t3, SampleMode mode, double divisor,
                           AEGP_LayerStream secondStreamId) {
  LayerStream stream(layer, streamId);
  if (!stream) return A_Err_PARAMETER;
  LayerStream second;
  if (secondStreamId != AEGP_LayerStream_NONE) second = LayerStream(layer, secondStreamId);
  if (!t1) return A_Err_PARAMETER;
  AnimCurve* curves[3] = {CurveOf(t1), t2 ? CurveOf(t2) : nullptr, t3 ? CurveOf(t3) : nullptr};
  int32_t compWidth = 0, compHeight = 0;
  if (mode == SampleMode::fieldOfView) exporter.CompSize(&compWidth, &compHeight);

  A_Err err = A_Err_NONE;
  ForEachLayerFrame(exporter, layer, [&](const BaseTime& docTime, const A_Time& hostTime) {
    if (err) return;  // a failed read ends the sampling
    StreamValue a, b;
    err = a.Read(stream.get(), hostTime);
    if (!err && second) err = b.Read(second.get(), hostTime);
    if (err) return;
    const SampledValues values = ConvertSample(mode, a.value(), second ? &b.value() : nullptr, divisor, compWidth,
                                               exporter.pixelAspect);
    for (int i = 0; i < 3; ++i) AddKeyValue(curves[i], docTime, values.v[i]);
  });
  for (AnimTrack* track : {t1, t2, t3}) SimplifyTrack(track);
  return err;
}
