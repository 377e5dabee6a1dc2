#pragma once
// Baking of After Effects animation into scene tracks. Nothing of keyframe interpolation,
// ease or speed is translated: the exporter asks only at which times something may change,
// reads finished values (after parenting and expressions) at every frame of that span, writes
// one key a frame, and lets SimplifyTrack throw away the keys that say nothing. Holds, easing
// and expressions come out right at the resolution of one frame.
#include "plugin/exporter/ae_to_ory.h"
#include "plugin/exporter/layer_stream.h"
#include "plugin/exporter/time_map.h"

// Adds the times of `stream` to `times`: its keyframes and every frame of the layer between the
// first and the last of them, or, with an expression or without `useKeys`, every frame.
A_Err CollectKeyTimes(AEToOry& exporter, AEGP_LayerH layer, AEGP_StreamRefH stream, bool useKeys, TimeMap* times);
A_Err CollectLayerStreamTimes(AEToOry& exporter, AEGP_LayerH layer, AEGP_LayerStream streamId, bool useKeys,
                              TimeMap* times);

// Whether the stream's value comes from an expression that is on and varies, so that the host
// has no keys to read.
bool HasTimeVaryingExpression(AEGP_StreamRefH stream);

// The number of keyframes; a time-varying expression counts as a key on every frame.
int32_t CountStreamKeys(AEGP_LayerH layer, AEGP_StreamRefH stream);
// 0 for a null layer, no stream or an illegal one.
int32_t CountLayerStreamKeys(AEGP_LayerH layer, AEGP_LayerStream streamId);

// The nine transform tracks of an object; rotation and scale only where wanted.
struct TransformTracks {
  AnimTrack* position[3] = {};
  AnimTrack* rotation[3] = {};
  AnimTrack* scale[3] = {};
};

// One key a frame of the layer's world matrix over its animated span.
bool BakeLayerTransform(AEToOry& exporter, AEGP_LayerH layer, const LayerStream& anchor, const LayerStream& scale,
                        const TransformTracks& tracks, int32_t width, int32_t height, bool isPlaneOrNull,
                        bool hasRotation, bool hasScale);

// How a stream's value becomes the values of up to three tracks.
enum class SampleMode : int32_t {
  targetPosition = 0,  // a.x, -a.y, a.z
  divided = 1,         // a.x / divisor
  fieldOfView = 2,     // 2 atan(comp width / 2 / (a.x / pixel aspect))
  coneAngles = 4,      // a.x and the feathered a.x, in radians
  colour = 6,          // red, green, blue
  falloff = 7,         // a.x, plus b.x of a second stream
};

// One key a frame of the layer's length, from the stream's value after expressions.
A_Err SampleStreamToTracks(AEToOry& exporter, AEGP_LayerH layer, AEGP_LayerStream streamId, AnimTrack* t1,
                           AnimTrack* t2, AnimTrack* t3, SampleMode mode, double divisor,
                           AEGP_LayerStream secondStreamId);
