#pragma once
// The transform of every object that stands for a layer. The exporter does not translate the
// layer's transform properties one by one: it asks After Effects for the finished
// layer-to-world matrix, with parenting, auto-orient and expressions already in it, and
// decomposes that. The properties are read only to learn whether they exist and are animated.
#include "plugin/exporter/ae_to_ory.h"
#include "sdk/aegp.h"

// Sets the object's position, rotation and scale, starts their animation, gives a camera or
// light that looks at its point of interest a target, switches off the objects of hidden
// layers and sends those of locked layers to "Lock Layer". `width` and `height` are the size
// of the layer's picture, 0 for objects without one. Gives the last failed host call's error.
A_Err ApplyObjectBasics(AEToOry& exporter, BaseObject* object, AEGP_LayerH layer, const int32_t* width,
                        const int32_t* height);

// A null object right behind `object`, and a target tag on `object` that links to it.
BaseObject* CreateTarget(AEToOry& exporter, BaseObject* object, AEGP_LayerH layer);

// The object that `object`'s target tag links to, or null.
BaseObject* TargetOf(BaseObject* object);

// A stream's value after expressions at `time`, when the stream is legal and of the expected
// type; the value's four doubles in the host's order.
bool ReadStreamValue(AEGP_LayerH layer, AEGP_LayerStream streamId, AEGP_StreamType expectedType, const A_Time& time,
                     double value[4]);
// The same at the composition's current time.
bool ReadStreamFloat(AEGP_LayerH layer, AEGP_LayerStream streamId, double* value);
// A three-dimensional value that is no place, such as the orientation: the host reports such
// a stream as ThreeD, not as ThreeD_SPATIAL, and a value of the other type is not read.
bool ReadStreamVector(AEGP_LayerH layer, AEGP_LayerStream streamId, Vector* value);
// A one-dimensional stream cut to a whole number, such as a switch or a choice.
bool ReadStreamInt(AEGP_LayerH layer, AEGP_LayerStream streamId, int32_t* value);
// Red, green and blue of a colour stream; its alpha is dropped.
bool ReadStreamColor(AEGP_LayerH layer, AEGP_LayerStream streamId, Vector* value);
