#include "plugin/exporter/key_baking.h"

#include <cmath>
#include <limits>

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/layer_matrix.h"
#include "plugin/exporter/track_ops.h"
#include "plugin/exporter/transform_channels.h"

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
// Frame rate assumed when the host does not tell; it only matters if a call fails.
constexpr double kFallbackExpressionRate = 30.0;

bool HasTimeVaryingExpression(AEGP_StreamRefH stream) {
  A_Boolean enabled = false, varying = false;
  if (StreamSuite9()->AEGP_GetExpressionState(PluginId(), stream, &enabled) || !enabled) return false;
  return !StreamSuite9()->AEGP_IsStreamTimevarying(stream, &varying) && varying;
}

double LayerCompRate(AEGP_LayerH layer, double fallback, A_Err* err) {
  double rate = fallback;
  AEGP_CompH comp = nullptr;
  *err = LayerSuite13()->AEGP_GetLayerParentComp(layer, &comp);
  if (!*err) *err = CompSuite21()->AEGP_GetCompFramerate(comp, &rate);
  return rate;
}

// Frames `from` to `to`, both included, of the current composition.
void InsertFrames(AEToOry& exporter, int32_t from, int32_t to, TimeMap* times) {
  for (int32_t i = from; i <= to; ++i) InsertFrame(times, i, exporter.firstFrame, exporter.fps, exporter.frameDuration);
}

// The earliest and latest host time of the entries; an empty map gives an empty interval.
// Spans are bounded in the host's seconds, never in document seconds: at 29.97 frames per
// second frame 30 is 1 s in the document but 1.001 s in After Effects.
std::pair<double, double> HostBounds(const TimeMap& times) {
  if (times.empty()) return {1.0, 0.0};
  double low = TimeRatio(times.begin()->second), high = low;
  for (const auto& [docTime, hostTime] : times) {
    low = std::min(low, TimeRatio(hostTime));
    high = std::max(high, TimeRatio(hostTime));
  }
  return {low, high};
}

}  // namespace

FrameSpan LayerFrames(const AEToOry& exporter, AEGP_LayerH layer) {
  A_Time in{0, 1}, duration{0, 1};
  LayerSuite13()->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &in);
  LayerSuite13()->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &duration);
  return LayerFrameSpan(in, duration, exporter.frameDuration);
}

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
  if (!useKeys) {
    const FrameSpan range = LayerFrames(exporter, layer);
    InsertFrames(exporter, range.first, range.last, times);
    return err;
  }
  if (HasTimeVaryingExpression(stream)) {
    // An expression may change anything at any frame: every frame of the composition. Frames
    // count from the composition's time 0, whatever frame its display starts at.
    InsertFrames(exporter, 0, exporter.frameCount - 1, times);
    return err;
  }
  double low = std::numeric_limits<float>::max(), high = std::numeric_limits<float>::min();
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
  const FrameSpan range = LayerFrames(exporter, layer);
  const FrameSpan keyed = FramesAroundKeys(low, high, exporter.frameDuration);
  for (int32_t i = std::max(range.first, keyed.first); i <= std::min(range.last, keyed.last); ++i)
    InsertFrame(times, i, exporter.firstFrame, exporter.fps, exporter.frameDuration);
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
  TrackCurves position(tracks.position), rotation(hasRotation ? tracks.rotation : nullptr),
      scaleCurves(hasScale ? tracks.scale : nullptr);

  TimeMap frames;
  CollectLayerStreamTimes(exporter, layer, AEGP_LayerStream_POSITION, false, &frames);
  TimeMap span;
  A_Err err = A_Err_NONE;
  for (AEGP_LayerStream id : {AEGP_LayerStream_POSITION, AEGP_LayerStream_ANCHORPOINT, AEGP_LayerStream_ROTATE_X,
                              AEGP_LayerStream_ROTATE_Y, AEGP_LayerStream_ROTATION, AEGP_LayerStream_ORIENTATION}) {
    LayerStream stream(layer, id);
    if (stream) CollectKeyTimes(exporter, layer, stream.get(), true, &span);
  }
  if (scale) err = CollectKeyTimes(exporter, layer, scale.get(), true, &span);
  const auto [low, high] = HostBounds(span);
  const FrameSpan keyed = FramesAroundKeys(low, high, exporter.frameDuration);

  const bool writeScale = hasScale && !(exporter.exportTextAsPlanes && LayerObjectType(layer) == AEGP_ObjectType_TEXT);
  Vector previousRotation;
  bool continueRotation = false;
  for (const auto& [docTime, hostTime] : frames) {
    // Every entry of `frames` is a frame of the composition: a whole number of frame durations.
    const int32_t frame = hostTime.value / exporter.frameDuration.value;
    if (frame < keyed.first || frame > keyed.last) continue;
    A_Matrix4 m{};
    if (!err) err = LayerMatrixAt(exporter, layer, hostTime, &m);
    Vector p, rot, s;
    DecomposeLayerMatrix(width, height, isPlaneOrNull && anchor, hasScale && scale, &p, &rot, &s, continueRotation,
                         &previousRotation, m);
    p.z += exporter.TopZOffset();
    position.AddKeys(docTime, p);
    if (hasRotation) {
      rotation.AddKeys(docTime, rot);
      previousRotation = rot;
      continueRotation = true;
    }
    if (writeScale) scaleCurves.AddKeys(docTime, s);
  }
  // The keys hold world values until the object is placed under its parent; they are pruned
  // there, once they are relative to it (RebaseToParent).
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

  TimeMap times;
  CollectLayerStreamTimes(exporter, layer, streamId, false, &times);
  A_Err err = A_Err_NONE;
  for (const auto& [docTime, hostTime] : times) {
    StreamValue a, b;
    err = a.Read(stream.get(), hostTime);
    if (!err && second) err = b.Read(second.get(), hostTime);
    if (err) break;
    const SampledValues values = ConvertSample(mode, a.value(), second ? &b.value() : nullptr, divisor, compWidth,
                                               exporter.pixelAspect);
    for (int i = 0; i < 3; ++i) AddKeyValue(curves[i], docTime, values.v[i]);
  }
  for (AnimTrack* track : {t1, t2, t3}) SimplifyTrack(track);
  return err;
}
