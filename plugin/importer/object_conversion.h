#pragma once
// One scene object becomes one layer: its kind, name, time range and transform, with the
// scene's parent chain flattened into the transform (no layer gets a parent).
#include <cstdint>
#include <vector>

#include "plugin/engine/engine_tables.h"
#include "plugin/importer/layer_streams.h"
#include "sdk/aegp.h"

// An ancestor's transform, static and animated, nearest ancestor first.
struct AncestorTransform {
  BaseObject* object = nullptr;
  AnimTrack* positionTracks[3] = {};
  AnimTrack* rotationTracks[3] = {};
  AnimTrack* scaleTracks[3] = {};
  int32_t rotationOrder = 0;
  Vector position, rotation, scale;
  bool animated = false;
};

// What one conversion knows, shared with the key pass.
struct ObjectConversion {
  BaseObject* effective = nullptr;
  SceneLayer* sceneLayer = nullptr;
  AEGP_LayerH layer = nullptr;
  bool isPlainObject = false;
  bool isCameraOrLight = false;
  bool hasPointOfInterest = false;
  bool derivesPointOfInterest = false;
  BaseObject* targetObject = nullptr;
  std::vector<AncestorTransform> ancestors;
  std::vector<AncestorTransform> targetAncestors;  // those of targetObject
  int32_t rotationOrder = 0;
  Vector rawPosition, rawRotation, rawScale;  // the object's own values
  Vector position, rotation, scale;           // flattened, in host terms after ToHostTransform
  Vector scenePosition, sceneRotation;        // flattened, in scene terms, at frame 0
  Vector pointOfInterest;
  double frameRate = 30.0;
  int32_t frames = 0;
  int32_t startFrame = 0;
  double width = 0.0;
  double pixelAspect = 1.0;
  // Streams left open by the static values, for the keys.
  OpenStream positionStream, scaleStream, anchorStream, rotateXStream, rotateYStream, rotationStream;
  bool streamsComplete = false;
};

// Makes the layer of `object` with its static transform and keys; null when no layer was
// made or a host call failed (a layer made stays). `conversion` keeps the outputs.
AEGP_LayerH ConvertBaseObject(BaseObject* object, ObjectConversion* conversion);

// The object that a cache's object stands for.
BaseObject* GetEffectiveObject(BaseObject* object);
void CollectAncestors(BaseObject* object, std::vector<AncestorTransform>* ancestors);
void FlattenTransform(Vector* position, Vector* rotation, Vector* scale, const BaseTime& time, BaseDocument* document,
                      const std::vector<AncestorTransform>& ancestors, int32_t rotationOrder);
// Scene terms to the host's: y flips, rotations become x, y, z degrees.
void ToHostTransform(Vector* position, Vector* rotation, bool keepContinuity, Vector* lastRotation,
                     int32_t rotationOrder);
// The point of interest, in host terms, where the target stands at `time` with its own
// `position`. The exporter puts a target under the parent of its camera or light, next to it,
// so that it follows that parent in the scene; its ancestors are flattened into the point as
// they are into the layer's own transform, or the layer would aim at a point that no longer
// turns with the parent.
Vector TargetPoint(const ObjectConversion& conversion, const Vector& position, const BaseTime& time);
// The Z rotation, in degrees, of a camera or light that the host aims at its point of
// interest. The host turns such a layer by heading and pitch towards the point, keeping its
// horizon level, and the Z rotation then rolls it about its line of sight: that roll is the
// bank of the scene rotation (order 6), whatever order the object keeps. The z of the X, Y, Z
// angles that ToHostTransform gives is not it, since it holds part of the aim as well.
// `lastRoll` (radians) carries the roll from frame to frame, which keepContinuity keeps within
// half a turn of it; without it the roll lies between -180 and 180 degrees.
double HostRoll(const Vector& rotation, int32_t rotationOrder, bool keepContinuity, double* lastRoll);
// The Z rotation, in degrees, of a camera or light that follows a target: the scene aims it
// at the target (`point`, host terms) within its parents' frame by heading and pitch, so that
// its horizon stays level in that frame, and it keeps its own bank. Under a parent that turns
// the line of sight, that roll is not the bank of its stored rotation, which may look
// elsewhere. `position` is the flattened place in scene terms, `ownRotation` its own rotation.
double AimedRoll(const ObjectConversion& conversion, const Vector& position, const Vector& point,
                 const Vector& ownRotation, const BaseTime& time, bool keepContinuity, double* lastRoll);
// The ancestors' matrix at `time`, nearest applied first.
Matrix AncestorsMatrix(const BaseTime& time, BaseDocument* document, const std::vector<AncestorTransform>& ancestors);
// A point 1000 units ahead of an object, in host terms, from its scene rotation (heading,
// pitch and bank) and position.
Vector DerivePointOfInterest(const Vector& rotation, const Vector& position);
// The same from an object's flattened position and rotation in any order: the point that a
// light without a target looks at, also when its parents turn it.
Vector AheadOf(const Vector& position, const Vector& rotation, int32_t rotationOrder);
