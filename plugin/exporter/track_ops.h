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

// Adds `by` to every key of the track of `id` on `object`, if that track exists.
void ShiftTrackKeys(SceneNode* object, const ParamId& id, double by);

// The object was made with world values and has just been put under its parent: its values
// become local to the parent's static matrix, which holds until RebaseToParent. Gives the
// world matrix it held.
Matrix PlaceUnderParent(BaseObject* object);

// Makes the object's static place and keys, baked in world terms, local to where its parent
// stands at each frame, with the parent's own keys and those of its ancestors: the static place
// against the parent at `staticFrame`, the composition's frame at which `world` was read, and
// each key against the parent at its frame, so that a child under an animated parent does not
// take the parent's move twice. The parent's place and keys must be local already, so parents
// are rebased before their children. A frame without a key stays without one. Position and
// scale tracks are pruned (SimplifyTrack) once they are relative.
void RebaseToParent(BaseObject* object, const Matrix& world, int32_t staticFrame, int32_t firstFrame,
                    int32_t frameCount, int32_t fps, BaseDocument* document);

// The three curves of a vector's tracks; a missing track gives no curve and takes no key.
class TrackCurves {
 public:
  explicit TrackCurves(AnimTrack* const* tracks);
  void AddKeys(const BaseTime& time, const Vector& value);

 private:
  AnimCurve* curves_[3] = {};
};

// The path of a component track of a vector parameter: {parameter, vector}{component, float}.
struct ComponentParamId {
  ComponentParamId(int32_t parameter, int32_t component);
  ComponentParamId(const ComponentParamId&) = delete;
  ComponentParamId& operator=(const ComponentParamId&) = delete;
  ParamLevel levels[2];
  ParamId id;
};
