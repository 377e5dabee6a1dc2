#pragma once
// Tracks of baked animation: making them, adding keys, pruning what says nothing, and
// rewriting world-space keys as keys relative to a parent.
#include <string>

#include "plugin/engine/engine_ops.h"

// The float track of `id` on `object`, made and named if it does not exist yet. Out of memory
// is fatal for the export.
AnimTrack* GetOrCreateTrack(SceneNode* object, const ParamId& id, const char* name);

// The track's curve, or null.
AnimCurve* CurveOf(AnimTrack* track);

// A key at `time` with both key bits set; a key the engine refuses is left out quietly.
void AddKeyValue(AnimCurve* curve, const BaseTime& time, double value);

// Keys at `time` on each of the four curves that exist; `values` holds alpha first, then red,
// green, blue. A key already at that time is rewritten.
void SetColorKeys(const double values[4], const BaseTime& time, AnimCurve* r, AnimCurve* g, AnimCurve* b,
                  AnimCurve* a);

// Removes the keys that lie on a run of equal values, then the whole track when what is left
// is no animation; the object then shows its static value.
void SimplifyTrack(AnimTrack* track);

// Keys and the object's matrix were made in world terms; under `parent` they must be local.
// The parent's static matrix is used, the document is not evaluated at each frame.
bool RebaseTracksToParent(BaseObject* object, BaseObject* parent, int32_t firstFrame, int32_t frameCount,
                          int32_t fps, BaseDocument* document);

// The path of a component track of a vector parameter: {parameter, vector}{component, float}.
struct ComponentParamId {
  ComponentParamId(int32_t parameter, int32_t component);
  ComponentParamId(const ComponentParamId&) = delete;
  ComponentParamId& operator=(const ComponentParamId&) = delete;
  ParamLevel levels[2];
  ParamId id;
};
