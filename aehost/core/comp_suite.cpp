// The composition suite: a composition's timing, and the calls that create
// compositions and layers in them.
#include <cmath>

#include "aehost/core/host_time.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/progress.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"
#include "aehost/model/edit.h"

namespace aehost {

namespace {

// A layer made by a creation call, told in the trace and counted by an import.
void NoteLayerMade(const char* kind, const Item& comp, const Layer& layer) {
    Trace("made " + std::string(kind) + " " + Quoted(ShownLayerName(*g_host.project, layer)) + " in composition " +
          Quoted(comp.name));
    CountImportedLayer();
}


A_Err GetCompFromItem(AEGP_ItemH itemH, AEGP_CompH* compPH) {
    return GuardCall("AEGP_GetCompFromItem", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCompFromItem", compPH);
        *compPH = nullptr;
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetCompFromItem", itemH, &item)) return err;
        if (item->kind == ItemKind::Composition) *compPH = CompHandle(*item);
        return A_Err_NONE;
    });
}

A_Err GetItemFromComp(AEGP_CompH compH, AEGP_ItemH* itemPH) {
    return GuardCall("AEGP_GetItemFromComp", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemFromComp", itemPH);
        *itemPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetItemFromComp", compH, &comp)) return err;
        *itemPH = ItemHandle(*comp);
        return A_Err_NONE;
    });
}

A_Err GetCompFramerate(AEGP_CompH compH, A_FpLong* fpsPF) {
    return GuardCall("AEGP_GetCompFramerate", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCompFramerate", fpsPF);
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetCompFramerate", compH, &comp)) return err;
        *fpsPF = comp->frameRate;
        return A_Err_NONE;
    });
}

A_Err GetCompFrameDuration(AEGP_CompH compH, A_Time* frame_durationPT) {
    return GuardCall("AEGP_GetCompFrameDuration", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCompFrameDuration", frame_durationPT);
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetCompFrameDuration", compH, &comp)) return err;
        if (comp->frameRate <= 0.0) return Refuse("AEGP_GetCompFrameDuration", "composition has no frame rate");
        *frame_durationPT = A_Time{100, CompTimeScale(*comp)};
        return A_Err_NONE;
    });
}

A_Err GetCompDisplayStartTime(AEGP_CompH compH, A_Time* start_timePT) {
    return GuardCall("AEGP_GetCompDisplayStartTime", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCompDisplayStartTime", start_timePT);
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetCompDisplayStartTime", compH, &comp)) return err;
        *start_timePT = ToATime(comp->comp.displayStart, CompTimeScale(*comp));
        return A_Err_NONE;
    });
}

// A pixel aspect the project description holds, so that a saved project reads back.
A_Err ReadPixelAspect(const char* call, const A_Ratio* ratioP, double* aspect) {
    if (!ratioP || !FromRatio(*ratioP, aspect) || !(*aspect >= kMinPixelAspect && *aspect <= kMaxPixelAspect))
        return Refuse(call, "pixel aspect ratio must lie between " + ShortNumber(kMinPixelAspect) + " and " +
                                ShortNumber(kMaxPixelAspect));
    return A_Err_NONE;
}

A_Err SetCompDisplayStartTime(AEGP_CompH compH, const A_Time* start_timePT) {
    return GuardCall("AEGP_SetCompDisplayStartTime", [&]() -> A_Err {
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_SetCompDisplayStartTime", compH, &comp)) return err;
        double seconds = 0.0;
        if (!start_timePT || !ToSeconds(*start_timePT, &seconds))
            return Refuse("AEGP_SetCompDisplayStartTime", "missing time or time scale 0");
        if (std::fabs(seconds) > kMaxTimeSeconds)
            return Refuse("AEGP_SetCompDisplayStartTime",
                          "display start " + ShortNumber(seconds) + " s lies beyond the " +
                              ShortNumber(kMaxTimeSeconds) + " s either way that a project holds");
        comp->comp.displayStart = seconds;
        return A_Err_NONE;
    });
}

A_Err SetCompPixelAspectRatio(AEGP_CompH compH, const A_Ratio* pix_aspectratioPRt) {
    return GuardCall("AEGP_SetCompPixelAspectRatio", [&]() -> A_Err {
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_SetCompPixelAspectRatio", compH, &comp)) return err;
        double ratio = 0.0;
        if (A_Err err = ReadPixelAspect("AEGP_SetCompPixelAspectRatio", pix_aspectratioPRt, &ratio)) return err;
        comp->pixelAspect = ratio;
        return A_Err_NONE;
    });
}

// The folder a new item goes into: the given one, or the root.
A_Err ParentFolder(const char* call, AEGP_ItemH folderH0, int* folderId) {
    *folderId = kRootFolderId;
    if (!folderH0) return A_Err_NONE;
    Item* folder = nullptr;
    if (A_Err err = ResolveItem(call, folderH0, &folder)) return err;
    if (folder->kind != ItemKind::Folder) return Refuse(call, "parent is not a folder");
    *folderId = folder->id;
    return A_Err_NONE;
}

A_Err CreateComp(AEGP_ItemH parent_folderH0, const A_UTF16Char* nameZ, A_long width, A_long height,
                 const A_Ratio* pixel_aspect_ratioPRt, const A_Time* durationPT, const A_Ratio* frameratePRt,
                 AEGP_CompH* new_compPH) {
    return GuardCall("AEGP_CreateComp", [&]() -> A_Err {
        const char* call = "AEGP_CreateComp";
        AEHOST_REQUIRE_OUT(call, new_compPH);
        *new_compPH = nullptr;
        Project* project = nullptr;
        if (A_Err err = OpenProject(call, &project)) return err;
        int folderId = kRootFolderId;
        if (A_Err err = ParentFolder(call, parent_folderH0, &folderId)) return err;
        if (!nameZ) return Refuse(call, "null name");
        if (width < 1 || height < 1 || width > kMaxItemSize || height > kMaxItemSize)
            return Refuse(call, "size " + std::to_string(width) + "x" + std::to_string(height) + " out of range");
        double aspect = 0.0, duration = 0.0, rate = 0.0;
        if (A_Err err = ReadPixelAspect(call, pixel_aspect_ratioPRt, &aspect)) return err;
        if (!durationPT || !ToSeconds(*durationPT, &duration) || duration <= 0.0)
            return Refuse(call, "duration must be positive");
        if (duration > kMaxCompDuration)
            return Refuse(call, "duration is longer than three hours");
        if (!frameratePRt || !FromRatio(*frameratePRt, &rate) || !(rate >= kMinCompFrameRate))
            return Refuse(call, "frame rate is below " + ShortNumber(kMinCompFrameRate) + " frames a second");
        if (rate > kMaxCompFrameRate)
            return Refuse(call, "frame rate is above " + ShortNumber(kMaxCompFrameRate) + " frames a second");
        Item& comp = AddComp(*project, Utf16zToUtf8(nameZ), width, height, aspect, duration, rate, folderId);
        Trace("made composition " + Quoted(comp.name) + " " + std::to_string(width) + "x" + std::to_string(height) +
              ", " + ShortNumber(rate) + " fps, " + ShortNumber(duration) + " s");
        *new_compPH = CompHandle(comp);
        return A_Err_NONE;
    });
}

// A layer made by a creation call gets the duration asked for, if any.
A_Err ApplyDuration(const char* call, Layer& layer, const A_Time* durationPT0) {
    if (!durationPT0) return A_Err_NONE;
    double seconds = 0.0;
    if (!ToSeconds(*durationPT0, &seconds) || seconds <= 0.0) return Refuse(call, "duration must be positive");
    layer.duration = seconds;
    return A_Err_NONE;
}

A_Err CreateSolidInComp(const A_UTF16Char* nameZ, A_long width, A_long height, const AEGP_ColorVal* colorP,
                        AEGP_CompH parent_compH, const A_Time* durationPT0, AEGP_LayerH* new_solidPH) {
    return GuardCall("AEGP_CreateSolidInComp", [&]() -> A_Err {
        const char* call = "AEGP_CreateSolidInComp";
        AEHOST_REQUIRE_OUT(call, new_solidPH);
        *new_solidPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp(call, parent_compH, &comp)) return err;
        if (!nameZ || !colorP) return Refuse(call, "null name or colour");
        if (width < 1 || height < 1 || width > kMaxItemSize || height > kMaxItemSize)
            return Refuse(call, "size out of range");
        const Value color{{colorP->red, colorP->green, colorP->blue, colorP->alpha}};
        Layer& layer = AddSolidLayer(*g_host.project, *comp, Utf16zToUtf8(nameZ), width, height, color);
        if (A_Err err = ApplyDuration(call, layer, durationPT0)) return err;
        NoteLayerMade("solid", *comp, layer);
        *new_solidPH = LayerHandle(layer);
        return A_Err_NONE;
    });
}

A_Err CreateCameraInComp(const A_UTF16Char* nameZ, A_FloatPoint center_point, AEGP_CompH parent_compH,
                         AEGP_LayerH* new_cameraPH) {
    return GuardCall("AEGP_CreateCameraInComp", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_CreateCameraInComp", new_cameraPH);
        *new_cameraPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_CreateCameraInComp", parent_compH, &comp)) return err;
        if (!nameZ) return Refuse("AEGP_CreateCameraInComp", "null name");
        const Layer& layer =
            AddCameraLayer(*g_host.project, *comp, Utf16zToUtf8(nameZ), center_point.x, center_point.y);
        NoteLayerMade("camera", *comp, layer);
        *new_cameraPH = LayerHandle(layer);
        return A_Err_NONE;
    });
}

A_Err CreateLightInComp(const A_UTF16Char* nameZ, A_FloatPoint center_point, AEGP_CompH parent_compH,
                        AEGP_LayerH* new_lightPH) {
    return GuardCall("AEGP_CreateLightInComp", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_CreateLightInComp", new_lightPH);
        *new_lightPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_CreateLightInComp", parent_compH, &comp)) return err;
        if (!nameZ) return Refuse("AEGP_CreateLightInComp", "null name");
        const Layer& layer = AddLightLayer(*g_host.project, *comp, Utf16zToUtf8(nameZ), center_point.x, center_point.y);
        NoteLayerMade("light", *comp, layer);
        *new_lightPH = LayerHandle(layer);
        return A_Err_NONE;
    });
}

A_Err CreateNullInComp(const A_UTF16Char* nameZ, AEGP_CompH parent_compH, const A_Time* durationPT0,
                       AEGP_LayerH* new_null_solidPH) {
    return GuardCall("AEGP_CreateNullInComp", [&]() -> A_Err {
        const char* call = "AEGP_CreateNullInComp";
        AEHOST_REQUIRE_OUT(call, new_null_solidPH);
        *new_null_solidPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp(call, parent_compH, &comp)) return err;
        if (!nameZ) return Refuse(call, "null name");
        Layer& layer = AddNullLayer(*g_host.project, *comp, Utf16zToUtf8(nameZ));
        if (A_Err err = ApplyDuration(call, layer, durationPT0)) return err;
        NoteLayerMade("null", *comp, layer);
        *new_null_solidPH = LayerHandle(layer);
        return A_Err_NONE;
    });
}

A_Err GetNewCompMarkerStream(AEGP_PluginID, AEGP_CompH parent_compH, AEGP_StreamRefH* streamPH) {
    return GuardCall("AEGP_GetNewCompMarkerStream", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetNewCompMarkerStream", streamPH);
        *streamPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetNewCompMarkerStream", parent_compH, &comp)) return err;
        StreamRef ref;
        ref.target = StreamTarget::CompMarkers;
        ref.compId = comp->id;
        *streamPH = MakeHandle<AEGP_StreamRefH>(g_host.streams.Add(ref));
        return A_Err_NONE;
    });
}

const AEGP_CompSuite21 g_compSuite = {GetCompFromItem,         GetItemFromComp,    GetCompFramerate,
                                      GetCompFrameDuration,    GetCompDisplayStartTime,
                                      SetCompDisplayStartTime, SetCompPixelAspectRatio,
                                      CreateComp,              CreateSolidInComp,  CreateCameraInComp,
                                      CreateLightInComp,       CreateNullInComp,   GetNewCompMarkerStream};

}  // namespace

const AEGP_CompSuite21* CompSuite() { return &g_compSuite; }

}  // namespace aehost
