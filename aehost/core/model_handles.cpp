#include "aehost/core/model_handles.h"

#include <cstdint>
#include <cstring>

#include "aehost/model/model_lookups.h"
#include "aehost/model/transform.h"

namespace aehost {

AEGP_ProjectH ProjectHandle() { return MakeHandle<AEGP_ProjectH>(IdHandle(HandleKind::Project, 0)); }
AEGP_ItemH ItemHandle(const Item& item) { return MakeHandle<AEGP_ItemH>(IdHandle(HandleKind::Item, item.id)); }
AEGP_CompH CompHandle(const Item& comp) { return MakeHandle<AEGP_CompH>(IdHandle(HandleKind::Comp, comp.id)); }
AEGP_FootageH FootageHandle(const Item& footage) {
    return MakeHandle<AEGP_FootageH>(IdHandle(HandleKind::Footage, footage.id));
}
AEGP_LayerH LayerHandle(const Layer& layer) { return MakeHandle<AEGP_LayerH>(IdHandle(HandleKind::Layer, layer.id)); }

A_Err OpenProject(const char* call, Project** project) {
    if (!g_host.project) return Refuse(call, "no project is open");
    *project = g_host.project;
    return A_Err_NONE;
}

A_Err ResolveProject(const char* call, AEGP_ProjectH projectH) {
    Project* project = nullptr;
    if (A_Err err = OpenProject(call, &project)) return err;
    if (projectH != ProjectHandle()) return Refuse(call, "not a project handle");
    return A_Err_NONE;
}

namespace {

A_Err ResolveItemId(const char* call, HandleKind kind, std::uintptr_t handle, Item** item, const char* what) {
    *item = nullptr;
    Project* project = nullptr;
    if (A_Err err = OpenProject(call, &project)) return err;
    const long id = IdOfHandle(kind, handle);
    Item* found = id >= 0 && id <= INT32_MAX ? FindItem(*project, static_cast<int>(id)) : nullptr;
    if (!found) return Refuse(call, std::string("not ") + what);
    *item = found;
    return A_Err_NONE;
}

}  // namespace

A_Err ResolveItem(const char* call, AEGP_ItemH itemH, Item** item) {
    return ResolveItemId(call, HandleKind::Item, HandleValue(itemH), item, "an item handle");
}

A_Err ResolveComp(const char* call, AEGP_CompH compH, Item** comp) {
    if (A_Err err = ResolveItemId(call, HandleKind::Comp, HandleValue(compH), comp, "a composition handle"))
        return err;
    if ((*comp)->kind != ItemKind::Composition) {
        *comp = nullptr;
        return Refuse(call, "not a composition handle");
    }
    return A_Err_NONE;
}

A_Err ResolveFootage(const char* call, AEGP_FootageH footageH, Item** footage) {
    if (A_Err err = ResolveItemId(call, HandleKind::Footage, HandleValue(footageH), footage, "a footage handle"))
        return err;
    if ((*footage)->kind != ItemKind::Footage) {
        *footage = nullptr;
        return Refuse(call, "not a footage handle");
    }
    return A_Err_NONE;
}

namespace {

ModelLookups g_lookups;
int g_lookupScopes = 0;  // look-ups are remembered only inside a scope

}  // namespace

LookupScope::LookupScope() {
    ForgetLookups(g_lookups);
    ++g_lookupScopes;
}

LookupScope::~LookupScope() {
    --g_lookupScopes;
    ForgetLookups(g_lookups);
}

LayerInComp FindLayerById(Project& project, int layerId) {
    if (g_lookupScopes > 0) {
        const LayerAndComp found = LookUpLayer(g_lookups, project, layerId);
        return {found.comp, found.layer};
    }
    for (const auto& item : project.items) {
        if (item->kind != ItemKind::Composition) continue;
        if (Layer* layer = FindLayer(*item, layerId)) return {item.get(), layer};
    }
    return {};
}

Layer* FindParentLayer(Project& project, const Layer& layer) {
    if (layer.parentId == 0) return nullptr;
    const LayerInComp child = FindLayerById(project, layer.id);
    const LayerInComp parent = FindLayerById(project, layer.parentId);
    return parent.comp != nullptr && parent.comp == child.comp ? parent.layer : nullptr;
}

Matrix4 HostLayerToWorld(Project& project, const Item& comp, const Layer& layer, double compTime) {
    if (g_lookupScopes > 0) return LookUpLayerToWorld(g_lookups, project, comp, layer, compTime);
    return LayerToWorld(project, comp, layer, compTime);
}

bool IsReadingCall(const char* call) {
    // Memory handles hold the plug-in's own data, never the project's.
    if (std::strstr(call, "MemHandle") != nullptr) return true;
    for (const char* prefix : {"AEGP_", "PF_"}) {
        if (std::strncmp(call, prefix, std::strlen(prefix)) == 0) call += std::strlen(prefix);
    }
    for (const char* verb : {"Get", "Is", "Does", "Can", "Dispose", "App", "ReportInfo"}) {
        if (std::strncmp(call, verb, std::strlen(verb)) == 0) return true;
    }
    return false;
}

void ForgetModelLookups() { ForgetLookups(g_lookups); }

A_Err ResolveLayer(const char* call, AEGP_LayerH layerH, LayerInComp* found) {
    *found = {};
    Project* project = nullptr;
    if (A_Err err = OpenProject(call, &project)) return err;
    const long id = IdOfHandle(HandleKind::Layer, HandleValue(layerH));
    if (id > 0 && id <= INT32_MAX) *found = FindLayerById(*project, static_cast<int>(id));
    if (!found->layer) return Refuse(call, "not a layer handle");
    return A_Err_NONE;
}

}  // namespace aehost
