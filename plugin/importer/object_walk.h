#pragma once
// The walk over the loaded document: every object, its caches and its children, in list
// order; cameras, lights and objects for the compositor become layers, anything else is
// only walked through.
#include "plugin/engine/engine_tables.h"

// False when the engine did not evaluate the document (it passes a limit of the caches).
bool WalkDocument(BaseDocument* document);
void WalkObject(BaseObject* object);
// False when the object was not handled and its generator cache is to be entered.
bool ConvertObject(BaseObject* object);
