// The shape layer, animated shape and guid suites: a shape layer evaluated at a layer time
// into the items the host draws (aehost/model/shape_evaluation.h), the contours and colour of
// an item, and an identity that is equal for two shapes exactly when their forms are. The
// contours of an item come as outline values that the path data suite reads, listed in a
// handle that the text layer suite's outline calls count and index, as the outlines of text
// characters are (text_character_suites.h). An item handle lives as long as its shape.
#include "aehost/core/host_time.h"
#include "aehost/core/outline_values.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/text_character_suites.h"

namespace aehost {

namespace {

A_Err ResolveShape(const char* call, AEGP_ShapeH shapeH, ShapeValue** shape) {
    *shape = g_host.shapes.Find(HandleValue(shapeH));
    if (!*shape) return Refuse(call, "not a shape, or one already disposed");
    return A_Err_NONE;
}

A_Err ResolveItem(const char* call, AEGP_ShapeItemH itemH, const ShapeItem** item) {
    const ShapeItemRef* ref = g_host.shapeItems.Find(HandleValue(itemH));
    if (!ref) return Refuse(call, "not a shape item, or one whose shape was already disposed");
    *item = &g_host.shapes.Find(ref->shape)->items[ref->index];
    return A_Err_NONE;
}

A_Err ResolveOutlines(const char* call, AEGP_TextOutlinesH outlinesH, ShapeOutlines** outlines) {
    *outlines = g_host.shapeOutlines.Find(HandleValue(outlinesH));
    if (!*outlines) return Refuse(call, "not an outline list, or one already disposed");
    return A_Err_NONE;
}

A_Err Reserved() { return Refuse("a reserved suite entry", "this host does not provide it", A_Err_GENERIC); }

// --- shape layer --------------------------------------------------------------

// The layer's shape at a layer time; a layer without items, or one that is no shape layer,
// has none.
A_Err GetShapeAtTime(AEGP_LayerH layerH, const A_Time* layer_timeP, A_long reserved, AEGP_ShapeH* shapePH) {
    return GuardCall("GetShapeAtTime", [&]() -> A_Err {
        const char* call = "GetShapeAtTime";
        AEHOST_REQUIRE_OUT(call, shapePH);
        *shapePH = nullptr;
        LayerInComp at;
        if (A_Err err = ResolveLayer(call, layerH, &at)) return err;
        double seconds = 0.0;
        if (!layer_timeP || !ToSeconds(*layer_timeP, &seconds)) return Refuse(call, "no time, or one with scale 0");
        if (reserved != 0) return Refuse(call, "the reserved argument must be 0, not " + std::to_string(reserved));
        std::vector<ShapeItem> items = EvaluateShapeLayer(*at.layer, seconds);
        if (items.empty()) return A_Err_NONE;
        *shapePH = MakeHandle<AEGP_ShapeH>(g_host.shapes.Add(ShapeValue{std::move(items), {}}));
        return A_Err_NONE;
    });
}

A_Err DisposeShape(AEGP_ShapeH shapeH) {
    return GuardCall("DisposeShape", [&]() -> A_Err {
        ShapeValue* shape = nullptr;
        if (A_Err err = ResolveShape("DisposeShape", shapeH, &shape)) return err;
        for (const std::uintptr_t item : shape->itemHandles) g_host.shapeItems.Remove(item);
        g_host.shapes.Remove(HandleValue(shapeH));
        return A_Err_NONE;
    });
}

A_Err GetShapeItemCount(AEGP_ShapeH shapeH, A_long* countPL) {
    return GuardCall("GetShapeItemCount", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetShapeItemCount", countPL);
        ShapeValue* shape = nullptr;
        if (A_Err err = ResolveShape("GetShapeItemCount", shapeH, &shape)) return err;
        *countPL = static_cast<A_long>(shape->items.size());
        return A_Err_NONE;
    });
}

// An index past the items gives no item, as the host does.
A_Err GetShapeItem(AEGP_ShapeH shapeH, A_long indexL, AEGP_ShapeItemH* itemPH) {
    return GuardCall("GetShapeItem", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetShapeItem", itemPH);
        *itemPH = nullptr;
        ShapeValue* shape = nullptr;
        if (A_Err err = ResolveShape("GetShapeItem", shapeH, &shape)) return err;
        if (indexL < 0) return Refuse("GetShapeItem", "negative index " + std::to_string(indexL));
        if (static_cast<std::size_t>(indexL) >= shape->items.size()) return A_Err_NONE;
        const std::uintptr_t item =
            g_host.shapeItems.Add(ShapeItemRef{HandleValue(shapeH), static_cast<std::size_t>(indexL)});
        shape->itemHandles.push_back(item);
        *itemPH = MakeHandle<AEGP_ShapeItemH>(item);
        return A_Err_NONE;
    });
}

A_Err GetShapeIdentity(AEGP_ShapeH shapeH, AEGP_GuidH* identityPH) {
    return GuardCall("GetShapeIdentity", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetShapeIdentity", identityPH);
        *identityPH = nullptr;
        ShapeValue* shape = nullptr;
        if (A_Err err = ResolveShape("GetShapeIdentity", shapeH, &shape)) return err;
        *identityPH = MakeHandle<AEGP_GuidH>(g_host.shapeIdentities.Add(ShapeIdentity{ShapeFormIdentity(shape->items)}));
        return A_Err_NONE;
    });
}

const AEGP_ShapeLayerSuite3 g_shapeLayerSuite = {GetShapeAtTime, DisposeShape, GetShapeItemCount, GetShapeItem,
                                                 GetShapeIdentity};

// --- animated shape ---------------------------------------------------------------

A_Err GetItemOutlines(AEGP_ShapeItemH itemH, AEGP_TextOutlinesH* outlinesPH) {
    return GuardCall("GetItemOutlines", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetItemOutlines", outlinesPH);
        *outlinesPH = nullptr;
        const ShapeItem* item = nullptr;
        if (A_Err err = ResolveItem("GetItemOutlines", itemH, &item)) return err;
        ShapeOutlines outlines;
        for (const PathShape& contour : item->contours)
            outlines.outlines.push_back(HandleValue(NewOutlineValue(contour)));
        *outlinesPH = MakeHandle<AEGP_TextOutlinesH>(g_host.shapeOutlines.Add(std::move(outlines)));
        return A_Err_NONE;
    });
}

A_Err DisposeItemOutlines(AEGP_TextOutlinesH outlinesH) {
    return GuardCall("DisposeItemOutlines", [&]() -> A_Err {
        ShapeOutlines* outlines = nullptr;
        if (A_Err err = ResolveOutlines("DisposeItemOutlines", outlinesH, &outlines)) return err;
        for (const std::uintptr_t outline : outlines->outlines)
            DisposeOutlineValue(MakeHandle<AEGP_MaskOutlineValH>(outline));
        g_host.shapeOutlines.Remove(HandleValue(outlinesH));
        return A_Err_NONE;
    });
}

A_Err GetItemColour(AEGP_ShapeItemH itemH, AEGP_ShapeColour* colourP) {
    return GuardCall("GetItemColour", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("GetItemColour", colourP);
        const ShapeItem* item = nullptr;
        if (A_Err err = ResolveItem("GetItemColour", itemH, &item)) return err;
        *colourP = AEGP_ShapeColour{item->color[3], item->color[0], item->color[1], item->color[2]};
        return A_Err_NONE;
    });
}

const AEGP_AnimatedShapeSuite2 g_animatedShapeSuite = {GetItemOutlines, DisposeItemOutlines, Reserved, Reserved,
                                                       GetItemColour};

// --- guid ---------------------------------------------------------------------------

A_Err CompareIdentity(AEGP_GuidH firstH, AEGP_GuidH secondH, A_Boolean* equalPB) {
    return GuardCall("CompareIdentity", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("CompareIdentity", equalPB);
        const ShapeIdentity* first = g_host.shapeIdentities.Find(HandleValue(firstH));
        const ShapeIdentity* second = g_host.shapeIdentities.Find(HandleValue(secondH));
        if (!first || !second) return Refuse("CompareIdentity", "not an identity, or one already disposed");
        *equalPB = first->form == second->form;
        return A_Err_NONE;
    });
}

A_Err DisposeIdentity(AEGP_GuidH identityH) {
    return GuardCall("DisposeIdentity", [&]() -> A_Err {
        if (!g_host.shapeIdentities.Remove(HandleValue(identityH)))
            return Refuse("DisposeIdentity", "not an identity, or one already disposed");
        return A_Err_NONE;
    });
}

const AEGP_GuidSuite2 g_guidSuite = {Reserved, CompareIdentity, DisposeIdentity};

// --- text layer outlines ------------------------------------------------------------

A_Err GetNumTextOutlines(AEGP_TextOutlinesH outlinesH, A_long* num_outlinesPL) {
    return GuardCall("AEGP_GetNumTextOutlines", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetNumTextOutlines", num_outlinesPL);
        ShapeOutlines* outlines = nullptr;
        if (A_Err err = ResolveOutlines("AEGP_GetNumTextOutlines", outlinesH, &outlines)) return err;
        *num_outlinesPL = static_cast<A_long>(outlines->outlines.size());
        return A_Err_NONE;
    });
}

A_Err GetIndexedTextOutline(AEGP_TextOutlinesH outlinesH, A_long path_index, PF_PathOutlinePtr* pathPP) {
    return GuardCall("AEGP_GetIndexedTextOutline", [&]() -> A_Err {
        const char* call = "AEGP_GetIndexedTextOutline";
        AEHOST_REQUIRE_OUT(call, pathPP);
        *pathPP = nullptr;
        ShapeOutlines* outlines = nullptr;
        if (A_Err err = ResolveOutlines(call, outlinesH, &outlines)) return err;
        if (path_index < 0 || static_cast<std::size_t>(path_index) >= outlines->outlines.size())
            return Refuse(call, "outline " + std::to_string(path_index) + " out of range (there are " +
                                    std::to_string(outlines->outlines.size()) + ")");
        *pathPP = MakeHandle<PF_PathOutlinePtr>(outlines->outlines[static_cast<std::size_t>(path_index)]);
        return A_Err_NONE;
    });
}

const AEGP_TextLayerSuite2 g_textLayerSuite = {GetNewTextOutlines,   DisposeItemOutlines, GetNumTextOutlines,
                                               GetIndexedTextOutline, GetCharacterCount,   GetCharacterAt,
                                               DisposeCharacter,      GetCharacterOutlines};

}  // namespace

const AEGP_ShapeLayerSuite3* ShapeLayerSuite() { return &g_shapeLayerSuite; }
const AEGP_AnimatedShapeSuite2* AnimatedShapeSuite() { return &g_animatedShapeSuite; }
const AEGP_GuidSuite2* GuidSuite() { return &g_guidSuite; }
const AEGP_TextLayerSuite2* TextLayerSuite() { return &g_textLayerSuite; }

}  // namespace aehost
