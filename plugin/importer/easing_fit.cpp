#include "plugin/importer/easing_fit.h"

#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "plugin/importer/easing_script.h"
#include "plugin/importer/import_file.h"
#include "plugin/importer/import_session.h"
#include "plugin/importer/scene_read.h"

namespace {

// What the fit learns of the stream before it starts.
struct StreamState {
  bool isSeparated = false;
  AEGP_StreamRefH leader = nullptr;
  A_u_short dimension = 65535;
  AEGP_StreamType streamType = static_cast<AEGP_StreamType>(-1);
  std::string propertyName;
};

const AEGP_StreamSuite9* Streams(CTI* cti) {
  return cti->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
}

A_Err ReadStreamState(CTI* cti, AEGP_StreamRefH stream, StreamState* state) {
  const auto* dynamic = cti->Suite<AEGP_DynamicStreamSuite5>(kAEGPDynamicStreamSuite, kAEGPDynamicStreamSuiteVersion5);
  A_Boolean separated = false;
  A_Err err = dynamic->AEGP_IsSeparationFollower(stream, &separated);
  state->isSeparated = separated;
  if (!err && state->isSeparated) err = dynamic->AEGP_GetSeparationLeader(stream, &state->leader);
  if (!err && state->isSeparated) err = dynamic->AEGP_GetSeparationDimension(stream, &state->dimension);
  const bool typeOfLeader = state->isSeparated && state->leader && state->dimension == 1;
  if (!err) err = Streams(cti)->AEGP_GetStreamType(typeOfLeader ? state->leader : stream, &state->streamType);
  char name[AEGP_MAX_STREAM_NAME_SIZE] = {};
  if (!err) err = Streams(cti)->AEGP_GetStreamName(state->leader ? state->leader : stream, true, name);
  state->propertyName = name;
  return err;
}

// The scene's y axis is the opposite of the host's: the y dimension of a spatial stream
// changes sign on the way.
bool NegatesValues(const StreamState& state) {
  return state.dimension == 1 &&
         (state.streamType == AEGP_StreamType_ThreeD_SPATIAL || state.streamType == AEGP_StreamType_TwoD_SPATIAL);
}

A_Time FrameTime(int32_t frame, uint32_t scale) { return A_Time{frame * 100, scale}; }

A_Err AddSceneKeys(CTI* cti, AEGP_StreamRefH stream, AnimCurve* curve, double frameRate, bool negate) {
  const auto* keyframes = cti->Suite<AEGP_KeyframeSuite4>(kAEGPKeyframeSuite, kAEGPKeyframeSuiteVersion4);
  AEGP_AddKeyframesInfoH batch = nullptr;
  A_Err err = keyframes->AEGP_StartAddKeyframes(stream, &batch);
  const uint32_t scale = ImportTimeScale(frameRate);
  const int32_t count = t_ORYOS_CA->GetKeyCount(curve);
  for (int32_t i = 0; i < count && !err; ++i) {
    const AnimKey* key = t_ORYOS_CA->GetKey(curve, i);
    BaseTime time;
    t_ORYOS_CA->GetKeyTime(key, &time);
    const A_Time hostTime = FrameTime(SceneFrame(time, frameRate), scale);
    A_long index = 0;
    err = keyframes->AEGP_AddKeyframes(batch, AEGP_LTimeMode_LayerTime, &hostTime, &index);
    AEGP_StreamValue2 value{};
    value.streamH = stream;
    value.val.one_d = negate ? -t_ORYOS_CA->GetKeyValue(key) : t_ORYOS_CA->GetKeyValue(key);
    if (!err) err = keyframes->AEGP_SetAddKeyframe(batch, index, &value);
  }
  if (batch) {
    const A_Err ended = keyframes->AEGP_EndAddKeyframes(true, batch);
    if (!err) err = ended;
  }
  return err;
}

// One fit in progress: the eases it has sent and the miss of the frame it tested last.
struct Fit {
  CTI* cti;
  AEGP_StreamRefH stream;
  AnimTrack* track;
  BaseDocument* document;
  double frameRate;
  uint32_t scale;
  KeyEaseTarget target;
  KeyEase easeIn{10.0, 50.0};
  KeyEase easeOut{10.0, 50.0};
  double difference = 100.0;
};

// How far the host's value misses the scene's at a frame; a failed read misses by nothing.
// Both are read at the same frame number: the scene at that frame of its rate, the host at
// that frame of the import's time scale, where the keys were put.
double Miss(Fit& fit, int32_t frame, bool* readable) {
  const BaseTime sceneTime(frame, fit.frameRate);
  const double scene = t_ORYOS_CA->GetCurveValue(fit.track, fit.document, &sceneTime, 0);
  const A_Time hostTime = FrameTime(frame, fit.scale);
  AEGP_StreamValue2 value{};
  const auto* streams = Streams(fit.cti);
  *readable = !streams->AEGP_GetNewStreamValue(fit.cti->pluginId, fit.stream, AEGP_LTimeMode_CompTime, &hostTime,
                                                false, &value);
  if (!*readable) return 0.0;
  const double host = value.val.one_d;
  streams->AEGP_DisposeStreamValue(&value);
  return std::abs(scene - host);
}

// Tests a frame and repairs the first key's speed while the frame misses, at most
// kEaseRepairsPerFrame times.
A_Err TestFrame(Fit& fit, int32_t frame) {
  for (int repairs = 0;; ++repairs) {
    bool readable = false;
    fit.difference = Miss(fit, frame, &readable);
    if (fit.difference <= kEaseTolerance || repairs == kEaseRepairsPerFrame) return A_Err_NONE;
    fit.easeOut.speed = fit.difference;
    fit.target.keyIndex = 1;
    if (A_Err err = RunKeyEase(fit.cti, fit.target, fit.easeIn, fit.easeOut)) return err;
  }
}

}  // namespace

A_Err FitEasedCurve(CTI* cti, AEGP_LayerH layer, AEGP_StreamRefH stream, AnimTrack* track) {
  if (!track || !stream) return A_Err_NONE;
  AnimCurve* curve = t_ORYOS_CA->GetCurve(track, 1, false);
  if (!curve || t_ORYOS_CA->GetKeyCount(curve) == 0) return A_Err_NONE;
  BaseDocument* document = g_importSession.document;
  const double frameRate = ContainerInt32(document, DocParam_Fps, 0);

  StreamState state;
  A_Err err = ReadStreamState(cti, stream, &state);
  if (state.leader) {
    const A_Err disposed = Streams(cti)->AEGP_DisposeStream(state.leader);
    if (!err) err = disposed;
  }
  if (!err) err = AddSceneKeys(cti, stream, curve, frameRate, NegatesValues(state));
  A_long layerIndex = 0;
  if (!err) err = cti->Suite<AEGP_LayerSuite13>(kAEGPLayerSuite, kAEGPLayerSuiteVersion13)
                      ->AEGP_GetLayerIndex(layer, &layerIndex);
  if (err) return err;

  const int32_t count = t_ORYOS_CA->GetKeyCount(curve);
  const auto frameOfKey = [&](int32_t index) {
    BaseTime time;
    t_ORYOS_CA->GetKeyTime(t_ORYOS_CA->GetKey(curve, index), &time);
    return SceneFrame(time, frameRate);
  };
  const int32_t firstFrame = frameOfKey(0);
  const int32_t lastFrame = frameOfKey(count - 1);
  Fit fit{cti, stream, track, document, frameRate, ImportTimeScale(frameRate),
          KeyEaseTarget{layerIndex, state.propertyName, state.isSeparated, state.dimension, 1}};

  // Before the first key only until one frame fits; the frames between the keys all.
  int32_t frame = SceneFrame(ContainerTime(document, DocParam_MinTime), frameRate);
  for (; frame < firstFrame && !err; ++frame)
    if (fit.difference > kEaseTolerance) err = TestFrame(fit, frame);
  if (count == 2) return err;
  for (; frame < lastFrame && !err; ++frame) err = TestFrame(fit, frame);
  return err;
}
