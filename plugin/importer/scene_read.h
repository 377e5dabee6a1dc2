#pragma once
// Reading single values of scene nodes for the import: entries of a node's parameter
// container and whole parameters, each with the value to take when it is absent.
#include <cstdint>

#include "plugin/engine/engine_tables.h"

double ContainerFloat(SceneNode* node, int32_t id, double fallback);
int32_t ContainerInt32(SceneNode* node, int32_t id, int32_t fallback);
bool ContainerBool(SceneNode* node, int32_t id, bool fallback);
BaseTime ContainerTime(SceneNode* node, int32_t id);
bool ContainerHas(SceneNode* node, int32_t id);
// A vector parameter; `fallback` when the node has none.
Vector ParamVector(SceneNode* node, int32_t id, const Vector& fallback);
// A float parameter; of a vector the first component.
double ParamFloatOrFirst(SceneNode* node, int32_t id, double fallback);
// The frame a scene time falls on at a rate: trunc(floor(rate × numerator) / floor(denominator)).
int32_t SceneFrame(const BaseTime& time, double rate);
// The track of one component of a vector parameter, or of a whole float parameter
// (component 0), as the scene holds it.
AnimTrack* FindComponentTrack(const SceneNode* node, int32_t parameter, int32_t component);
