// Handles of the project's objects. Items, compositions, footage and layers
// are named by their model ids, so their handles stay the same for the life
// of the object; each look-up checks that the object still exists and is of
// the kind the call expects, and refuses the call otherwise.
#pragma once

#include "aehost/core/host.h"

namespace aehost {

AEGP_ProjectH ProjectHandle();
AEGP_ItemH ItemHandle(const Item& item);
AEGP_CompH CompHandle(const Item& comp);
AEGP_FootageH FootageHandle(const Item& footage);
AEGP_LayerH LayerHandle(const Layer& layer);

struct LayerInComp {
    Item* comp = nullptr;
    Layer* layer = nullptr;
};

// Each gives A_Err_NONE and the object, or the error of a refused call.
A_Err OpenProject(const char* call, Project** project);
A_Err ResolveProject(const char* call, AEGP_ProjectH projectH);
A_Err ResolveItem(const char* call, AEGP_ItemH itemH, Item** item);
A_Err ResolveComp(const char* call, AEGP_CompH compH, Item** comp);
A_Err ResolveFootage(const char* call, AEGP_FootageH footageH, Item** footage);
A_Err ResolveLayer(const char* call, AEGP_LayerH layerH, LayerInComp* found);

// The layer with this id in any composition of the project.
LayerInComp FindLayerById(Project& project, int layerId);

// The layer's parent in its composition, or null.
Layer* FindParentLayer(Project& project, const Layer& layer);

// The layer-to-world matrix as AEGP_GetLayerToWorldXform gives it, remembered with its parents'
// until the project changes.
Matrix4 HostLayerToWorld(Project& project, const Item& comp, const Layer& layer, double compTime);

// Layers by id and world matrices are remembered between suite calls while a LookupScope
// stands: while a hook of the plug-in runs, in which only the plug-in changes the project and
// only through the suites. A call that may change the project (anything but a Get, Is, Does,
// Can, Dispose, a memory handle, a message or a progress update) forgets the matrices before and
// after it runs; the layers by id are indexed again once a layer was made. Outside a scope
// every look-up reads the project afresh.
struct LookupScope {
    LookupScope();
    ~LookupScope();
    LookupScope(const LookupScope&) = delete;
    LookupScope& operator=(const LookupScope&) = delete;
};
bool IsReadingCall(const char* call);
void ForgetModelLookups();

}  // namespace aehost
