// The stream suite: a layer's animatable properties and its markers, their
// values at a time (keyframes interpolated and expressions run by the model),
// and the values the plug-in sets.
#include <cmath>
#include <cstring>
#include <iostream>

#include "aehost/core/memory_suite.h"
#include "aehost/core/outline_values.h"
#include "aehost/core/stream_ref.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"
#include "aehost/model/edit.h"
#include "aehost/model/evaluate.h"

namespace aehost {

namespace {

struct StreamName {
    LayerStream id;
    const char* name;
};

// The English names of the streams the model knows, as the host's timeline
// shows them.
const StreamName kStreamNames[] = {
    {LayerStream::AnchorPoint, "Anchor Point"},     {LayerStream::Position, "Position"},
    {LayerStream::Scale, "Scale"},                  {LayerStream::RotationZ, "Z Rotation"},
    {LayerStream::Opacity, "Opacity"},              {LayerStream::RotationX, "X Rotation"},
    {LayerStream::RotationY, "Y Rotation"},         {LayerStream::Orientation, "Orientation"},
    {LayerStream::Zoom, "Zoom"},                    {LayerStream::DepthOfField, "Depth of Field"},
    {LayerStream::FocusDistance, "Focus Distance"}, {LayerStream::Aperture, "Aperture"},
    {LayerStream::BlurLevel, "Blur Level"},         {LayerStream::Intensity, "Intensity"},
    {LayerStream::Color, "Color"},                  {LayerStream::ConeAngle, "Cone Angle"},
    {LayerStream::ConeFeather, "Cone Feather"},     {LayerStream::ShadowDarkness, "Shadow Darkness"},
    {LayerStream::ShadowDiffusion, "Shadow Diffusion"}, {LayerStream::CastsShadows, "Casts Shadows"},
    {LayerStream::FalloffKind, "Falloff"},          {LayerStream::FalloffStart, "Radius"},
    {LayerStream::FalloffDistance, "Falloff Distance"},
    {LayerStream::XPosition, "X Position"},         {LayerStream::YPosition, "Y Position"},
    {LayerStream::ZPosition, "Z Position"},
};


bool Legal(const Layer& layer, AEGP_LayerStream which) {
    if (which == kMarkerStreamId) return true;
    if (which == AEGP_LayerStream_SOURCE_TEXT) return layer.objectType == LayerObjectType::Text;
    // The followers of a separated position have no layer stream number of the host's.
    return ModelStreamName(which) && !IsPositionFollower(static_cast<LayerStream>(which)) &&
           IsStreamLegal(layer, static_cast<LayerStream>(which));
}

A_Err IsStreamLegalCall(AEGP_LayerH layerH, AEGP_LayerStream which_stream, A_Boolean* is_legalP) {
    return GuardCall("AEGP_IsStreamLegal", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_IsStreamLegal", is_legalP);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_IsStreamLegal", layerH, &at)) return err;
        *is_legalP = Legal(*at.layer, which_stream);
        return A_Err_NONE;
    });
}

A_Err CanVaryOverTime(AEGP_StreamRefH streamH, A_Boolean* can_varyPB) {
    return GuardCall("AEGP_CanVaryOverTime", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_CanVaryOverTime", can_varyPB);
        ResolvedStream rs;
        if (A_Err err = ResolveAnyStream("AEGP_CanVaryOverTime", streamH, &rs)) return err;
        *can_varyPB = !rs.IsMarkers();
        return A_Err_NONE;
    });
}

A_Err GetNewLayerStream(AEGP_PluginID, AEGP_LayerH layerH, AEGP_LayerStream which_stream, AEGP_StreamRefH* streamPH) {
    return GuardCall("AEGP_GetNewLayerStream", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetNewLayerStream", streamPH);
        *streamPH = nullptr;
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetNewLayerStream", layerH, &at)) return err;
        if (!Legal(*at.layer, which_stream))
            return Refuse("AEGP_GetNewLayerStream", "stream " + std::to_string(which_stream) + " is not legal on this layer");
        StreamRef ref;
        ref.target = which_stream == kMarkerStreamId                ? StreamTarget::LayerMarkers
                     : which_stream == AEGP_LayerStream_SOURCE_TEXT ? StreamTarget::SourceText
                                                                    : StreamTarget::Layer;
        ref.compId = at.comp->id;
        ref.layerId = at.layer->id;
        ref.streamId = which_stream;
        *streamPH = MakeHandle<AEGP_StreamRefH>(g_host.streams.Add(ref));
        return A_Err_NONE;
    });
}

A_Err GetNewMaskStream(AEGP_PluginID, AEGP_MaskRefH maskH, AEGP_MaskStream which_stream,
                       AEGP_StreamRefH* mask_streamPH) {
    return GuardCall("AEGP_GetNewMaskStream",
                     [&]() -> A_Err { return NewMaskStream("AEGP_GetNewMaskStream", maskH, which_stream, mask_streamPH); });
}

A_Err DisposeStream(AEGP_StreamRefH streamH) {
    return GuardCall("AEGP_DisposeStream", [&]() -> A_Err {
        if (!g_host.streams.Remove(HandleValue(streamH)))
            return Refuse("AEGP_DisposeStream", "not a stream handle, or one already disposed");
        return A_Err_NONE;
    });
}

A_Err GetStreamName(AEGP_StreamRefH streamH, A_Boolean, A_char* nameZ) {
    return GuardCall("AEGP_GetStreamName", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetStreamName", nameZ);
        ResolvedStream rs;
        if (A_Err err = ResolveAnyStream("AEGP_GetStreamName", streamH, &rs)) return err;
        std::string name = rs.IsMarkers()      ? "Marker"
                           : rs.IsSourceText()  ? "Source Text"
                           : rs.IsMaskOutline() ? "Mask Path"
                                                : ModelStreamName(rs.ref->streamId);
        const bool poi = rs.layer && rs.Id() == LayerStream::AnchorPoint &&
                         (rs.layer->objectType == LayerObjectType::Camera ||
                          rs.layer->objectType == LayerObjectType::Light);
        if (poi) name = "Point of Interest";
        name.resize(std::min<std::size_t>(name.size(), AEGP_MAX_STREAM_NAME_SIZE - 1));
        std::memcpy(nameZ, name.c_str(), name.size() + 1);
        return A_Err_NONE;
    });
}

A_Err IsStreamTimevarying(AEGP_StreamRefH streamH, A_Boolean* is_timevaryingPB) {
    return GuardCall("AEGP_IsStreamTimevarying", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_IsStreamTimevarying", is_timevaryingPB);
        ResolvedStream rs;
        if (A_Err err = ResolveAnyStream("AEGP_IsStreamTimevarying", streamH, &rs)) return err;
        if (rs.IsSourceText()) *is_timevaryingPB = rs.layer->text.keys.size() > 1;
        else if (rs.IsMaskOutline()) *is_timevaryingPB = IsPathTimeVarying(StreamMask(rs).shape);
        else *is_timevaryingPB =
            rs.IsMarkers() ? false : IsTimeVarying(StreamOrDefault(*g_host.project, *rs.comp, *rs.layer, rs.Id()));
        return A_Err_NONE;
    });
}

A_Err GetStreamType(AEGP_StreamRefH streamH, AEGP_StreamType* stream_typeP) {
    return GuardCall("AEGP_GetStreamType", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetStreamType", stream_typeP);
        ResolvedStream rs;
        if (A_Err err = ResolveAnyStream("AEGP_GetStreamType", streamH, &rs)) return err;
        *stream_typeP = StreamTypeOf(rs);
        return A_Err_NONE;
    });
}

// A marker stream's value at a time is its last marker at or before it, or
// an empty marker.
Marker MarkerAt(const std::vector<Marker>& markers, double streamTime) {
    Marker found;
    found.time = streamTime;
    for (const Marker& m : markers)
        if (m.time <= streamTime) found = m;
    return found;
}

void ReportExpressionError(const ResolvedStream& rs, const std::string& error) {
    std::string line = "expression of stream " + std::to_string(rs.ref->streamId) + " of layer " +
                       std::to_string(rs.layer->id) + " \"" + rs.layer->name + "\": " + error;
    if (g_host.expressionErrors.insert(line).second) std::cerr << "aehost: " << line << '\n';
}

A_Err GetNewStreamValue(AEGP_PluginID, AEGP_StreamRefH streamH, AEGP_LTimeMode time_mode, const A_Time* timePT,
                        A_Boolean pre_expressionB, AEGP_StreamValue2* valueP) {
    return GuardCall("AEGP_GetNewStreamValue", [&]() -> A_Err {
        const char* call = "AEGP_GetNewStreamValue";
        AEHOST_REQUIRE_OUT(call, valueP);
        *valueP = AEGP_StreamValue2{};
        ResolvedStream rs;
        if (A_Err err = ResolveAnyStream(call, streamH, &rs)) return err;
        double seconds = 0.0;
        if (A_Err err = ReadStreamTime(call, time_mode, timePT, &seconds)) return err;
        valueP->streamH = streamH;
        if (rs.IsMarkers()) {
            valueP->val.markerP = NewMarkerHandle(MarkerAt(StreamMarkers(rs), StreamTime(rs, time_mode, seconds)));
            return A_Err_NONE;
        }
        if (rs.IsSourceText()) {
            const TextDocument& shown = TextDocumentAt(rs.layer->text, StreamTime(rs, time_mode, seconds));
            valueP->val.text = MakeHandle<AEGP_TextDocumentH>(g_host.textDocuments.Add(shown));
            return A_Err_NONE;
        }
        if (rs.IsMaskOutline()) {
            valueP->val.mask = NewOutlineValue(PathAt(StreamMask(rs).shape, StreamTime(rs, time_mode, seconds)));
            return A_Err_NONE;
        }
        std::string error;
        const Value value = EvaluateStream(*g_host.project, *rs.comp, *rs.layer, rs.Id(),
                                           CompTimeOf(rs, time_mode, seconds), pre_expressionB != 0, &error);
        if (!error.empty()) ReportExpressionError(rs, error);
        valueP->val = ToStreamVal(StreamKindOf(rs.Id()), value);
        return A_Err_NONE;
    });
}

// Whether a value owns a marker or a text document: by its stream while that
// lives, else by what the value holds.
bool OwnsMarker(const StreamRef* ref, const AEGP_StreamValue2& value) {
    if (ref) return ref->target == StreamTarget::LayerMarkers || ref->target == StreamTarget::CompMarkers;
    return g_host.markers.Find(HandleValue(value.val.markerP)) != nullptr;
}

bool OwnsTextDocument(const StreamRef* ref, const AEGP_StreamValue2& value) {
    if (ref) return ref->target == StreamTarget::SourceText;
    return g_host.textDocuments.Find(HandleValue(value.val.text)) != nullptr;
}

// A marker value owns its marker and a source text value its text document,
// whatever the plug-in put into them; other values own nothing.
A_Err DisposeStreamValue(AEGP_StreamValue2* valueP) {
    return GuardCall("AEGP_DisposeStreamValue", [&]() -> A_Err {
        if (!valueP) return Refuse("AEGP_DisposeStreamValue", "null value");
        const StreamRef* ref = g_host.streams.Find(HandleValue(valueP->streamH));
        if (OwnsMarker(ref, *valueP) && !g_host.markers.Remove(HandleValue(valueP->val.markerP)))
            return Refuse("AEGP_DisposeStreamValue", "the value's marker was already disposed");
        if (OwnsTextDocument(ref, *valueP) && !g_host.textDocuments.Remove(HandleValue(valueP->val.text)))
            return Refuse("AEGP_DisposeStreamValue", "the value's text document was already disposed");
        if (OwnsOutline(ref, *valueP) && !DisposeOutlineValue(valueP->val.mask))
            return Refuse("AEGP_DisposeStreamValue", "the value's outline was already disposed");
        *valueP = AEGP_StreamValue2{};
        return A_Err_NONE;
    });
}

A_Err SetStreamValue(AEGP_PluginID, AEGP_StreamRefH streamH, AEGP_StreamValue2* valueP) {
    return GuardCall("AEGP_SetStreamValue", [&]() -> A_Err {
        const char* call = "AEGP_SetStreamValue";
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, streamH, &rs)) return err;
        if (!valueP) return Refuse(call, "null value");
        if (rs.IsMarkers()) return Refuse(call, "markers are set through their keyframes");
        const auto& own = rs.layer->streams;
        auto it = own.find(rs.Id());
        if (it != own.end() && !it->second.keys.empty()) return Refuse(call, "the stream has keyframes");
        const Value value = FromStreamVal(StreamKindOf(rs.Id()), valueP->val);
        if (A_Err err = RefuseNonFinite(call, rs, value)) return err;
        aehost::SetStreamValue(*g_host.project, *rs.comp, *rs.layer, rs.Id(), value);
        return A_Err_NONE;
    });
}

A_Err LayerStreamOnly(const char* call, AEGP_StreamRefH streamH, ResolvedStream* rs) {
    if (A_Err err = ResolveStream(call, streamH, rs)) return err;
    if (rs->IsMarkers()) return Refuse(call, "a marker stream has no expression");
    return A_Err_NONE;
}

A_Err GetExpressionState(AEGP_PluginID, AEGP_StreamRefH streamH, A_Boolean* enabledPB) {
    return GuardCall("AEGP_GetExpressionState", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetExpressionState", enabledPB);
        ResolvedStream rs;
        // Source text and mask outlines take no expressions in this host.
        if (A_Err err = ResolveAnyStream("AEGP_GetExpressionState", streamH, &rs)) return err;
        if (rs.IsSourceText() || rs.IsMaskOutline()) {
            *enabledPB = false;
            return A_Err_NONE;
        }
        if (A_Err err = LayerStreamOnly("AEGP_GetExpressionState", streamH, &rs)) return err;
        *enabledPB = HasExpression(StreamOrDefault(*g_host.project, *rs.comp, *rs.layer, rs.Id()));
        return A_Err_NONE;
    });
}

A_Err SetExpressionState(AEGP_PluginID, AEGP_StreamRefH streamH, A_Boolean enabledB) {
    return GuardCall("AEGP_SetExpressionState", [&]() -> A_Err {
        ResolvedStream rs;
        if (A_Err err = LayerStreamOnly("AEGP_SetExpressionState", streamH, &rs)) return err;
        EnsureStream(*g_host.project, *rs.comp, *rs.layer, rs.Id()).expressionEnabled = enabledB != 0;
        return A_Err_NONE;
    });
}

A_Err GetExpression(AEGP_PluginID plugin_id, AEGP_StreamRefH streamH, AEGP_MemHandle* unicodeHZ) {
    return GuardCall("AEGP_GetExpression", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetExpression", unicodeHZ);
        *unicodeHZ = nullptr;
        ResolvedStream rs;
        if (A_Err err = LayerStreamOnly("AEGP_GetExpression", streamH, &rs)) return err;
        const Stream stream = StreamOrDefault(*g_host.project, *rs.comp, *rs.layer, rs.Id());
        *unicodeHZ = NewTextHandle(plugin_id, Utf8ToUtf16(stream.expression));
        return A_Err_NONE;
    });
}

A_Err SetExpression(AEGP_PluginID, AEGP_StreamRefH streamH, const A_UTF16Char* expressionP) {
    return GuardCall("AEGP_SetExpression", [&]() -> A_Err {
        ResolvedStream rs;
        if (A_Err err = LayerStreamOnly("AEGP_SetExpression", streamH, &rs)) return err;
        if (!expressionP) return Refuse("AEGP_SetExpression", "null expression");
        EnsureStream(*g_host.project, *rs.comp, *rs.layer, rs.Id()).expression = Utf16zToUtf8(expressionP);
        return A_Err_NONE;
    });
}

const AEGP_StreamSuite9 g_streamSuite = {
    IsStreamLegalCall,   CanVaryOverTime,  GetNewLayerStream,  GetNewMaskStream,   DisposeStream,
    GetStreamName,       IsStreamTimevarying, GetStreamType,   GetNewStreamValue,  DisposeStreamValue,
    SetStreamValue,      GetExpressionState, SetExpressionState, GetExpression,   SetExpression};

}  // namespace

const char* ModelStreamName(int id) {
    for (const StreamName& entry : kStreamNames)
        if (static_cast<int>(entry.id) == id) return entry.name;
    return nullptr;
}

std::string StreamLabel(const ResolvedStream& rs) {
    if (!rs.layer) return "markers of composition " + Quoted(rs.comp->name);
    const char* name = rs.IsMarkers()      ? "markers"
                       : rs.IsSourceText()  ? "Source Text"
                       : rs.IsMaskOutline() ? "Mask Path"
                                            : ModelStreamName(rs.ref->streamId);
    return std::string(name ? name : "stream " + std::to_string(rs.ref->streamId)) + " of layer " +
           Quoted(ShownLayerName(*g_host.project, *rs.layer));
}

A_Err RefuseNonFinite(const char* call, const ResolvedStream& rs, const Value& value) {
    for (const double number : value.v)
        if (!std::isfinite(number))
            return Refuse(call, "the value of " + StreamLabel(rs) + " is not finite (" + ShortNumber(number) +
                                    "); a project cannot hold it");
    return A_Err_NONE;
}

const AEGP_StreamSuite9* StreamSuite() { return &g_streamSuite; }

}  // namespace aehost
