#include "plugin/exporter/track_ops.h"

#include <optional>

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_pruning.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace {

void MarkBakedKey(AnimKey* key) {
  t_ORYOS_At->SetBitFlag(key, kNodeBitKeyTangentsLocked, true);
  t_ORYOS_At->SetBitFlag(key, kNodeBitKeyLinear, true);
}

bool KeysHoldSameData(AnimCurve* curve, int32_t a, int32_t b) {
  return t_ORYOS_Gd->Equals(t_ORYOS_CA->GetKeyData(t_ORYOS_CA->GetKey(curve, a)), t_ORYOS_CA->GetKeyData(t_ORYOS_CA->GetKey(curve, b)));
}

// A track walked frame by frame during rebasing: the key that stands at the current frame is
// found by stepping forward, not by a search of the curve at every frame.
struct TrackCursor {
  AnimTrack* track = nullptr;
  AnimCurve* curve = nullptr;
  int32_t keyCount = 0;  // rebasing rewrites values only, so the count stays
  int32_t next = 0;
  AnimKey* atTime = nullptr;

  // The track's value at `time`: the key's own where one stands there, else the curve's.
  double MoveTo(BaseDocument* document, const BaseTime& time) {
    atTime = nullptr;
    for (; next < keyCount; ++next) {
      AnimKey* key = t_ORYOS_CA->GetKey(curve, next);
      BaseTime keyTime;
      t_ORYOS_CA->GetKeyTime(key, &keyTime);
      if (time < keyTime) break;
      if (keyTime == time) {
        atTime = key;
        return t_ORYOS_CA->GetKeyValue(key);
      }
    }
    return t_ORYOS_CA->GetCurveValue(track, document, &time, 0);
  }
};

// The nine transform tracks by parameter; a missing one has no track.
struct ObjectTracks {
  TrackCursor position[3];
  TrackCursor rotation[3];
  TrackCursor scale[3];
  bool any = false;
};

TrackCursor CursorOf(BaseObject* object, int32_t parameter, int32_t component) {
  const ComponentParamId id(parameter, component);
  TrackCursor cursor;
  cursor.track = t_ORYOS_Bl->FindTrack(object, &id.id);
  cursor.curve = CurveOf(cursor.track);
  if (!cursor.curve) cursor.track = nullptr;
  if (cursor.curve) cursor.keyCount = t_ORYOS_CA->GetKeyCount(cursor.curve);
  return cursor;
}

ObjectTracks FindTransformTracks(BaseObject* object) {
  ObjectTracks tracks;
  const int32_t components[3] = {VectorComponent_X, VectorComponent_Y, VectorComponent_Z};
  for (int i = 0; i < 3; ++i) {
    tracks.position[i] = CursorOf(object, ObjectParam_Position, components[i]);
    tracks.rotation[i] = CursorOf(object, ObjectParam_Rotation, components[i]);
    tracks.scale[i] = CursorOf(object, ObjectParam_Scale, components[i]);
    tracks.any = tracks.any || tracks.position[i].track || tracks.rotation[i].track || tracks.scale[i].track;
  }
  return tracks;
}

double* Component(Vector& v, int i) { return i == 0 ? &v.x : i == 1 ? &v.y : &v.z; }

Vector AxisLengths(const Matrix& m) { return Vector{Length(m.axisX), Length(m.axisY), Length(m.axisZ)}; }

// The place that a transform's position, rotation and scale describe.
Matrix ComposeMatrix(const Vector& position, const Vector& rotation, const Vector& scale, int32_t order) {
  Matrix m = RotationToMatrix(rotation, order);
  m.off = position;
  m.axisX = Normalized(m.axisX) * scale.x;
  m.axisY = Normalized(m.axisY) * scale.y;
  m.axisZ = Normalized(m.axisZ) * scale.z;
  return m;
}

// Whether every component has a track, so that the value before reading them does not matter.
bool AllComponentsTracked(const TrackCursor* tracks) { return tracks[0].track && tracks[1].track && tracks[2].track; }

// Replaces the components whose track exists with the track's value at `time`.
void ReadTracks(TrackCursor* tracks, BaseDocument* document, const BaseTime& time, Vector* value) {
  for (int i = 0; i < 3; ++i) {
    if (tracks[i].track) *Component(*value, i) = tracks[i].MoveTo(document, time);
  }
}

// Rewrites the key at the cursors' frame of each track; frames without a key stay without one.
void RewriteKeys(const TrackCursor* tracks, Vector value) {
  for (int i = 0; i < 3; ++i) {
    if (tracks[i].atTime) t_ORYOS_CA->SetKeyValue(tracks[i].atTime, tracks[i].curve, *Component(value, i));
  }
}

}  // namespace

ComponentParamId::ComponentParamId(int32_t parameter, int32_t component)
    : levels{{parameter, DataKind_Vector, 0}, {component, DataKind_Float, 0}}, id{levels, 2, 0} {}

AnimCurve* CurveOf(AnimTrack* track) { return track ? t_ORYOS_CA->GetCurve(track, 1, true) : nullptr; }

AnimTrack* GetOrCreateTrack(SceneNode* object, const ParamId& id, const char* name) {
  if (AnimTrack* found = t_ORYOS_Bl->FindTrack(object, &id)) return found;
  AnimTrack* track = t_ORYOS_CA->AllocTrack(object, &id);
  if (track && t_ORYOS_CA->GetCurve(track, 1, true)) {
    SetNodeName(track, name);
    t_ORYOS_Bl->InsertTrack(object, track);
    return track;
  }
  AddError(4, "Export/Merge failed. Out of memory in animation allocation.");
  throw A_Err{4};
}

void AddKeyValue(AnimCurve* curve, const BaseTime& time, double value) {
  if (!curve) return;
  if (AnimKey* key = t_ORYOS_CA->AddKey(curve, &time, nullptr, 0, 0)) {
    MarkBakedKey(key);
    t_ORYOS_CA->SetKeyValue(key, curve, value);
  }
}

void SetColorKeys(const double values[4], const BaseTime& time, AnimCurve* r, AnimCurve* g, AnimCurve* b,
                  AnimCurve* a) {
  AnimCurve* curves[4] = {r, g, b, a};
  const double ordered[4] = {values[1], values[2], values[3], values[0]};
  for (int i = 0; i < 4; ++i) {
    if (!curves[i]) continue;
    AnimKey* key = t_ORYOS_CA->FindKey(curves[i], &time, nullptr, 0);
    if (!key) key = t_ORYOS_CA->AddKey(curves[i], &time, nullptr, 0, 0);
    if (!key) continue;
    MarkBakedKey(key);
    t_ORYOS_CA->SetKeyValue(key, curves[i], ordered[i]);
  }
}

void SimplifyTrack(AnimTrack* track) {
  if (!track) return;
  AnimCurve* curve = t_ORYOS_CA->GetCurve(track, 1, true);
  if (!curve) return;
  const int32_t count = t_ORYOS_CA->GetKeyCount(curve);
  std::vector<int32_t> redundant;
  if (t_ORYOS_CA->GetTrackKind(track) == kTrackKindFloat) {
    std::vector<double> values(count);
    for (int32_t i = 0; i < count; ++i) values[i] = t_ORYOS_CA->GetKeyValue(t_ORYOS_CA->GetKey(curve, i));
    redundant = RedundantKeys(count, [&](int32_t a, int32_t b) { return FloatKeysMatch(values[a], values[b]); });
  } else {
    redundant = RedundantKeys(count, [&](int32_t a, int32_t b) { return KeysHoldSameData(curve, a, b); });
  }
  // From the back, so that the indices of the keys still to go stay valid.
  for (auto it = redundant.rbegin(); it != redundant.rend(); ++it) t_ORYOS_CA->DeleteKey(curve, *it, 0, 0);

  const int32_t left = t_ORYOS_CA->GetKeyCount(curve);
  const bool twoEqual = left == 2 && t_ORYOS_CA->GetKeyValue(t_ORYOS_CA->GetKey(curve, 0)) == t_ORYOS_CA->GetKeyValue(t_ORYOS_CA->GetKey(curve, 1));
  if (TrackIsStatic(left, twoEqual)) {
    t_ORYOS_At->Remove(track);
    t_ORYOS_Bl->FreeNode(track);
  }
}

bool RebaseTracksToParent(BaseObject* object, BaseObject* parent, int32_t firstFrame, int32_t frameCount,
                          int32_t fps, BaseDocument* document) {
  if (!object || !parent) return false;
  // The object still holds world values; placing it at its world matrix under the new parent
  // gives the local matrix that keeps it where After Effects has it.
  const Matrix saved = *t_ORYOS_Bo->GetLocalMatrix(object);
  t_ORYOS_Bo->SetGlobalMatrix(object, &saved);
  ObjectTracks tracks = FindTransformTracks(object);
  if (!tracks.any) {
    t_ORYOS_Bo->SetGlobalMatrix(object, &saved);
    return true;
  }
  Matrix current = saved;
  // Rewritten rotations stay nearest to the one before, as baking left them, so that a turn
  // past a full circle does not jump back at each rewritten key.
  std::optional<Vector> previousLocalRotation;
  // Nothing in the loop changes the order; a component that all three tracks replace need not
  // be taken from the matrix before.
  const int32_t order = t_ORYOS_Bo->GetRotationOrder(object);
  const bool rotationTracked = AllComponentsTracked(tracks.rotation);
  const bool scaleTracked = AllComponentsTracked(tracks.scale);
  for (int32_t i = 0; i <= frameCount; ++i) {
    Vector rotation = rotationTracked ? Vector{} : MatrixToRotation(current, order, false);
    Vector position = current.off;
    Vector scale = scaleTracked ? Vector{} : AxisLengths(current);
    const BaseTime time(i + firstFrame, fps);
    ReadTracks(tracks.position, document, time, &position);
    ReadTracks(tracks.rotation, document, time, &rotation);
    ReadTracks(tracks.scale, document, time, &scale);
    current = ComposeMatrix(position, rotation, scale, order);

    t_ORYOS_Bo->SetGlobalMatrix(object, &current);
    const Matrix local = *t_ORYOS_Bo->GetLocalMatrix(object);
    RewriteKeys(tracks.position, local.off);
    Vector localRotation = MatrixToRotation(local, order, false);
    if (previousLocalRotation) localRotation = BestAngle(*previousLocalRotation, localRotation, order);
    previousLocalRotation = localRotation;
    RewriteKeys(tracks.rotation, localRotation);
    RewriteKeys(tracks.scale, AxisLengths(local));
  }
  t_ORYOS_Bo->SetGlobalMatrix(object, &saved);
  return true;
}
