// What the stream, keyframe and marker suites share: resolving a stream
// handle, its time, and the conversion between the model's values and the
// suites' stream values.
#pragma once

#include <vector>

#include "aehost/core/model_handles.h"

namespace aehost {

constexpr int kMarkerStreamId = AEGP_LayerStream_MARKER;

struct ResolvedStream {
    StreamRef* ref = nullptr;
    Item* comp = nullptr;
    Layer* layer = nullptr;  // null for a composition's markers
    bool IsMarkers() const {
        return ref->target == StreamTarget::LayerMarkers || ref->target == StreamTarget::CompMarkers;
    }
    bool IsSourceText() const { return ref->target == StreamTarget::SourceText; }
    bool IsMaskOutline() const { return ref->target == StreamTarget::MaskOutline; }
    LayerStream Id() const { return static_cast<LayerStream>(ref->streamId); }
};

// A stream of numbers or markers; the source text, whose values are text
// documents, and a mask outline, whose values are outlines, are refused.
A_Err ResolveStream(const char* call, AEGP_StreamRefH streamH, ResolvedStream* found);
// Any stream, the source text and mask outlines included.
A_Err ResolveAnyStream(const char* call, AEGP_StreamRefH streamH, ResolvedStream* found);

// The mask a mask outline stream stands for.
const Mask& StreamMask(const ResolvedStream& rs);
// The key times, in layer time, of a stream whose keys are not keyframes of numbers (the
// source text, a mask outline); false for other streams.
bool ModelKeyTimes(const ResolvedStream& rs, std::vector<double>* times);

// The markers a marker stream stands for.
std::vector<Marker>& StreamMarkers(const ResolvedStream& rs);

// A time given in a time mode, in the stream's own time (layer time for layer
// streams) and in composition time.
double StreamTime(const ResolvedStream& rs, AEGP_LTimeMode mode, double seconds);
double CompTimeOf(const ResolvedStream& rs, AEGP_LTimeMode mode, double seconds);
// A stream time given back in a time mode.
A_Time StreamTimeToATime(const ResolvedStream& rs, AEGP_LTimeMode mode, double streamTime);

// Reads a time argument: refuses a null pointer, scale 0 or an unknown mode.
A_Err ReadStreamTime(const char* call, AEGP_LTimeMode mode, const A_Time* time, double* seconds);

AEGP_StreamType StreamTypeOf(const ResolvedStream& rs);

// The host's name of a layer stream ("Position"), or null for a number that is no stream.
const char* ModelStreamName(int id);
// What a stream is, for the trace: "Position of layer \"Cam\"", "markers of composition \"Main\"".
std::string StreamLabel(const ResolvedStream& rs);

// Refuses a value with a number that is not finite, naming the stream: no project holds it.
A_Err RefuseNonFinite(const char* call, const ResolvedStream& rs, const Value& value);

// The model's value as the suites give it, and back.
AEGP_StreamVal2 ToStreamVal(StreamKind kind, const Value& value);
Value FromStreamVal(StreamKind kind, const AEGP_StreamVal2& val);

// A new marker handle holding a copy of `marker`.
AEGP_MarkerValP NewMarkerHandle(const Marker& marker);
// The marker behind a handle; refuses a wrong or disposed one.
A_Err ResolveMarker(const char* call, AEGP_MarkerValP markerP, Marker** marker);

// Inserts a marker in time order (replacing one at the same time); its index.
int PutMarker(std::vector<Marker>& markers, const Marker& marker);

}  // namespace aehost
