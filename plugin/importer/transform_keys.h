#pragma once
// Scene animation reaches the host as one key a frame wherever a sampled value moves: the
// scene's curves, parents and rotation orders are evaluated for every frame of the document,
// and no interpolation of a scene key is carried over.
#include "plugin/importer/object_conversion.h"

// A track that counts for the import: it exists, is switched on, has keys, and neither the
// object's scene layer nor the track's own one has its animation switched off.
bool IsTrackActive(AnimTrack* track, SceneLayer* sceneLayer);
AnimTrack* FindAnimatedTrack(BaseObject* object, SceneLayer* sceneLayer, int32_t parameter, int32_t component);

// The keys of position, scale, rotation and point of interest on the streams that the static
// values left open; false when a host call failed.
bool AddTransformKeys(ObjectConversion* conversion);

// The host time of frame `i` of a layer whose in point is `in`: in layer time, at the scale
// of the import, one frame 100 units.
A_Time HostFrameTime(const A_Time& in, uint32_t scale, int32_t i);
