#pragma once
// The other way of bringing one float track of a scene to one host stream: instead of a key a
// frame, one host keyframe for each scene key, then the speed at the keys repaired by script
// until the host's curve runs through the scene's, frame by frame, within a tenth of a unit.
// The composition, document and frame rate are those of the running import.
#include "plugin/engine/engine_ops.h"
#include "plugin/host/cti.h"

// The largest miss of a frame that needs no repair: 0.1 as a single-precision number.
constexpr double kEaseTolerance = static_cast<double>(0.1f);

// How often one frame is repaired before the fit gives up on it. A repair sets the speed to
// the miss it measured, so a host curve that cannot come near the scene's (a stream the host
// refuses to ease, a curve no speed at the first key reaches) would be repaired for ever;
// a fit that converges comes within the tolerance after a handful of runs.
constexpr int kEaseRepairsPerFrame = 16;

// Adds the keys of `track` to `stream` of `layer` and repairs their ease. Nothing to do (0)
// without a track, a stream or a curve; otherwise the first error of the host.
A_Err FitEasedCurve(CTI* cti, AEGP_LayerH layer, AEGP_StreamRefH stream, AnimTrack* track);
