#pragma once
// Solid layers: a plane of the solid's size with a material of its colour, or, for a layer
// that After Effects calls a null, a null object that only carries the transform.
#include "plugin/exporter/ae_to_ory.h"

// False ends the walk; `err` carries a host error that ends it after this layer.
bool CreateSolidPlane(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, A_Err* err);
