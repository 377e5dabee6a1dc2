// The keyframe suite: keys of layer streams and of marker streams (where a
// key is a marker), one at a time or in batches.
#include "aehost/core/progress.h"
#include "aehost/core/stream_ref.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/model/edit.h"
#include "aehost/model/evaluate.h"

namespace aehost {

namespace {

// The keys of a layer stream; a stream the layer does not hold has none.
const std::vector<Keyframe>* OwnKeys(const ResolvedStream& rs) {
    auto it = rs.layer->streams.find(rs.Id());
    return it == rs.layer->streams.end() ? nullptr : &it->second.keys;
}

std::size_t KeyCount(const ResolvedStream& rs) {
    if (rs.IsMarkers()) return StreamMarkers(rs).size();
    const std::vector<Keyframe>* keys = OwnKeys(rs);
    return keys ? keys->size() : 0;
}

A_Err CheckIndex(const char* call, const ResolvedStream& rs, A_long index) {
    if (index < 0 || static_cast<std::size_t>(index) >= KeyCount(rs))
        return Refuse(call, "key index " + std::to_string(index) + " out of range");
    return A_Err_NONE;
}

Keyframe& KeyAt(const ResolvedStream& rs, A_long index) {
    return rs.layer->streams.at(rs.Id()).keys[static_cast<std::size_t>(index)];
}

double KeyTime(const ResolvedStream& rs, A_long index) {
    return rs.IsMarkers() ? StreamMarkers(rs)[static_cast<std::size_t>(index)].time : KeyAt(rs, index).time;
}

// The value a new key takes: the stream's value there, before expressions.
Value ValueAt(const ResolvedStream& rs, double streamTime) {
    return EvaluateStream(*g_host.project, *rs.comp, *rs.layer, rs.Id(),
                          CompTimeOf(rs, AEGP_LTimeMode_LayerTime, streamTime), true);
}

int InsertKey(const ResolvedStream& rs, double streamTime) {
    if (rs.IsMarkers()) {
        std::vector<Marker>& markers = StreamMarkers(rs);
        for (std::size_t i = 0; i < markers.size(); ++i)
            if (markers[i].time == streamTime) return static_cast<int>(i);
        Marker marker;
        marker.time = streamTime;
        return PutMarker(markers, marker);
    }
    const Value value = ValueAt(rs, streamTime);
    return AddKeyframe(EnsureStream(*g_host.project, *rs.comp, *rs.layer, rs.Id()), streamTime, value);
}

A_Err GetStreamNumKFs(AEGP_StreamRefH streamH, A_long* num_kfsPL) {
    return GuardCall("AEGP_GetStreamNumKFs", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetStreamNumKFs", num_kfsPL);
        ResolvedStream rs;
        if (A_Err err = ResolveAnyStream("AEGP_GetStreamNumKFs", streamH, &rs)) return err;
        std::vector<double> times;
        *num_kfsPL = static_cast<A_long>(ModelKeyTimes(rs, &times) ? times.size() : KeyCount(rs));
        return A_Err_NONE;
    });
}

A_Err GetKeyframeTime(AEGP_StreamRefH streamH, A_long key_index, AEGP_LTimeMode time_mode, A_Time* timePT) {
    return GuardCall("AEGP_GetKeyframeTime", [&]() -> A_Err {
        const char* call = "AEGP_GetKeyframeTime";
        AEHOST_REQUIRE_OUT(call, timePT);
        ResolvedStream rs;
        if (A_Err err = ResolveAnyStream(call, streamH, &rs)) return err;
        if (time_mode != AEGP_LTimeMode_LayerTime && time_mode != AEGP_LTimeMode_CompTime)
            return Refuse(call, "unknown time mode");
        // Source text and mask outlines keep their keys in the model's own form.
        std::vector<double> times;
        if (ModelKeyTimes(rs, &times)) {
            if (key_index < 0 || static_cast<std::size_t>(key_index) >= times.size())
                return Refuse(call, "key index " + std::to_string(key_index) + " out of range");
            *timePT = StreamTimeToATime(rs, time_mode, times[static_cast<std::size_t>(key_index)]);
            return A_Err_NONE;
        }
        if (A_Err err = CheckIndex(call, rs, key_index)) return err;
        *timePT = StreamTimeToATime(rs, time_mode, KeyTime(rs, key_index));
        return A_Err_NONE;
    });
}

A_Err InsertKeyframe(AEGP_StreamRefH streamH, AEGP_LTimeMode time_mode, const A_Time* timePT, A_long* key_indexPL) {
    return GuardCall("AEGP_InsertKeyframe", [&]() -> A_Err {
        const char* call = "AEGP_InsertKeyframe";
        AEHOST_REQUIRE_OUT(call, key_indexPL);
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, streamH, &rs)) return err;
        double seconds = 0.0;
        if (A_Err err = ReadStreamTime(call, time_mode, timePT, &seconds)) return err;
        *key_indexPL = InsertKey(rs, StreamTime(rs, time_mode, seconds));
        Trace((rs.IsMarkers() ? "marker inserted at " : "key inserted at ") + ShortNumber(seconds) + " s in " +
              StreamLabel(rs));
        if (!rs.IsMarkers()) CountImportedKeyframes(1);
        return A_Err_NONE;
    });
}

A_Err DeleteKeyframe(AEGP_StreamRefH streamH, A_long key_index) {
    return GuardCall("AEGP_DeleteKeyframe", [&]() -> A_Err {
        ResolvedStream rs;
        if (A_Err err = ResolveStream("AEGP_DeleteKeyframe", streamH, &rs)) return err;
        if (A_Err err = CheckIndex("AEGP_DeleteKeyframe", rs, key_index)) return err;
        if (rs.IsMarkers()) {
            std::vector<Marker>& markers = StreamMarkers(rs);
            markers.erase(markers.begin() + key_index);
        } else {
            std::vector<Keyframe>& keys = rs.layer->streams.at(rs.Id()).keys;
            keys.erase(keys.begin() + key_index);
        }
        return A_Err_NONE;
    });
}

A_Err GetNewKeyframeValue(AEGP_PluginID, AEGP_StreamRefH streamH, A_long key_index, AEGP_StreamValue2* valueP) {
    return GuardCall("AEGP_GetNewKeyframeValue", [&]() -> A_Err {
        const char* call = "AEGP_GetNewKeyframeValue";
        AEHOST_REQUIRE_OUT(call, valueP);
        *valueP = AEGP_StreamValue2{};
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, streamH, &rs)) return err;
        if (A_Err err = CheckIndex(call, rs, key_index)) return err;
        valueP->streamH = streamH;
        if (rs.IsMarkers())
            valueP->val.markerP = NewMarkerHandle(StreamMarkers(rs)[static_cast<std::size_t>(key_index)]);
        else
            valueP->val = ToStreamVal(StreamKindOf(rs.Id()), KeyAt(rs, key_index).value);
        return A_Err_NONE;
    });
}

// Puts a value into a key; a marker keeps the key's time.
A_Err StoreKeyValue(const char* call, const ResolvedStream& rs, A_long index, const AEGP_StreamValue2& value) {
    if (rs.IsMarkers()) {
        Marker* marker = nullptr;
        if (A_Err err = ResolveMarker(call, value.val.markerP, &marker)) return err;
        Marker& key = StreamMarkers(rs)[static_cast<std::size_t>(index)];
        const double time = key.time;
        key = *marker;
        key.time = time;
    } else {
        const Value number = FromStreamVal(StreamKindOf(rs.Id()), value.val);
        if (A_Err err = RefuseNonFinite(call, rs, number)) return err;
        KeyAt(rs, index).value = number;
    }
    return A_Err_NONE;
}

A_Err SetKeyframeValue(AEGP_StreamRefH streamH, A_long key_index, const AEGP_StreamValue2* valueP) {
    return GuardCall("AEGP_SetKeyframeValue", [&]() -> A_Err {
        const char* call = "AEGP_SetKeyframeValue";
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, streamH, &rs)) return err;
        if (A_Err err = CheckIndex(call, rs, key_index)) return err;
        if (!valueP) return Refuse(call, "null value");
        return StoreKeyValue(call, rs, key_index, *valueP);
    });
}

A_Err LayerStreamOnly(const char* call, AEGP_StreamRefH streamH, ResolvedStream* rs) {
    if (A_Err err = ResolveStream(call, streamH, rs)) return err;
    if (rs->IsMarkers()) return Refuse(call, "not for a marker stream");
    return A_Err_NONE;
}

A_Err GetStreamValueDimensionality(AEGP_StreamRefH streamH, A_short* value_dimPS) {
    return GuardCall("AEGP_GetStreamValueDimensionality", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetStreamValueDimensionality", value_dimPS);
        ResolvedStream rs;
        if (A_Err err = LayerStreamOnly("AEGP_GetStreamValueDimensionality", streamH, &rs)) return err;
        *value_dimPS = static_cast<A_short>(Dimensions(StreamKindOf(rs.Id())));
        return A_Err_NONE;
    });
}

A_Err GetStreamTemporalDimensionality(AEGP_StreamRefH streamH, A_short* temporal_dimPS) {
    return GuardCall("AEGP_GetStreamTemporalDimensionality", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetStreamTemporalDimensionality", temporal_dimPS);
        ResolvedStream rs;
        if (A_Err err = LayerStreamOnly("AEGP_GetStreamTemporalDimensionality", streamH, &rs)) return err;
        *temporal_dimPS = static_cast<A_short>(TemporalDimensions(StreamKindOf(rs.Id())));
        return A_Err_NONE;
    });
}

A_Err ResolveEase(const char* call, AEGP_StreamRefH streamH, A_long key_index, A_long dimension, Keyframe** key) {
    ResolvedStream rs;
    if (A_Err err = LayerStreamOnly(call, streamH, &rs)) return err;
    if (A_Err err = CheckIndex(call, rs, key_index)) return err;
    if (dimension < 0 || dimension >= TemporalDimensions(StreamKindOf(rs.Id())))
        return Refuse(call, "dimension " + std::to_string(dimension) + " out of range");
    *key = &KeyAt(rs, key_index);
    return A_Err_NONE;
}

A_Err GetKeyframeTemporalEase(AEGP_StreamRefH streamH, A_long key_index, A_long dimensionL,
                              AEGP_KeyframeEase* in_easeP0, AEGP_KeyframeEase* out_easeP0) {
    return GuardCall("AEGP_GetKeyframeTemporalEase", [&]() -> A_Err {
        Keyframe* key = nullptr;
        if (A_Err err = ResolveEase("AEGP_GetKeyframeTemporalEase", streamH, key_index, dimensionL, &key)) return err;
        const auto d = static_cast<std::size_t>(dimensionL);
        if (in_easeP0) *in_easeP0 = {key->easeIn[d].speed, key->easeIn[d].influence};
        if (out_easeP0) *out_easeP0 = {key->easeOut[d].speed, key->easeOut[d].influence};
        return A_Err_NONE;
    });
}

A_Err SetKeyframeTemporalEase(AEGP_StreamRefH streamH, A_long key_index, A_long dimensionL,
                              const AEGP_KeyframeEase* in_easeP0, const AEGP_KeyframeEase* out_easeP0) {
    return GuardCall("AEGP_SetKeyframeTemporalEase", [&]() -> A_Err {
        const char* call = "AEGP_SetKeyframeTemporalEase";
        Keyframe* key = nullptr;
        if (A_Err err = ResolveEase(call, streamH, key_index, dimensionL, &key)) return err;
        for (const AEGP_KeyframeEase* ease : {in_easeP0, out_easeP0})
            if (ease && (ease->influenceF < 0.1 || ease->influenceF > 100.0))
                return Refuse(call, "influence must lie between 0.1 and 100 percent");
        const auto d = static_cast<std::size_t>(dimensionL);
        if (in_easeP0) key->easeIn[d] = {in_easeP0->speedF, in_easeP0->influenceF};
        if (out_easeP0) key->easeOut[d] = {out_easeP0->speedF, out_easeP0->influenceF};
        return A_Err_NONE;
    });
}

AEGP_KeyframeInterpolationType ToHostInterp(Interpolation interp) {
    switch (interp) {
        case Interpolation::Linear: return AEGP_KeyInterp_LINEAR;
        case Interpolation::Bezier: return AEGP_KeyInterp_BEZIER;
        case Interpolation::Hold: return AEGP_KeyInterp_HOLD;
    }
    return AEGP_KeyInterp_NONE;
}

bool FromHostInterp(AEGP_KeyframeInterpolationType type, Interpolation* interp) {
    switch (type) {
        case AEGP_KeyInterp_LINEAR: *interp = Interpolation::Linear; return true;
        case AEGP_KeyInterp_BEZIER: *interp = Interpolation::Bezier; return true;
        case AEGP_KeyInterp_HOLD: *interp = Interpolation::Hold; return true;
        default: return false;
    }
}

A_Err GetKeyframeInterpolation(AEGP_StreamRefH streamH, A_long key_index, AEGP_KeyframeInterpolationType* in_interpP0,
                               AEGP_KeyframeInterpolationType* out_interpP0) {
    return GuardCall("AEGP_GetKeyframeInterpolation", [&]() -> A_Err {
        ResolvedStream rs;
        if (A_Err err = LayerStreamOnly("AEGP_GetKeyframeInterpolation", streamH, &rs)) return err;
        if (A_Err err = CheckIndex("AEGP_GetKeyframeInterpolation", rs, key_index)) return err;
        const Keyframe& key = KeyAt(rs, key_index);
        if (in_interpP0) *in_interpP0 = ToHostInterp(key.in);
        if (out_interpP0) *out_interpP0 = ToHostInterp(key.out);
        return A_Err_NONE;
    });
}

A_Err SetKeyframeInterpolation(AEGP_StreamRefH streamH, A_long key_index, AEGP_KeyframeInterpolationType in_interp,
                               AEGP_KeyframeInterpolationType out_interp) {
    return GuardCall("AEGP_SetKeyframeInterpolation", [&]() -> A_Err {
        const char* call = "AEGP_SetKeyframeInterpolation";
        ResolvedStream rs;
        if (A_Err err = LayerStreamOnly(call, streamH, &rs)) return err;
        if (A_Err err = CheckIndex(call, rs, key_index)) return err;
        Interpolation in{}, out{};
        if (!FromHostInterp(in_interp, &in) || !FromHostInterp(out_interp, &out))
            return Refuse(call, "unknown interpolation type");
        Keyframe& key = KeyAt(rs, key_index);
        key.in = in;
        key.out = out;
        return A_Err_NONE;
    });
}

A_Err StartAddKeyframes(AEGP_StreamRefH streamH, AEGP_AddKeyframesInfoH* akPH) {
    return GuardCall("AEGP_StartAddKeyframes", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_StartAddKeyframes", akPH);
        *akPH = nullptr;
        ResolvedStream rs;
        if (A_Err err = ResolveStream("AEGP_StartAddKeyframes", streamH, &rs)) return err;
        AddKeyframesBatch batch;
        batch.stream = HandleValue(streamH);
        *akPH = MakeHandle<AEGP_AddKeyframesInfoH>(g_host.keyBatches.Add(batch));
        return A_Err_NONE;
    });
}

A_Err ResolveBatch(const char* call, AEGP_AddKeyframesInfoH akH, AddKeyframesBatch** batch, ResolvedStream* rs) {
    *batch = g_host.keyBatches.Find(HandleValue(akH));
    if (!*batch) return Refuse(call, "not an open batch of keyframes");
    return ResolveStream(call, MakeHandle<AEGP_StreamRefH>((*batch)->stream), rs);
}

A_Err AddKeyframes(AEGP_AddKeyframesInfoH akH, AEGP_LTimeMode time_mode, const A_Time* timePT, A_long* indexPL) {
    return GuardCall("AEGP_AddKeyframes", [&]() -> A_Err {
        const char* call = "AEGP_AddKeyframes";
        AEHOST_REQUIRE_OUT(call, indexPL);
        AddKeyframesBatch* batch = nullptr;
        ResolvedStream rs;
        if (A_Err err = ResolveBatch(call, akH, &batch, &rs)) return err;
        double seconds = 0.0;
        if (A_Err err = ReadStreamTime(call, time_mode, timePT, &seconds)) return err;
        PendingKey key;
        key.time = StreamTime(rs, time_mode, seconds);
        batch->keys.push_back(key);
        *indexPL = static_cast<A_long>(batch->keys.size() - 1);
        return A_Err_NONE;
    });
}

A_Err SetAddKeyframe(AEGP_AddKeyframesInfoH akH, A_long indexL, const AEGP_StreamValue2* valueP) {
    return GuardCall("AEGP_SetAddKeyframe", [&]() -> A_Err {
        const char* call = "AEGP_SetAddKeyframe";
        AddKeyframesBatch* batch = nullptr;
        ResolvedStream rs;
        if (A_Err err = ResolveBatch(call, akH, &batch, &rs)) return err;
        if (indexL < 0 || static_cast<std::size_t>(indexL) >= batch->keys.size())
            return Refuse(call, "index " + std::to_string(indexL) + " was not given by AEGP_AddKeyframes");
        if (!valueP) return Refuse(call, "null value");
        PendingKey& key = batch->keys[static_cast<std::size_t>(indexL)];
        if (rs.IsMarkers()) {
            Marker* marker = nullptr;
            if (A_Err err = ResolveMarker(call, valueP->val.markerP, &marker)) return err;
            key.marker = *marker;
        } else {
            key.value = FromStreamVal(StreamKindOf(rs.Id()), valueP->val);
            if (A_Err err = RefuseNonFinite(call, rs, key.value)) return err;
        }
        key.hasValue = true;
        return A_Err_NONE;
    });
}

void ApplyKey(const ResolvedStream& rs, const PendingKey& key) {
    if (rs.IsMarkers()) {
        Marker marker = key.hasValue ? key.marker : Marker{};
        marker.time = key.time;
        PutMarker(StreamMarkers(rs), marker);
        return;
    }
    const Value value = key.hasValue ? key.value : ValueAt(rs, key.time);
    AddKeyframe(EnsureStream(*g_host.project, *rs.comp, *rs.layer, rs.Id()), key.time, value);
}

A_Err EndAddKeyframes(A_Boolean addB, AEGP_AddKeyframesInfoH akH) {
    return GuardCall("AEGP_EndAddKeyframes", [&]() -> A_Err {
        AddKeyframesBatch* batch = nullptr;
        ResolvedStream rs;
        const A_Err err = ResolveBatch("AEGP_EndAddKeyframes", akH, &batch, &rs);
        if (batch && !err && addB) {
            for (const PendingKey& key : batch->keys) ApplyKey(rs, key);
            Trace(std::to_string(batch->keys.size()) + " keys added to " + StreamLabel(rs));
            if (!rs.IsMarkers()) CountImportedKeyframes(static_cast<long long>(batch->keys.size()));
        }
        if (batch) g_host.keyBatches.Remove(HandleValue(akH));
        return err;
    });
}

const AEGP_KeyframeSuite4 g_keyframeSuite = {
    GetStreamNumKFs,          GetKeyframeTime,          InsertKeyframe,           DeleteKeyframe,
    GetNewKeyframeValue,      SetKeyframeValue,         GetStreamValueDimensionality,
    GetStreamTemporalDimensionality, GetKeyframeTemporalEase, SetKeyframeTemporalEase,
    GetKeyframeInterpolation, SetKeyframeInterpolation, StartAddKeyframes,        AddKeyframes,
    SetAddKeyframe,           EndAddKeyframes};

}  // namespace

const AEGP_KeyframeSuite4* KeyframeSuite() { return &g_keyframeSuite; }

}  // namespace aehost
