// The item suite: folders, footage and compositions of the project, and the
// active item (the composition the user has open).
#include "aehost/core/host_time.h"
#include "aehost/core/memory_suite.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"
#include "aehost/model/edit.h"

namespace aehost {

namespace {

A_Err GetFirstProjItem(AEGP_ProjectH projH, AEGP_ItemH* itemPH) {
    return GuardCall("AEGP_GetFirstProjItem", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetFirstProjItem", itemPH);
        *itemPH = nullptr;
        if (A_Err err = ResolveProject("AEGP_GetFirstProjItem", projH)) return err;
        *itemPH = ItemHandle(*g_host.project->items.front());
        return A_Err_NONE;
    });
}

A_Err GetNextProjItem(AEGP_ProjectH projH, AEGP_ItemH itemH, AEGP_ItemH* next_itemPH) {
    return GuardCall("AEGP_GetNextProjItem", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetNextProjItem", next_itemPH);
        *next_itemPH = nullptr;
        if (A_Err err = ResolveProject("AEGP_GetNextProjItem", projH)) return err;
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetNextProjItem", itemH, &item)) return err;
        const auto& items = g_host.project->items;
        for (std::size_t i = 0; i + 1 < items.size(); ++i)
            if (items[i].get() == item) *next_itemPH = ItemHandle(*items[i + 1]);
        return A_Err_NONE;
    });
}

A_Err GetActiveItem(AEGP_ItemH* itemPH) {
    return GuardCall("AEGP_GetActiveItem", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetActiveItem", itemPH);
        *itemPH = nullptr;
        if (!g_host.project || g_host.activeItemId < 0) return A_Err_NONE;
        if (Item* item = FindItem(*g_host.project, g_host.activeItemId)) *itemPH = ItemHandle(*item);
        return A_Err_NONE;
    });
}

A_Err GetItemType(AEGP_ItemH itemH, AEGP_ItemType* item_typeP) {
    return GuardCall("AEGP_GetItemType", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemType", item_typeP);
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetItemType", itemH, &item)) return err;
        *item_typeP = static_cast<AEGP_ItemType>(item->kind);
        return A_Err_NONE;
    });
}

A_Err GetItemName(AEGP_PluginID plugin_id, AEGP_ItemH itemH, AEGP_MemHandle* unicode_namePH) {
    return GuardCall("AEGP_GetItemName", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemName", unicode_namePH);
        *unicode_namePH = nullptr;
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetItemName", itemH, &item)) return err;
        *unicode_namePH = NewTextHandle(plugin_id, Utf8ToUtf16(item->name));
        return A_Err_NONE;
    });
}

A_Err SetItemName(AEGP_ItemH itemH, const A_UTF16Char* nameZ) {
    return GuardCall("AEGP_SetItemName", [&]() -> A_Err {
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_SetItemName", itemH, &item)) return err;
        if (!nameZ) return Refuse("AEGP_SetItemName", "null name");
        item->name = Utf16zToUtf8(nameZ);
        return A_Err_NONE;
    });
}

A_Err GetItemID(AEGP_ItemH itemH, A_long* item_idPL) {
    return GuardCall("AEGP_GetItemID", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemID", item_idPL);
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetItemID", itemH, &item)) return err;
        *item_idPL = item->id;
        return A_Err_NONE;
    });
}

A_Err GetItemParentFolder(AEGP_ItemH itemH, AEGP_ItemH* parent_folderPH) {
    return GuardCall("AEGP_GetItemParentFolder", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemParentFolder", parent_folderPH);
        *parent_folderPH = nullptr;
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetItemParentFolder", itemH, &item)) return err;
        if (item->id == kRootFolderId) return A_Err_NONE;
        if (Item* folder = FindItem(*g_host.project, item->folderId)) *parent_folderPH = ItemHandle(*folder);
        return A_Err_NONE;
    });
}

A_Err GetItemDuration(AEGP_ItemH itemH, A_Time* durationPT) {
    return GuardCall("AEGP_GetItemDuration", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemDuration", durationPT);
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetItemDuration", itemH, &item)) return err;
        *durationPT = ToATime(item->duration, CompTimeScale(*item));
        return A_Err_NONE;
    });
}

A_Err GetItemDimensions(AEGP_ItemH itemH, A_long* widthPL, A_long* heightPL) {
    return GuardCall("AEGP_GetItemDimensions", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemDimensions", widthPL);
        AEHOST_REQUIRE_OUT("AEGP_GetItemDimensions", heightPL);
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetItemDimensions", itemH, &item)) return err;
        if (item->kind == ItemKind::Folder) return Refuse("AEGP_GetItemDimensions", "a folder has no dimensions");
        *widthPL = item->width;
        *heightPL = item->height;
        return A_Err_NONE;
    });
}

A_Err GetItemPixelAspectRatio(AEGP_ItemH itemH, A_Ratio* pix_aspect_ratioPRt) {
    return GuardCall("AEGP_GetItemPixelAspectRatio", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetItemPixelAspectRatio", pix_aspect_ratioPRt);
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetItemPixelAspectRatio", itemH, &item)) return err;
        *pix_aspect_ratioPRt = ToRatio(item->pixelAspect);
        return A_Err_NONE;
    });
}

A_Err CreateNewFolder(const A_UTF16Char* nameZ, AEGP_ItemH parent_folderH0, AEGP_ItemH* new_folderPH) {
    return GuardCall("AEGP_CreateNewFolder", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_CreateNewFolder", new_folderPH);
        *new_folderPH = nullptr;
        Project* project = nullptr;
        if (A_Err err = OpenProject("AEGP_CreateNewFolder", &project)) return err;
        if (!nameZ) return Refuse("AEGP_CreateNewFolder", "null name");
        int folderId = kRootFolderId;
        if (parent_folderH0) {
            Item* parent = nullptr;
            if (A_Err err = ResolveItem("AEGP_CreateNewFolder", parent_folderH0, &parent)) return err;
            if (parent->kind != ItemKind::Folder) return Refuse("AEGP_CreateNewFolder", "parent is not a folder");
            folderId = parent->id;
        }
        const Item& folder = AddFolder(*project, Utf16zToUtf8(nameZ), folderId);
        Trace("made folder " + Quoted(folder.name));
        *new_folderPH = ItemHandle(folder);
        return A_Err_NONE;
    });
}

const AEGP_ItemSuite13 g_itemSuite = {GetFirstProjItem, GetNextProjItem,     GetActiveItem,   GetItemType,
                                      GetItemName,      SetItemName,         GetItemID,       GetItemParentFolder,
                                      GetItemDuration,  GetItemDimensions,   GetItemPixelAspectRatio,
                                      CreateNewFolder};

}  // namespace

const AEGP_ItemSuite13* ItemSuite() { return &g_itemSuite; }

}  // namespace aehost
