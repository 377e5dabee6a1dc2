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
  int32_t rotationOrder = 0;
  Vector rawPosition, rawRotation, rawScale;  // the object's own values
  Vector position, rotation, scale;           // flattened, in host terms after ToHostTransform
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
// A point 1000 units ahead of an object, in host terms, from its scene rotation and position.
Vector DerivePointOfInterest(const Vector& rotation, const Vector& position);
