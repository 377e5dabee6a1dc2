// Registration suites: hooks, menu commands and import flavors.
#include <algorithm>
#include <cctype>
#include <cstring>

#include "aehost/core/hooks.h"
#include "aehost/core/host.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"

namespace aehost {

namespace {

// A menu as the trace names it.
std::string MenuName(AEGP_MenuID menu) {
    switch (menu) {
        case AEGP_Menu_FILE: return "File";
        case AEGP_Menu_EXPORT: return "File > Export";
        case AEGP_Menu_IMPORT: return "File > Import";
        default: return "menu " + std::to_string(menu);
    }
}

bool KnownPlugin(AEGP_PluginID id) {
    return std::any_of(g_host.plugins.begin(), g_host.plugins.end(),
                       [&](const PluginRecord& p) { return p.id == id; });
}

MenuCommand* FindCommand(AEGP_Command command) {
    for (MenuCommand& entry : g_host.commands)
        if (entry.id == command) return &entry;
    return nullptr;
}

A_Err RegisterCommandHook(AEGP_PluginID plugin_id, AEGP_HookPriority hook_priority, AEGP_Command command,
                          AEGP_CommandHook hook, AEGP_CommandRefcon refcon) {
    return GuardCall("AEGP_RegisterCommandHook", [&]() -> A_Err {
        if (!KnownPlugin(plugin_id)) return Refuse("AEGP_RegisterCommandHook", "unknown plug-in id");
        if (!hook) return Refuse("AEGP_RegisterCommandHook", "null hook");
        if (hook_priority != AEGP_HP_BeforeAE && hook_priority != AEGP_HP_AfterAE)
            return Refuse("AEGP_RegisterCommandHook", "hook priority must be 1 or 2");
        g_host.commandHooks.push_back({plugin_id, hook_priority, command, hook, refcon});
        return A_Err_NONE;
    });
}

A_Err RegisterUpdateMenuHook(AEGP_PluginID plugin_id, AEGP_UpdateMenuHook hook, AEGP_UpdateMenuRefcon refcon) {
    return GuardCall("AEGP_RegisterUpdateMenuHook", [&]() -> A_Err {
        if (!KnownPlugin(plugin_id)) return Refuse("AEGP_RegisterUpdateMenuHook", "unknown plug-in id");
        if (!hook) return Refuse("AEGP_RegisterUpdateMenuHook", "null hook");
        g_host.updateMenuHooks.push_back({plugin_id, hook, refcon});
        return A_Err_NONE;
    });
}

A_Err RegisterDeathHook(AEGP_PluginID plugin_id, AEGP_DeathHook hook, AEGP_DeathRefcon refcon) {
    return GuardCall("AEGP_RegisterDeathHook", [&]() -> A_Err {
        if (!KnownPlugin(plugin_id)) return Refuse("AEGP_RegisterDeathHook", "unknown plug-in id");
        if (!hook) return Refuse("AEGP_RegisterDeathHook", "null hook");
        g_host.deathHooks.push_back({plugin_id, hook, refcon});
        return A_Err_NONE;
    });
}

const AEGP_RegisterSuite7 g_registerSuite = {RegisterCommandHook, RegisterUpdateMenuHook, RegisterDeathHook};

A_Err GetUniqueCommand(AEGP_Command* unique_commandP) {
    return GuardCall("AEGP_GetUniqueCommand", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetUniqueCommand", unique_commandP);
        MenuCommand entry;
        entry.id = g_host.nextCommand++;
        g_host.commands.push_back(entry);
        *unique_commandP = entry.id;
        return A_Err_NONE;
    });
}

A_Err InsertMenuCommand(AEGP_Command command, const A_char* nameZ, AEGP_MenuID menu_id, A_long after_item) {
    return GuardCall("AEGP_InsertMenuCommand", [&]() -> A_Err {
        MenuCommand* entry = FindCommand(command);
        if (!entry) return Refuse("AEGP_InsertMenuCommand", "command was not given by AEGP_GetUniqueCommand");
        if (!nameZ || !*nameZ) return Refuse("AEGP_InsertMenuCommand", "empty menu text");
        if (entry->inserted) return Refuse("AEGP_InsertMenuCommand", "command is already in a menu");
        if (after_item < AEGP_MENU_INSERT_SORTED) return Refuse("AEGP_InsertMenuCommand", "bad menu position");
        entry->inserted = true;
        entry->text = Cp1252ToUtf8(nameZ);
        entry->menu = menu_id;
        Trace("menu command " + std::to_string(command) + " " + Quoted(entry->text) + " inserted in " +
              MenuName(menu_id));
        return A_Err_NONE;
    });
}

A_Err RemoveMenuCommand(AEGP_Command command) {
    return GuardCall("AEGP_RemoveMenuCommand", [&]() -> A_Err {
        MenuCommand* entry = FindCommand(command);
        if (!entry || !entry->inserted) return Refuse("AEGP_RemoveMenuCommand", "command is not in a menu");
        entry->inserted = false;
        return A_Err_NONE;
    });
}

A_Err SetMenuCommandName(AEGP_Command command, const A_char* nameZ) {
    return GuardCall("AEGP_SetMenuCommandName", [&]() -> A_Err {
        MenuCommand* entry = FindCommand(command);
        if (!entry || !entry->inserted) return Refuse("AEGP_SetMenuCommandName", "command is not in a menu");
        if (!nameZ || !*nameZ) return Refuse("AEGP_SetMenuCommandName", "empty menu text");
        entry->text = Cp1252ToUtf8(nameZ);
        return A_Err_NONE;
    });
}

A_Err SetCommandEnabled(const char* call, AEGP_Command command, bool enabled) {
    MenuCommand* entry = FindCommand(command);
    if (!entry) return Refuse(call, "unknown command " + std::to_string(command));
    entry->enabled = enabled;
    return A_Err_NONE;
}

A_Err EnableCommand(AEGP_Command command) {
    return GuardCall("AEGP_EnableCommand", [&] { return SetCommandEnabled("AEGP_EnableCommand", command, true); });
}

A_Err DisableCommand(AEGP_Command command) {
    return GuardCall("AEGP_DisableCommand", [&] { return SetCommandEnabled("AEGP_DisableCommand", command, false); });
}

A_Err DoCommand(AEGP_Command command) {
    return GuardCall("AEGP_DoCommand", [&]() -> A_Err {
        if (!FindCommand(command)) return Refuse("AEGP_DoCommand", "unknown command " + std::to_string(command));
        bool handled = false;
        return RunCommand(command, &handled);
    });
}

const AEGP_CommandSuite1 g_commandSuite = {GetUniqueCommand, InsertMenuCommand, RemoveMenuCommand,
                                           SetMenuCommandName, EnableCommand, DisableCommand,
                                           DoCommand};

ImportFlavor* FindFlavor(AE_FIM_ImportFlavorRef ref) {
    for (ImportFlavor& flavor : g_host.flavors)
        if (flavor.ref == ref) return &flavor;
    return nullptr;
}

A_Err RegisterImportFlavor(const A_char* nameZ, AE_FIM_ImportFlavorRef* flavorP) {
    return GuardCall("AEGP_RegisterImportFlavor", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_RegisterImportFlavor", flavorP);
        if (!nameZ || !*nameZ) return Refuse("AEGP_RegisterImportFlavor", "empty flavor name");
        ImportFlavor flavor;
        flavor.ref = static_cast<AE_FIM_ImportFlavorRef>(g_host.flavors.size() + 1);
        flavor.name = Cp1252ToUtf8(nameZ);
        g_host.flavors.push_back(flavor);
        Trace("import flavor " + Quoted(flavor.name) + " registered");
        *flavorP = flavor.ref;
        return A_Err_NONE;
    });
}

// The extension of a file kind record: its letters in file order in the
// first word, high byte first, up to a zero byte.
std::string KindExtension(const AEIO_FileKind& kind) {
    std::string ext;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const char c = static_cast<char>((kind.type >> shift) & 0xFF);
        if (c == 0) break;
        ext += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return ext;
}

std::string ExtensionText(const AEIO_FileExtension& extension) {
    const char* text = extension.dot_extension;
    const std::size_t length = strnlen(text, sizeof extension.dot_extension);
    std::string ext(text, length);
    if (!ext.empty() && ext[0] == '.') ext.erase(0, 1);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

void AddExtension(ImportFlavor& flavor, const std::string& ext) {
    if (!ext.empty() && std::find(flavor.extensions.begin(), flavor.extensions.end(), ext) == flavor.extensions.end())
        flavor.extensions.push_back(ext);
}

A_Err RegisterImportFlavorFileTypes(AE_FIM_ImportFlavorRef flavor_ref, A_long num_file_kinds,
                                    const AEIO_FileKind* file_kinds, A_long num_extensions,
                                    const AEIO_FileExtension* extensions) {
    return GuardCall("AEGP_RegisterImportFlavorFileTypes", [&]() -> A_Err {
        const char* call = "AEGP_RegisterImportFlavorFileTypes";
        ImportFlavor* flavor = FindFlavor(flavor_ref);
        if (!flavor) return Refuse(call, "unknown import flavor");
        if (num_file_kinds < 0 || num_extensions < 0 || (num_file_kinds > 0 && !file_kinds) ||
            (num_extensions > 0 && !extensions))
            return Refuse(call, "counts do not match the arrays");
        for (A_long i = 0; i < num_file_kinds; ++i) AddExtension(*flavor, KindExtension(file_kinds[i]));
        for (A_long i = 0; i < num_extensions; ++i) AddExtension(*flavor, ExtensionText(extensions[i]));
        return A_Err_NONE;
    });
}

A_Err RegisterImportFlavorImportCallbacks(AE_FIM_ImportFlavorRef flavor_ref, A_long import_flags,
                                          const AE_FIM_ImportCallbacks* callbacks) {
    return GuardCall("AEGP_RegisterImportFlavorImportCallbacks", [&]() -> A_Err {
        const char* call = "AEGP_RegisterImportFlavorImportCallbacks";
        ImportFlavor* flavor = FindFlavor(flavor_ref);
        if (!flavor) return Refuse(call, "unknown import flavor");
        if (!callbacks || !callbacks->import_cb) return Refuse(call, "no import callback");
        flavor->callbacks = *callbacks;
        flavor->hasCallbacks = true;
        flavor->flags = import_flags;
        return A_Err_NONE;
    });
}

const AEGP_FileImportManagerSuite3 g_fimSuite = {RegisterImportFlavor, RegisterImportFlavorFileTypes,
                                                 RegisterImportFlavorImportCallbacks};

}  // namespace

const AEGP_RegisterSuite7* RegisterSuite() { return &g_registerSuite; }
const AEGP_CommandSuite1* CommandSuite() { return &g_commandSuite; }
const AEGP_FileImportManagerSuite3* FileImportManagerSuite() { return &g_fimSuite; }

}  // namespace aehost
