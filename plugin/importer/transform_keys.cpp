#include "plugin/importer/transform_keys.h"

#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "plugin/importer/import_file.h"
#include "plugin/importer/import_session.h"
#include "plugin/importer/scene_read.h"

namespace {

enum SampleKind { kPositionKind = 0, kRotationKind = 1, kScaleKind = 2 };

constexpr int32_t kComponents[3] = {VectorComponent_X, VectorComponent_Y, VectorComponent_Z};

struct VectorTracks {
  AnimTrack* tracks[3] = {};
  bool Any() const { return tracks[0] || tracks[1] || tracks[2]; }
};

// The state of one sampled vector across frames.
struct Sampled {
  Vector value, next, previous;
};

VectorTracks FindAnimatedTracks(BaseObject* object, SceneLayer* sceneLayer, int32_t parameter) {
  VectorTracks found;
  for (int i = 0; i < 3; ++i) found.tracks[i] = FindAnimatedTrack(object, sceneLayer, parameter, kComponents[i]);
  return found;
}

void ReadAt(const VectorTracks& tracks, const BaseTime& time, Vector* value) {
  double* components[3] = {&value->x, &value->y, &value->z};
  for (int i = 0; i < 3; ++i)
    if (tracks.tracks[i])
      *components[i] = t_ORYOS_CA->GetCurveValue(tracks.tracks[i], g_importSession.document, &time, 0);
}

bool KeyAt(AnimTrack* track, const BaseTime& time) {
  return track && t_ORYOS_CA->FindKey(t_ORYOS_CA->GetCurve(track, 1, true), &time, nullptr, 0) != nullptr;
}

bool HasKeyAt(const VectorTracks& tracks, const std::vector<AncestorTransform>& ancestors, const BaseTime& time,
              SampleKind kind) {
  for (AnimTrack* track : tracks.tracks)
    if (KeyAt(track, time)) return true;
  for (const AncestorTransform& record : ancestors) {
    if (!record.animated) continue;
    AnimTrack* const* own = kind == kPositionKind   ? record.positionTracks
                            : kind == kRotationKind ? record.rotationTracks
                                                    : record.scaleTracks;
    for (int i = 0; i < 3; ++i)
      if (KeyAt(own[i], time)) return true;
  }
  return false;
}

// Fills `s.value` at `time`; true when the value moves around this frame or a key stands on it.
bool SampleVector(SampleKind kind, bool hasNext, const VectorTracks& tracks, Sampled* s, const BaseTime& time,
                  const BaseTime& nextTime, const std::vector<AncestorTransform>& ancestors) {
  ReadAt(tracks, time, &s->value);
  s->next = s->value;
  bool moves;
  if (hasNext) {
    ReadAt(tracks, nextTime, &s->next);
    moves = !(s->previous == s->next) || HasKeyAt(tracks, ancestors, time, kind);
  } else {
    moves = HasKeyAt(tracks, ancestors, time, kind);
  }
  s->previous = s->value;
  return moves;
}

bool AnyAnimatedAncestor(const std::vector<AncestorTransform>& ancestors) {
  for (const AncestorTransform& record : ancestors)
    if (record.animated) return true;
  return false;
}

}  // namespace

bool IsTrackActive(AnimTrack* track, SceneLayer* sceneLayer) {
  if (!track) return false;
  if (t_ORYOS_Bl->GetInfoBits(track) & kInfoBitTrackOff) return false;
  if (t_ORYOS_CA->GetKeyCount(t_ORYOS_CA->GetCurve(track, 1, true)) == 0) return false;
  if (sceneLayer && ContainerInt32(sceneLayer, LayerParam_Animation, 1) == 0) return false;
  SceneLayer* trackLayer = t_ORYOS_Bl->GetSceneLayer(track, t_ORYOS_At->GetDocument(track));
  return !trackLayer || ContainerInt32(trackLayer, LayerParam_Animation, 1) != 0;
}

AnimTrack* FindAnimatedTrack(BaseObject* object, SceneLayer* sceneLayer, int32_t parameter, int32_t component) {
  AnimTrack* track = FindComponentTrack(object, parameter, component);
  return IsTrackActive(track, sceneLayer) ? track : nullptr;
}

A_Time HostFrameTime(const A_Time& in, uint32_t scale, int32_t i) {
  const float start = static_cast<float>(in.value) / static_cast<float>(in.scale) * static_cast<float>(scale);
  return A_Time{static_cast<A_long>(std::trunc(start)) + i * 100, scale};
}

bool AddTransformKeys(ObjectConversion* c) {
  BaseObject* object = c->effective;
  const bool poiOnly = c->isCameraOrLight && c->hasPointOfInterest;
  const VectorTracks position = FindAnimatedTracks(object, c->sceneLayer, ObjectParam_Position);
  VectorTracks rotation;
  if (!(poiOnly && c->targetObject)) rotation = FindAnimatedTracks(object, c->sceneLayer, ObjectParam_Rotation);
  rotation.tracks[2] = FindAnimatedTrack(object, c->sceneLayer, ObjectParam_Rotation, VectorComponent_Z);
  VectorTracks target;
  if (c->targetObject) target = FindAnimatedTracks(c->targetObject, c->sceneLayer, ObjectParam_Position);
  VectorTracks scale;
  if (c->isPlainObject) scale = FindAnimatedTracks(object, c->sceneLayer, ObjectParam_Scale);

  const bool animatesPoi =
      target.Any() || (c->derivesPointOfInterest && (position.tracks[0] || rotation.tracks[1] || rotation.tracks[2]));
  const bool animatedAncestor = AnyAnimatedAncestor(c->ancestors);
  if (!position.Any() && !rotation.Any() && !animatesPoi && !animatedAncestor && !(c->isPlainObject && scale.Any()))
    return true;

  bool ok = c->positionStream.StartKeys();
  if (ok && c->isPlainObject) ok = c->scaleStream.StartKeys();
  if (ok && !poiOnly) ok = c->rotateXStream.StartKeys() && c->rotateYStream.StartKeys();
  if (ok && (!poiOnly || rotation.tracks[2])) ok = c->rotationStream.StartKeys();
  if (ok && animatesPoi) ok = c->anchorStream.StartKeys();
  if (!ok) return false;

  A_Time in{};
  const auto* layers = CurrentCTI()->Suite<AEGP_LayerSuite13>(kAEGPLayerSuite, kAEGPLayerSuiteVersion13);
  if (layers->AEGP_GetLayerInPoint(c->layer, AEGP_LTimeMode_CompTime, &in)) return false;
  const uint32_t hostScale = ImportTimeScale(c->frameRate);
  BaseDocument* document = g_importSession.document;

  Sampled positionSample{c->rawPosition, c->rawPosition, c->rawPosition};
  Sampled rotationSample{c->rawRotation, c->rawRotation, c->rawRotation};
  Sampled scaleSample{c->rawScale, c->rawScale, c->rawScale};
  Vector lastPosition, lastRotation, lastHostRotation, lastPoi;
  Vector targetStatic;
  if (c->targetObject) t_ORYOS_Bo->GetPosition(c->targetObject, &targetStatic);

  for (int32_t i = 0; i < c->frames && ok; ++i) {
    const A_Time hostTime = HostFrameTime(in, hostScale, i);
    const BaseTime t(c->startFrame + i, c->frameRate);
    const BaseTime tNext(c->startFrame + i + 1, c->frameRate);
    const bool hasNext = i < c->frames - 1;
    positionSample.value = c->rawPosition;
    rotationSample.value = c->rawRotation;
    scaleSample.value = c->rawScale;
    const bool positionMoves = SampleVector(kPositionKind, hasNext, position, &positionSample, t, tNext, c->ancestors);
    const Vector rawPosition = positionSample.value;
    bool scaleMoves = false;
    if (c->isPlainObject) scaleMoves = SampleVector(kScaleKind, hasNext, scale, &scaleSample, t, tNext, c->ancestors);
    const bool rotationMoves = SampleVector(kRotationKind, hasNext, rotation, &rotationSample, t, tNext, c->ancestors);
    const Vector rawRotation = rotationSample.value;
    Vector p = positionSample.value;
    Vector r = rotationSample.value;
    Vector s = scaleSample.value;
    if (!c->ancestors.empty()) FlattenTransform(&p, &r, &s, t, document, c->ancestors, c->rotationOrder);
    ToHostTransform(&p, &r, i != 0, &lastRotation, c->rotationOrder);
    // A hold must end with a key on its last frame. The own tracks and the keys of ancestors
    // of the same kind do not tell when a parent's turn starts to move the layer's place, so
    // under ancestors the layer's own next frame decides as well.
    bool nextPositionMoves = false, nextRotationMoves = false;
    if (hasNext && !c->ancestors.empty()) {
      Vector pn = positionSample.next, rn = rotationSample.next, sn = scaleSample.next;
      FlattenTransform(&pn, &rn, &sn, tNext, document, c->ancestors, c->rotationOrder);
      Vector continuity = lastRotation;
      ToHostTransform(&pn, &rn, true, &continuity, c->rotationOrder);
      nextPositionMoves = !(pn == p);
      nextRotationMoves = !(rn == r);
    }

    if (i == 0 || !(p == lastPosition) || positionMoves || nextPositionMoves)
      ok = c->positionStream.AddKey(hostTime, ThreeD(p.x, p.y, p.z));
    const bool zeroScale = s == Vector{0.0, 0.0, 0.0};
    if (ok && c->isPlainObject && !(i > 0 && zeroScale && !scaleMoves))
      ok = c->scaleStream.AddKey(hostTime, ThreeD(s.x * 100.0, s.y * 100.0, s.z * 100.0));
    if (ok && !(i > 0 && r == lastHostRotation && !rotationMoves && !nextRotationMoves)) {
      if (!poiOnly) ok = c->rotateXStream.AddKey(hostTime, OneD(r.x)) && c->rotateYStream.AddKey(hostTime, OneD(r.y));
      if (ok) ok = c->rotationStream.AddKey(hostTime, OneD(r.z));
    }
    if (ok && animatesPoi) {
      Vector poi;
      if (c->targetObject) {
        poi = targetStatic;
        ReadAt(target, t, &poi);
        poi.y = -poi.y;
      } else {
        poi = DerivePointOfInterest(rawRotation, rawPosition);
      }
      if (i == 0 || !(poi == lastPoi)) ok = c->anchorStream.AddKey(hostTime, ThreeD(poi.x, poi.y, poi.z));
      lastPoi = poi;
    }
    lastPosition = p;
    lastHostRotation = r;
  }
  if (!ok) return false;
  return c->positionStream.EndKeys() && c->scaleStream.EndKeys() && c->rotateXStream.EndKeys() &&
         c->rotateYStream.EndKeys() && c->rotationStream.EndKeys() && c->anchorStream.EndKeys();
}
