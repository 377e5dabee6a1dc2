// The layer suite: a composition's layers, their switches, times and
// layer-to-world matrices, and the calls that add layers.
#include <set>
#include <vector>

#include "aehost/core/host_time.h"
#include "aehost/core/memory_suite.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/progress.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"
#include "aehost/model/edit.h"
#include "aehost/model/transform.h"

namespace aehost {

namespace {

// The flags a layer's switches stand for.
struct FlagSwitch {
    AEGP_LayerFlags flag;
    bool LayerSwitches::*member;
};

const FlagSwitch kFlagSwitches[] = {
    {AEGP_LayerFlag_VIDEO_ACTIVE, &LayerSwitches::video},
    {AEGP_LayerFlag_AUDIO_ACTIVE, &LayerSwitches::audio},
    {AEGP_LayerFlag_LOCKED, &LayerSwitches::locked},
    {AEGP_LayerFlag_SHY, &LayerSwitches::shy},
    {AEGP_LayerFlag_SOLO, &LayerSwitches::solo},
    {AEGP_LayerFlag_LAYER_IS_3D, &LayerSwitches::threeD},
    {AEGP_LayerFlag_ADJUSTMENT_LAYER, &LayerSwitches::adjustment},
    {AEGP_LayerFlag_MOTION_BLUR, &LayerSwitches::motionBlur},
    {AEGP_LayerFlag_NULL_LAYER, &LayerSwitches::nullLayer},
};

A_Err GetCompNumLayers(AEGP_CompH compH, A_long* num_layersPL) {
    return GuardCall("AEGP_GetCompNumLayers", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCompNumLayers", num_layersPL);
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetCompNumLayers", compH, &comp)) return err;
        *num_layersPL = static_cast<A_long>(comp->comp.layers.size());
        return A_Err_NONE;
    });
}

A_Err GetCompLayerByIndex(AEGP_CompH compH, A_long layer_indexL, AEGP_LayerH* layerPH) {
    return GuardCall("AEGP_GetCompLayerByIndex", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetCompLayerByIndex", layerPH);
        *layerPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetCompLayerByIndex", compH, &comp)) return err;
        if (layer_indexL < 0 || static_cast<std::size_t>(layer_indexL) >= comp->comp.layers.size())
            return Refuse("AEGP_GetCompLayerByIndex", "layer index " + std::to_string(layer_indexL) + " out of range");
        const Layer& layer = *comp->comp.layers[static_cast<std::size_t>(layer_indexL)];
        if (Tracing())
            Trace("layer " + std::to_string(layer_indexL) + " of composition " + Quoted(comp->name) + ": " +
                  Quoted(ShownLayerName(*g_host.project, layer)));
        *layerPH = LayerHandle(layer);
        return A_Err_NONE;
    });
}

A_Err GetActiveLayer(AEGP_LayerH* layerPH) {
    return GuardCall("AEGP_GetActiveLayer", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetActiveLayer", layerPH);
        *layerPH = nullptr;
        if (!g_host.project || g_host.activeLayerId == 0) return A_Err_NONE;
        if (Layer* layer = FindLayerById(*g_host.project, g_host.activeLayerId).layer) *layerPH = LayerHandle(*layer);
        return A_Err_NONE;
    });
}

A_Err GetLayerIndex(AEGP_LayerH layerH, A_long* layer_indexPL) {
    return GuardCall("AEGP_GetLayerIndex", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerIndex", layer_indexPL);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerIndex", layerH, &at)) return err;
        const auto& layers = at.comp->comp.layers;
        for (std::size_t i = 0; i < layers.size(); ++i)
            if (layers[i].get() == at.layer) *layer_indexPL = static_cast<A_long>(i);
        return A_Err_NONE;
    });
}

A_Err GetLayerSourceItem(AEGP_LayerH layerH, AEGP_ItemH* source_itemPH) {
    return GuardCall("AEGP_GetLayerSourceItem", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerSourceItem", source_itemPH);
        *source_itemPH = nullptr;
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerSourceItem", layerH, &at)) return err;
        if (at.layer->sourceId == 0) return A_Err_NONE;
        if (Item* source = FindItem(*g_host.project, at.layer->sourceId)) *source_itemPH = ItemHandle(*source);
        return A_Err_NONE;
    });
}

A_Err GetLayerParentComp(AEGP_LayerH layerH, AEGP_CompH* compPH) {
    return GuardCall("AEGP_GetLayerParentComp", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerParentComp", compPH);
        *compPH = nullptr;
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerParentComp", layerH, &at)) return err;
        *compPH = CompHandle(*at.comp);
        return A_Err_NONE;
    });
}

A_Err GetLayerName(AEGP_PluginID plugin_id, AEGP_LayerH layerH, AEGP_MemHandle* layer_namePH0,
                   AEGP_MemHandle* source_namePH0) {
    return GuardCall("AEGP_GetLayerName", [&]() -> A_Err {
        if (layer_namePH0) *layer_namePH0 = nullptr;
        if (source_namePH0) *source_namePH0 = nullptr;
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerName", layerH, &at)) return err;
        const Item* source = at.layer->sourceId ? FindItem(*g_host.project, at.layer->sourceId) : nullptr;
        // A layer without a source (camera, light, text) goes by its own name.
        const std::string sourceName = source ? source->name : at.layer->name;
        if (layer_namePH0) *layer_namePH0 = NewTextHandle(plugin_id, Utf8ToUtf16(at.layer->name));
        if (source_namePH0) *source_namePH0 = NewTextHandle(plugin_id, Utf8ToUtf16(sourceName));
        return A_Err_NONE;
    });
}

A_Err GetLayerFlags(AEGP_LayerH layerH, AEGP_LayerFlags* layer_flagsP) {
    return GuardCall("AEGP_GetLayerFlags", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerFlags", layer_flagsP);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerFlags", layerH, &at)) return err;
        AEGP_LayerFlags flags = AEGP_LayerFlag_NONE;
        for (const FlagSwitch& fs : kFlagSwitches)
            if (at.layer->switches.*fs.member) flags |= fs.flag;
        if (at.layer->switches.autoOrient == AutoOrient::TowardsPointOfInterest) flags |= AEGP_LayerFlag_LOOK_AT_POI;
        *layer_flagsP = flags;
        return A_Err_NONE;
    });
}

A_Err SetLayerFlag(AEGP_LayerH layerH, AEGP_LayerFlags single_flag, A_Boolean valueB) {
    return GuardCall("AEGP_SetLayerFlag", [&]() -> A_Err {
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_SetLayerFlag", layerH, &at)) return err;
        if (single_flag == AEGP_LayerFlag_LOOK_AT_POI) {
            at.layer->switches.autoOrient = valueB ? AutoOrient::TowardsPointOfInterest : AutoOrient::Off;
            return A_Err_NONE;
        }
        for (const FlagSwitch& fs : kFlagSwitches) {
            if (fs.flag != single_flag) continue;
            at.layer->switches.*fs.member = valueB != 0;
            return A_Err_NONE;
        }
        return Refuse("AEGP_SetLayerFlag", "flag " + std::to_string(single_flag) + " is not one settable switch");
    });
}

// Cameras and lights always live in 3D space.
A_Err IsLayer3D(AEGP_LayerH layerH, A_Boolean* is_3DPB) {
    return GuardCall("AEGP_IsLayer3D", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_IsLayer3D", is_3DPB);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_IsLayer3D", layerH, &at)) return err;
        const LayerObjectType type = at.layer->objectType;
        *is_3DPB = at.layer->switches.threeD || type == LayerObjectType::Camera || type == LayerObjectType::Light;
        return A_Err_NONE;
    });
}

A_Err CheckTimeMode(const char* call, AEGP_LTimeMode mode) {
    if (mode != AEGP_LTimeMode_LayerTime && mode != AEGP_LTimeMode_CompTime)
        return Refuse(call, "unknown time mode " + std::to_string(mode));
    return A_Err_NONE;
}

// A composition time given in the mode asked for.
A_Time LayerATime(const LayerInComp& at, AEGP_LTimeMode mode, double compTime) {
    const double t = mode == AEGP_LTimeMode_LayerTime ? CompTimeToLayerTime(*at.layer, compTime) : compTime;
    return ToATime(t, CompTimeScale(*at.comp));
}

A_Err GetLayerCurrentTime(AEGP_LayerH layerH, AEGP_LTimeMode time_mode, A_Time* curr_timePT) {
    return GuardCall("AEGP_GetLayerCurrentTime", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerCurrentTime", curr_timePT);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerCurrentTime", layerH, &at)) return err;
        if (A_Err err = CheckTimeMode("AEGP_GetLayerCurrentTime", time_mode)) return err;
        *curr_timePT = LayerATime(at, time_mode, g_host.currentTime);
        return A_Err_NONE;
    });
}

A_Err GetLayerInPoint(AEGP_LayerH layerH, AEGP_LTimeMode time_mode, A_Time* in_pointPT) {
    return GuardCall("AEGP_GetLayerInPoint", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerInPoint", in_pointPT);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerInPoint", layerH, &at)) return err;
        if (A_Err err = CheckTimeMode("AEGP_GetLayerInPoint", time_mode)) return err;
        *in_pointPT = LayerATime(at, time_mode, at.layer->inPoint);
        return A_Err_NONE;
    });
}

// In layer time a stretched layer lasts its duration over the stretch.
A_Err GetLayerDuration(AEGP_LayerH layerH, AEGP_LTimeMode time_mode, A_Time* durationPT) {
    return GuardCall("AEGP_GetLayerDuration", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerDuration", durationPT);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerDuration", layerH, &at)) return err;
        if (A_Err err = CheckTimeMode("AEGP_GetLayerDuration", time_mode)) return err;
        const double duration =
            time_mode == AEGP_LTimeMode_LayerTime ? at.layer->duration / at.layer->stretch : at.layer->duration;
        *durationPT = ToATime(duration, CompTimeScale(*at.comp));
        return A_Err_NONE;
    });
}

A_Err SetLayerInPointAndDuration(AEGP_LayerH layerH, AEGP_LTimeMode time_mode, const A_Time* in_pointPT,
                                 const A_Time* durationPT) {
    return GuardCall("AEGP_SetLayerInPointAndDuration", [&]() -> A_Err {
        const char* call = "AEGP_SetLayerInPointAndDuration";
        LayerInComp at;
        if (A_Err err = ResolveLayer(call, layerH, &at)) return err;
        if (A_Err err = CheckTimeMode(call, time_mode)) return err;
        double in = 0.0, duration = 0.0;
        if (!in_pointPT || !durationPT || !ToSeconds(*in_pointPT, &in) || !ToSeconds(*durationPT, &duration))
            return Refuse(call, "missing time or time scale 0");
        if (duration <= 0.0) return Refuse(call, "duration must be positive");
        if (time_mode == AEGP_LTimeMode_LayerTime) {
            in = LayerTimeToCompTime(*at.layer, in);
            duration *= at.layer->stretch;
        }
        at.layer->inPoint = in;
        at.layer->duration = duration;
        return A_Err_NONE;
    });
}

A_Err GetLayerToWorldXform(AEGP_LayerH layerH, const A_Time* comp_timeP, A_Matrix4* transform) {
    return GuardCall("AEGP_GetLayerToWorldXform", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerToWorldXform", transform);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerToWorldXform", layerH, &at)) return err;
        double seconds = 0.0;
        if (!comp_timeP || !ToSeconds(*comp_timeP, &seconds))
            return Refuse("AEGP_GetLayerToWorldXform", "missing time or time scale 0");
        const Matrix4 m = HostLayerToWorld(*g_host.project, *at.comp, *at.layer, seconds);
        for (int r = 0; r < 4; ++r)
            for (int c = 0; c < 4; ++c) transform->mat[r][c] = m.m[r][c];
        return A_Err_NONE;
    });
}

A_Err GetLayerID(AEGP_LayerH layerH, AEGP_LayerIDVal* id_valP) {
    return GuardCall("AEGP_GetLayerID", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerID", id_valP);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerID", layerH, &at)) return err;
        *id_valP = at.layer->id;
        return A_Err_NONE;
    });
}

A_Err GetLayerFromLayerID(AEGP_CompH parent_compH, AEGP_LayerIDVal id, AEGP_LayerH* layerPH) {
    return GuardCall("AEGP_GetLayerFromLayerID", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerFromLayerID", layerPH);
        *layerPH = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveComp("AEGP_GetLayerFromLayerID", parent_compH, &comp)) return err;
        Layer* layer = FindLayer(*comp, id);
        if (!layer) return Refuse("AEGP_GetLayerFromLayerID", "no layer " + std::to_string(id) + " in composition");
        *layerPH = LayerHandle(*layer);
        return A_Err_NONE;
    });
}

A_Err GetLayerObjectType(AEGP_LayerH layerH, AEGP_ObjectType* object_type) {
    return GuardCall("AEGP_GetLayerObjectType", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerObjectType", object_type);
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerObjectType", layerH, &at)) return err;
        *object_type = static_cast<AEGP_ObjectType>(at.layer->objectType);
        return A_Err_NONE;
    });
}

A_Err GetLayerParent(AEGP_LayerH layerH, AEGP_LayerH* parent_layerPH) {
    return GuardCall("AEGP_GetLayerParent", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLayerParent", parent_layerPH);
        *parent_layerPH = nullptr;
        LayerInComp at;
        if (A_Err err = ResolveLayer("AEGP_GetLayerParent", layerH, &at)) return err;
        if (Layer* parent = FindParentLayer(*g_host.project, *at.layer)) *parent_layerPH = LayerHandle(*parent);
        return A_Err_NONE;
    });
}

// A composition may not hold itself, directly or through its layers' sources.
// Each composition is looked into once, with a stack of its own: a chain of thousands of
// precompositions, or compositions that each use the next twice, are walked in linear time.
bool Contains(const Project& project, const Item& comp, int itemId) {
    std::set<int> seen{comp.id};
    std::vector<const Item*> stack{&comp};
    while (!stack.empty()) {
        const Item* at = stack.back();
        stack.pop_back();
        if (at->id == itemId) return true;
        for (const auto& layer : at->comp.layers) {
            const Item* source = layer->sourceId ? FindItem(project, layer->sourceId) : nullptr;
            if (source && source->kind == ItemKind::Composition && seen.insert(source->id).second)
                stack.push_back(source);
        }
    }
    return false;
}

A_Err IsAddLayerValid(AEGP_ItemH item_to_addH, AEGP_CompH into_compH, A_Boolean* validPB) {
    return GuardCall("AEGP_IsAddLayerValid", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_IsAddLayerValid", validPB);
        *validPB = false;
        Item* item = nullptr;
        Item* comp = nullptr;
        if (A_Err err = ResolveItem("AEGP_IsAddLayerValid", item_to_addH, &item)) return err;
        if (A_Err err = ResolveComp("AEGP_IsAddLayerValid", into_compH, &comp)) return err;
        *validPB = item->kind != ItemKind::Folder &&
                   !(item->kind == ItemKind::Composition && Contains(*g_host.project, *item, comp->id));
        return A_Err_NONE;
    });
}

A_Err AddLayer(AEGP_ItemH item_to_addH, AEGP_CompH into_compH, AEGP_LayerH* added_layerPH0) {
    return GuardCall("AEGP_AddLayer", [&]() -> A_Err {
        if (added_layerPH0) *added_layerPH0 = nullptr;
        A_Boolean valid = false;
        if (A_Err err = IsAddLayerValid(item_to_addH, into_compH, &valid)) return err;
        if (!valid) return Refuse("AEGP_AddLayer", "the item cannot be a layer of this composition");
        Item* item = nullptr;
        Item* comp = nullptr;
        ResolveItem("AEGP_AddLayer", item_to_addH, &item);
        ResolveComp("AEGP_AddLayer", into_compH, &comp);
        Layer& layer = aehost::AddLayer(*g_host.project, *comp, *item);
        Trace("made layer of " + Quoted(item->name) + " in composition " + Quoted(comp->name));
        CountImportedLayer();
        if (added_layerPH0) *added_layerPH0 = LayerHandle(layer);
        return A_Err_NONE;
    });
}

const AEGP_LayerSuite14 g_layerSuite = {
    GetCompNumLayers,  GetCompLayerByIndex, GetActiveLayer,     GetLayerIndex,
    GetLayerSourceItem, GetLayerParentComp, GetLayerName,       GetLayerFlags,
    SetLayerFlag,      IsLayer3D,           GetLayerCurrentTime, GetLayerInPoint,
    GetLayerDuration,  SetLayerInPointAndDuration, GetLayerToWorldXform, GetLayerID,
    GetLayerFromLayerID, GetLayerObjectType, GetLayerParent,    IsAddLayerValid,
    AddLayer};

}  // namespace

const AEGP_LayerSuite14* LayerSuite() { return &g_layerSuite; }

}  // namespace aehost
