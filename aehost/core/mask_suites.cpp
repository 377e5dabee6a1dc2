// The layer mask, mask outline and path data suites: a layer's masks, and the contour of a
// mask at one time as the stream suite hands it out. A mask outline gives its tangents
// relative to their vertex, the path data suite as absolute handle positions. Segment lengths
// are measured on the Bezier curve itself (aehost/model/bezier.h); the frequency of a
// prepared length is checked and otherwise not needed, since the measure is exact.
#include <algorithm>

#include "aehost/core/outline_values.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/model/bezier.h"

namespace aehost {

namespace {

A_Err ResolveMask(const char* call, AEGP_MaskRefH maskH, LayerInComp* at, const Mask** mask) {
    const MaskRef* ref = g_host.masks.Find(HandleValue(maskH));
    if (!ref) return Refuse(call, "not a mask handle, or one already disposed");
    Project* project = nullptr;
    if (A_Err err = OpenProject(call, &project)) return err;
    *at = FindLayerById(*project, ref->layerId);
    if (!at->layer || static_cast<std::size_t>(ref->index) >= at->layer->masks.size())
        return Refuse(call, "the mask no longer exists");
    *mask = &at->layer->masks[static_cast<std::size_t>(ref->index)];
    return A_Err_NONE;
}

template <class H>
A_Err ResolveOutline(const char* call, H outlineH, const PathShape** shape) {
    const OutlineValue* value = g_host.outlines.Find(HandleValue(outlineH));
    if (!value) return Refuse(call, "not an outline, or one whose value was already disposed");
    *shape = &value->shape;
    return A_Err_NONE;
}

// A vertex of an outline by the host's count: an outline has one point more than segments,
// so that of a closed outline the point after the last vertex is the first again.
template <class H>
A_Err ResolveVertex(const char* call, H outlineH, A_long which, const PathVertex** vertex) {
    const PathShape* shape = nullptr;
    if (A_Err err = ResolveOutline(call, outlineH, &shape)) return err;
    const A_long points = std::max(SegmentCount(*shape), 0) + 1;
    if (which < 0 || which >= points || shape->vertices.empty())
        return Refuse(call, "vertex " + std::to_string(which) + " out of range (the outline has " +
                                std::to_string(points) + " points)");
    *vertex = &shape->vertices[static_cast<std::size_t>(which) % shape->vertices.size()];
    return A_Err_NONE;
}

template <class H>
A_Err CheckSegment(const char* call, H outlineH, A_long which, const PathShape** shape) {
    if (A_Err err = ResolveOutline(call, outlineH, shape)) return err;
    if (which < 0 || which >= SegmentCount(**shape))
        return Refuse(call, "segment " + std::to_string(which) + " out of range (the outline has " +
                                std::to_string(SegmentCount(**shape)) + ")");
    return A_Err_NONE;
}

// What the mask outline and the path data suites both tell of an outline.
template <class H, class Flag>
A_Err ReadIsOpen(const char* call, H outlineH, Flag* openPB) {
    return GuardCall(call, [&]() -> A_Err {
        AEHOST_REQUIRE_OUT(call, openPB);
        const PathShape* shape = nullptr;
        if (A_Err err = ResolveOutline(call, outlineH, &shape)) return err;
        *openPB = !shape->closed;
        return A_Err_NONE;
    });
}

template <class H>
A_Err ReadNumSegments(const char* call, H outlineH, A_long* num_segmentsPL) {
    return GuardCall(call, [&]() -> A_Err {
        AEHOST_REQUIRE_OUT(call, num_segmentsPL);
        const PathShape* shape = nullptr;
        if (A_Err err = ResolveOutline(call, outlineH, &shape)) return err;
        *num_segmentsPL = SegmentCount(*shape);
        return A_Err_NONE;
    });
}

// --- layer masks --------------------------------------------------------------

A_Err GetLayerNumMasks(AEGP_LayerH layerH, A_long* num_masksPL) {
    return GuardCall("AEGP_GetLayerNumMasks", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerNumMasks", num_masksPL);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerNumMasks", layerH, &at)) return err;
        *num_masksPL = static_cast<A_long>(at.layer->masks.size());
        return A_Err_NONE;
    });
}

A_Err GetLayerMaskByIndex(AEGP_LayerH layerH, A_long mask_indexL, AEGP_MaskRefH* maskPH) {
    return GuardCall("AEGP_GetLayerMaskByIndex", [&]() -> A_Err {
        const char* call = "AEGP_GetLayerMaskByIndex";
        AEHOST_REQUIRE_OUT(call, maskPH);
        *maskPH = nullptr;
        LayerInComp at;
        if (A_Err err = ResolveLayer(call, layerH, &at)) return err;
        if (mask_indexL < 0 || static_cast<std::size_t>(mask_indexL) >= at.layer->masks.size())
            return Refuse(call, "mask index " + std::to_string(mask_indexL) + " out of range (the layer has " +
                                    std::to_string(at.layer->masks.size()) + ")");
        *maskPH = MakeHandle<AEGP_MaskRefH>(g_host.masks.Add(MaskRef{at.layer->id, static_cast<int>(mask_indexL)}));
        return A_Err_NONE;
    });
}

A_Err DisposeMask(AEGP_MaskRefH maskH) {
    return GuardCall("AEGP_DisposeMask", [&]() -> A_Err {
        if (!g_host.masks.Remove(HandleValue(maskH)))
            return Refuse("AEGP_DisposeMask", "not a mask handle, or one already disposed");
        return A_Err_NONE;
    });
}

const AEGP_LayerMaskSuite7 g_layerMaskSuite = {GetLayerNumMasks, GetLayerMaskByIndex, DisposeMask};

// --- mask outlines ------------------------------------------------------------

A_Err IsMaskOutlineOpen(AEGP_MaskOutlineValH outlineH, A_Boolean* openPB) {
    return ReadIsOpen("AEGP_IsMaskOutlineOpen", outlineH, openPB);
}

A_Err GetMaskOutlineNumSegments(AEGP_MaskOutlineValH outlineH, A_long* num_segmentsPL) {
    return ReadNumSegments("AEGP_GetMaskOutlineNumSegments", outlineH, num_segmentsPL);
}

A_Err GetMaskOutlineVertexInfo(AEGP_MaskOutlineValH outlineH, A_long which_pointL, AEGP_MaskVertex* vertexP) {
    return GuardCall("AEGP_GetMaskOutlineVertexInfo", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetMaskOutlineVertexInfo", vertexP);
        const PathVertex* v = nullptr;
        if (A_Err err = ResolveVertex("AEGP_GetMaskOutlineVertexInfo", outlineH, which_pointL, &v)) return err;
        *vertexP = AEGP_MaskVertex{v->x, v->y, v->inX, v->inY, v->outX, v->outY};
        return A_Err_NONE;
    });
}

const AEGP_MaskOutlineSuite3 g_maskOutlineSuite = {IsMaskOutlineOpen, GetMaskOutlineNumSegments,
                                                   GetMaskOutlineVertexInfo};

// --- path data ----------------------------------------------------------------

A_Err PathIsOpen(PF_ProgPtr, PF_PathOutlinePtr pathP, PF_Boolean* openPB) {
    return ReadIsOpen("PF_PathIsOpen", pathP, openPB);
}

A_Err PathNumSegments(PF_ProgPtr, PF_PathOutlinePtr pathP, A_long* num_segmentsPL) {
    return ReadNumSegments("PF_PathNumSegments", pathP, num_segmentsPL);
}

A_Err PathVertexInfo(PF_ProgPtr, PF_PathOutlinePtr pathP, A_long which_pointL, PF_PathVertex* vertexP) {
    return GuardCall("PF_PathVertexInfo", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("PF_PathVertexInfo", vertexP);
        const PathVertex* v = nullptr;
        if (A_Err err = ResolveVertex("PF_PathVertexInfo", pathP, which_pointL, &v)) return err;
        *vertexP = PF_PathVertex{v->x, v->y, v->x + v->inX, v->y + v->inY, v->x + v->outX, v->y + v->outY};
        return A_Err_NONE;
    });
}

A_Err PathPrepareSegLength(PF_ProgPtr, PF_PathOutlinePtr pathP, A_long which_segL, A_long frequencyL,
                           PF_PathSegPrepPtr* lengthPrepPP) {
    return GuardCall("PF_PathPrepareSegLength", [&]() -> A_Err {
        const char* call = "PF_PathPrepareSegLength";
        AEHOST_REQUIRE_OUT(call, lengthPrepPP);
        *lengthPrepPP = nullptr;
        const PathShape* shape = nullptr;
        if (A_Err err = CheckSegment(call, pathP, which_segL, &shape)) return err;
        if (frequencyL <= 0) return Refuse(call, "frequency " + std::to_string(frequencyL) + " is not positive");
        const SegmentPrep prep{HandleValue(pathP), static_cast<int>(which_segL),
                               SegmentLength(*shape, static_cast<int>(which_segL))};
        *lengthPrepPP = MakeHandle<PF_PathSegPrepPtr>(g_host.segmentPreps.Add(prep));
        return A_Err_NONE;
    });
}

A_Err PathGetSegLength(PF_ProgPtr, PF_PathOutlinePtr pathP, A_long which_segL, PF_PathSegPrepPtr* lengthPrepP0,
                       A_FpLong* lengthPF) {
    return GuardCall("PF_PathGetSegLength", [&]() -> A_Err {
        const char* call = "PF_PathGetSegLength";
        AEHOST_REQUIRE_OUT(call, lengthPF);
        const PathShape* shape = nullptr;
        if (A_Err err = CheckSegment(call, pathP, which_segL, &shape)) return err;
        if (!lengthPrepP0 || !*lengthPrepP0) {
            *lengthPF = SegmentLength(*shape, static_cast<int>(which_segL));
            return A_Err_NONE;
        }
        const SegmentPrep* prep = g_host.segmentPreps.Find(HandleValue(*lengthPrepP0));
        if (!prep) return Refuse(call, "not a prepared length, or one already cleaned up");
        if (prep->outline != HandleValue(pathP) || prep->segment != which_segL)
            return Refuse(call, "the length was prepared for another outline or segment");
        *lengthPF = prep->length;
        return A_Err_NONE;
    });
}

A_Err PathCleanup(PF_ProgPtr, PF_PathSegPrepPtr* lengthPrepPP) {
    return GuardCall("PF_PathCleanup", [&]() -> A_Err {
        if (!lengthPrepPP) return Refuse("PF_PathCleanup", "null prepared length");
        if (*lengthPrepPP && !g_host.segmentPreps.Remove(HandleValue(*lengthPrepPP)))
            return Refuse("PF_PathCleanup", "not a prepared length, or one already cleaned up");
        *lengthPrepPP = nullptr;
        return A_Err_NONE;
    });
}

const PF_PathDataSuite1 g_pathDataSuite = {PathIsOpen,           PathNumSegments,  PathVertexInfo,
                                           PathPrepareSegLength, PathGetSegLength, PathCleanup};

}  // namespace

A_Err NewMaskStream(const char* call, AEGP_MaskRefH maskH, AEGP_MaskStream which, AEGP_StreamRefH* streamPH) {
    AEHOST_REQUIRE_OUT(call, streamPH);
    *streamPH = nullptr;
    LayerInComp at;
    const Mask* mask = nullptr;
    if (A_Err err = ResolveMask(call, maskH, &at, &mask)) return err;
    if (which != AEGP_MaskStream_OUTLINE)
        return Refuse(call, "mask stream " + std::to_string(which) + " is not one this host has (only the outline, 400)");
    StreamRef ref;
    ref.target = StreamTarget::MaskOutline;
    ref.compId = at.comp->id;
    ref.layerId = at.layer->id;
    ref.streamId = which;
    ref.maskIndex = g_host.masks.Find(HandleValue(maskH))->index;
    *streamPH = MakeHandle<AEGP_StreamRefH>(g_host.streams.Add(ref));
    return A_Err_NONE;
}

AEGP_MaskOutlineValH NewOutlineValue(const PathShape& shape) {
    return MakeHandle<AEGP_MaskOutlineValH>(g_host.outlines.Add(OutlineValue{shape}));
}

bool OwnsOutline(const StreamRef* ref, const AEGP_StreamValue2& value) {
    if (ref) return ref->target == StreamTarget::MaskOutline;
    return g_host.outlines.Find(HandleValue(value.val.mask)) != nullptr;
}

bool DisposeOutlineValue(AEGP_MaskOutlineValH outlineH) {
    const std::uintptr_t outline = HandleValue(outlineH);
    if (!g_host.outlines.Remove(outline)) return false;
    std::vector<std::uintptr_t> preps;
    for (const auto& [handle, prep] : g_host.segmentPreps.Entries())
        if (prep.outline == outline) preps.push_back(handle);
    for (const std::uintptr_t handle : preps) g_host.segmentPreps.Remove(handle);
    return true;
}

const AEGP_LayerMaskSuite7* LayerMaskSuite() { return &g_layerMaskSuite; }
const AEGP_MaskOutlineSuite3* MaskOutlineSuite() { return &g_maskOutlineSuite; }
const PF_PathDataSuite1* PathDataSuite() { return &g_pathDataSuite; }

}  // namespace aehost
