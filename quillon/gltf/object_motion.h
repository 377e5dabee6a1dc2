// Where an object stands at a time: its transform tracks applied to its position, rotation
// and scale, through its parents, and turned towards the object its target tag names.
#pragma once

#include <set>

#include "quillon/model/document.h"

namespace quillon::gltf {

// Key times of the transform tracks of the object alone (position, rotation and scale
// components that count: float tracks with keys, not switched off, on a scene layer whose
// animation is on).
std::set<BaseTime> TransformKeyTimes(const Document& document, Object& object);
// The times at which the object's place relative to its parent can change: its own key
// times, and for an object that looks at a target also those of its parents, of the target
// and of the target's parents.
std::set<BaseTime> MotionKeyTimes(const Document& document, Object& object);
// Whether any transform track of the object counts (with one key or more).
bool HasTransformTracks(const Document& document, Object& object);

// The object that the object's target tag links to, or null.
Object* TargetOf(const Document& document, const Object& object);

// Sets the object's own position, rotation and scale to their tracks' values at time.
void PoseAt(const Document& document, Object& object, const BaseTime& time);
// Sets every object of the document to its tracks' values at time.
void PoseDocumentAt(const Document& document, const BaseTime& time);

// The object's matrix relative to its parent in the scene's axes, as posed: from its
// parameters, or, for an object with a target, turned so that its z axis points at the
// target with no bank (its x axis level), keeping its place and scale.
Matrix SceneLocalMatrix(const Document& document, const Object& object);

}  // namespace quillon::gltf
