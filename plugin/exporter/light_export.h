#pragma once
// Light layers become scene lights. Place, rotation and point of interest come from the
// transform like those of every object; this maps the light's kind and its streams. Each
// setting is written once with its value at the composition's current time, and a stream with
// keys or an expression also gets a track sampled at every frame.
#include "plugin/exporter/ae_to_ory.h"
#include "sdk/aegp.h"

// The last sampling call's error, 0 when there was none; a failed sampling does not stop the
// settings after it.
A_Err ExportLight(AEToOry& exporter, AEGP_LayerH layer);
