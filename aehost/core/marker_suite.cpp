// The marker suite: marker values the plug-in makes, reads and fills before
// it puts them into a marker stream. The model keeps a marker's comment and
// duration; the other texts of a marker are always empty here.
#include "aehost/core/host_time.h"
#include "aehost/core/memory_suite.h"
#include "aehost/core/stream_ref.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/utf16.h"

namespace aehost {

namespace {

A_Err NewMarker(AEGP_MarkerValP* markerPP) {
    return GuardCall("AEGP_NewMarker", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_NewMarker", markerPP);
        *markerPP = NewMarkerHandle(Marker{});
        return A_Err_NONE;
    });
}

A_Err DisposeMarker(AEGP_MarkerValP markerP) {
    return GuardCall("AEGP_DisposeMarker", [&]() -> A_Err {
        if (!g_host.markers.Remove(HandleValue(markerP)))
            return Refuse("AEGP_DisposeMarker", "not a marker, or one already disposed");
        return A_Err_NONE;
    });
}

A_Err DuplicateMarker(AEGP_MarkerValP markerP, AEGP_MarkerValP* new_markerPP) {
    return GuardCall("AEGP_DuplicateMarker", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_DuplicateMarker", new_markerPP);
        *new_markerPP = nullptr;
        Marker* marker = nullptr;
        if (A_Err err = ResolveMarker("AEGP_DuplicateMarker", markerP, &marker)) return err;
        *new_markerPP = NewMarkerHandle(*marker);
        return A_Err_NONE;
    });
}

A_Err CheckStringType(const char* call, AEGP_MarkerStringType str_type) {
    if (str_type < AEGP_MarkerString_COMMENT || str_type > AEGP_MarkerString_CUE_POINT_NAME)
        return Refuse(call, "unknown marker string type " + std::to_string(str_type));
    return A_Err_NONE;
}

A_Err GetMarkerString(AEGP_PluginID plugin_id, AEGP_MarkerValP markerP, AEGP_MarkerStringType str_type,
                      AEGP_MemHandle* unicodePH) {
    return GuardCall("AEGP_GetMarkerString", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetMarkerString", unicodePH);
        *unicodePH = nullptr;
        Marker* marker = nullptr;
        if (A_Err err = ResolveMarker("AEGP_GetMarkerString", markerP, &marker)) return err;
        if (A_Err err = CheckStringType("AEGP_GetMarkerString", str_type)) return err;
        const std::string text = str_type == AEGP_MarkerString_COMMENT ? marker->comment : std::string();
        *unicodePH = NewTextHandle(plugin_id, Utf8ToUtf16(text));
        return A_Err_NONE;
    });
}

A_Err SetMarkerString(AEGP_MarkerValP markerP, AEGP_MarkerStringType str_type, const A_UTF16Char* unicodeP,
                      A_long lengthL) {
    return GuardCall("AEGP_SetMarkerString", [&]() -> A_Err {
        const char* call = "AEGP_SetMarkerString";
        Marker* marker = nullptr;
        if (A_Err err = ResolveMarker(call, markerP, &marker)) return err;
        if (A_Err err = CheckStringType(call, str_type)) return err;
        if (str_type != AEGP_MarkerString_COMMENT) return Refuse(call, "this host keeps only a marker's comment");
        if (lengthL < 0 || (lengthL > 0 && !unicodeP)) return Refuse(call, "bad text or length");
        std::u16string text;
        for (A_long i = 0; i < lengthL; ++i) text += static_cast<char16_t>(unicodeP[i]);
        marker->comment = Utf16ToUtf8(text);
        return A_Err_NONE;
    });
}

A_Err GetMarkerDuration(AEGP_MarkerValP markerP, A_Time* durationPT) {
    return GuardCall("AEGP_GetMarkerDuration", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetMarkerDuration", durationPT);
        Marker* marker = nullptr;
        if (A_Err err = ResolveMarker("AEGP_GetMarkerDuration", markerP, &marker)) return err;
        *durationPT = ToATime(marker->duration, kDefaultTimeScale);
        return A_Err_NONE;
    });
}

A_Err SetMarkerDuration(AEGP_MarkerValP markerP, const A_Time* durationPT) {
    return GuardCall("AEGP_SetMarkerDuration", [&]() -> A_Err {
        Marker* marker = nullptr;
        if (A_Err err = ResolveMarker("AEGP_SetMarkerDuration", markerP, &marker)) return err;
        double seconds = 0.0;
        if (!durationPT || !ToSeconds(*durationPT, &seconds) || seconds < 0.0)
            return Refuse("AEGP_SetMarkerDuration", "missing or negative duration, or time scale 0");
        marker->duration = seconds;
        return A_Err_NONE;
    });
}

const AEGP_MarkerSuite2 g_markerSuite = {NewMarker,       DisposeMarker,   DuplicateMarker,  GetMarkerString,
                                         SetMarkerString, GetMarkerDuration, SetMarkerDuration};

}  // namespace

const AEGP_MarkerSuite2* MarkerSuite() { return &g_markerSuite; }

}  // namespace aehost
