#pragma once
// The material of a plane: a standard material named like its object, attached by a texture
// tag. It has no origin key, so a plane used twice gets two materials of the same name.
#include "plugin/engine/engine_ops.h"

// Null (with the error recorded) when the material or its tag can't be made.
Material* MakePlaneMaterial(BaseObject* object);
