#include "aehost/core/stream_ref.h"

#include "aehost/core/host_time.h"
#include "aehost/model/transform.h"

namespace aehost {

A_Err ResolveStream(const char* call, AEGP_StreamRefH streamH, ResolvedStream* found) {
    if (A_Err err = ResolveAnyStream(call, streamH, found)) return err;
    if (found->IsSourceText()) {
        *found = {};
        return Refuse(call, "the source text holds text documents, not values of this call");
    }
    if (found->IsMaskOutline()) {
        *found = {};
        return Refuse(call, "a mask outline holds outlines, not values of this call");
    }
    return A_Err_NONE;
}

A_Err ResolveAnyStream(const char* call, AEGP_StreamRefH streamH, ResolvedStream* found) {
    *found = {};
    Project* project = nullptr;
    if (A_Err err = OpenProject(call, &project)) return err;
    StreamRef* ref = g_host.streams.Find(HandleValue(streamH));
    if (!ref) return Refuse(call, "not a stream handle, or one already disposed");
    ResolvedStream rs;
    rs.ref = ref;
    if (ref->target == StreamTarget::CompMarkers) {
        rs.comp = FindItem(*project, ref->compId);
    } else {
        const LayerInComp at = FindLayerById(*project, ref->layerId);
        rs.comp = at.comp;
        rs.layer = at.layer;
        if (!rs.layer) return Refuse(call, "the stream's layer no longer exists");
        if (ref->target == StreamTarget::MaskOutline && static_cast<std::size_t>(ref->maskIndex) >= rs.layer->masks.size())
            return Refuse(call, "the stream's mask no longer exists");
    }
    if (!rs.comp) return Refuse(call, "the stream's composition no longer exists");
    *found = rs;
    return A_Err_NONE;
}

const Mask& StreamMask(const ResolvedStream& rs) { return rs.layer->masks[static_cast<std::size_t>(rs.ref->maskIndex)]; }

bool ModelKeyTimes(const ResolvedStream& rs, std::vector<double>* times) {
    times->clear();
    if (rs.IsSourceText()) {
        for (const TextKey& key : rs.layer->text.keys) times->push_back(key.time);
        return true;
    }
    if (rs.IsMaskOutline()) {
        for (const PathKey& key : StreamMask(rs).shape.keys) times->push_back(key.time);
        return true;
    }
    return false;
}

std::vector<Marker>& StreamMarkers(const ResolvedStream& rs) {
    return rs.layer ? rs.layer->markers : rs.comp->comp.markers;
}

double StreamTime(const ResolvedStream& rs, AEGP_LTimeMode mode, double seconds) {
    if (!rs.layer || mode == AEGP_LTimeMode_LayerTime) return seconds;
    return CompTimeToLayerTime(*rs.layer, seconds);
}

double CompTimeOf(const ResolvedStream& rs, AEGP_LTimeMode mode, double seconds) {
    if (!rs.layer || mode == AEGP_LTimeMode_CompTime) return seconds;
    return LayerTimeToCompTime(*rs.layer, seconds);
}

A_Time StreamTimeToATime(const ResolvedStream& rs, AEGP_LTimeMode mode, double streamTime) {
    const double t = rs.layer && mode == AEGP_LTimeMode_CompTime ? LayerTimeToCompTime(*rs.layer, streamTime)
                                                                   : streamTime;
    return ToATime(t, CompTimeScale(*rs.comp));
}

A_Err ReadStreamTime(const char* call, AEGP_LTimeMode mode, const A_Time* time, double* seconds) {
    if (mode != AEGP_LTimeMode_LayerTime && mode != AEGP_LTimeMode_CompTime)
        return Refuse(call, "unknown time mode " + std::to_string(mode));
    if (!time || !ToSeconds(*time, seconds)) return Refuse(call, "missing time or time scale 0");
    return A_Err_NONE;
}

AEGP_StreamType StreamTypeOf(const ResolvedStream& rs) {
    if (rs.IsMarkers()) return AEGP_StreamType_MARKER;
    if (rs.IsSourceText()) return AEGP_StreamType_TEXT_DOCUMENT;
    if (rs.IsMaskOutline()) return AEGP_StreamType_MASK;
    switch (StreamKindOf(rs.Id())) {
        case StreamKind::OneD: return AEGP_StreamType_OneD;
        case StreamKind::TwoD: return AEGP_StreamType_TwoD;
        case StreamKind::TwoDSpatial: return AEGP_StreamType_TwoD_SPATIAL;
        case StreamKind::ThreeDSpatial: return AEGP_StreamType_ThreeD_SPATIAL;
        case StreamKind::ThreeD:
        case StreamKind::Orientation: return AEGP_StreamType_ThreeD;
        case StreamKind::Color: return AEGP_StreamType_COLOR;
    }
    return AEGP_StreamType_NO_DATA;
}

AEGP_StreamVal2 ToStreamVal(StreamKind kind, const Value& value) {
    AEGP_StreamVal2 val{};
    switch (kind) {
        case StreamKind::OneD: val.one_d = value[0]; break;
        case StreamKind::TwoD:
        case StreamKind::TwoDSpatial: val.two_d = {value[0], value[1]}; break;
        case StreamKind::ThreeD:
        case StreamKind::ThreeDSpatial:
        case StreamKind::Orientation: val.three_d = {value[0], value[1], value[2]}; break;
        case StreamKind::Color: val.color = {value[3], value[0], value[1], value[2]}; break;
    }
    return val;
}

Value FromStreamVal(StreamKind kind, const AEGP_StreamVal2& val) {
    switch (kind) {
        case StreamKind::OneD: return Value{{val.one_d, 0, 0, 0}};
        case StreamKind::TwoD:
        case StreamKind::TwoDSpatial: return Value{{val.two_d.x, val.two_d.y, 0, 0}};
        case StreamKind::ThreeD:
        case StreamKind::ThreeDSpatial:
        case StreamKind::Orientation: return Value{{val.three_d.x, val.three_d.y, val.three_d.z, 0}};
        case StreamKind::Color: return Value{{val.color.red, val.color.green, val.color.blue, val.color.alpha}};
    }
    return Value{};
}

AEGP_MarkerValP NewMarkerHandle(const Marker& marker) {
    return MakeHandle<AEGP_MarkerValP>(g_host.markers.Add(marker));
}

A_Err ResolveMarker(const char* call, AEGP_MarkerValP markerP, Marker** marker) {
    *marker = g_host.markers.Find(HandleValue(markerP));
    if (!*marker) return Refuse(call, "not a marker, or one already disposed");
    return A_Err_NONE;
}

int PutMarker(std::vector<Marker>& markers, const Marker& marker) {
    std::size_t i = 0;
    while (i < markers.size() && markers[i].time < marker.time) ++i;
    if (i < markers.size() && markers[i].time == marker.time)
        markers[i] = marker;
    else
        markers.insert(markers.begin() + static_cast<std::ptrdiff_t>(i), marker);
    return static_cast<int>(i);
}

}  // namespace aehost
