#pragma once
// What only cameras and lights carry: a camera's zoom, film size and focus distance and
// which camera stays switched on; a light's kind, colour, brightness, cone and shadows.
// Both animate from scene frame 0, one key a frame where the host value changes.
#include "plugin/engine/engine_tables.h"
#include "sdk/aegp.h"

AEGP_LayerH ConvertCamera(BaseObject* object);
AEGP_LayerH ConvertLight(BaseObject* object);

// The host's zoom in pixels for a composition `width` wide and a horizontal field of view.
double ZoomFromFieldOfView(double width, double fieldOfView);
// The field of view of a lens of focal length `focal` on film `aperture` wide (both mm).
double FieldOfViewFromFocalLength(double aperture, double focal);
// The host's light kind for a scene light kind.
int32_t HostLightType(bool kv, int32_t sceneType);
