#include "aehost/core/hooks.h"

#include <algorithm>
#include <cctype>

#include "aehost/core/model_handles.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"
#include "aehost/core/window_system.h"

namespace aehost {

namespace {

AEGP_GlobalRefcon PluginRefcon(AEGP_PluginID id) {
    for (const PluginRecord& plugin : g_host.plugins)
        if (plugin.id == id) return plugin.refcon;
    return nullptr;
}

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string WithoutEllipsis(std::string text) {
    if (text.size() >= 3 && text.compare(text.size() - 3, 3, "...") == 0) text.resize(text.size() - 3);
    return text;
}

}  // namespace

const MenuCommand* FindMenuCommand(AEGP_Command command) {
    for (const MenuCommand& entry : g_host.commands)
        if (entry.id == command) return &entry;
    return nullptr;
}

const MenuCommand* FindMenuCommandByText(const std::string& text) {
    for (const MenuCommand& entry : g_host.commands)
        if (entry.inserted && WithoutEllipsis(entry.text) == WithoutEllipsis(text)) return &entry;
    return nullptr;
}

A_Err RunUpdateMenuHooks(AEGP_WindowType window) {
    A_Err first = A_Err_NONE;
    // A hook may register more hooks; walk over a copy.
    const std::vector<UpdateMenuHookEntry> hooks = g_host.updateMenuHooks;
    for (const UpdateMenuHookEntry& entry : hooks) {
        const A_Err err = entry.hook(PluginRefcon(entry.plugin), entry.refcon, window);
        if (err && !first) first = err;
    }
    return first;
}

A_Err RunCommand(AEGP_Command command, bool* handled) {
    const LookupScope lookups;
    // The closed menu leaves its place on the main window to be repainted: work pending on the
    // main thread, which a hook that blocks the thread serves, or the host once it returns.
    PostMainThreadWork([] { Trace("the main window repainted"); });
    const std::vector<CommandHookEntry> hooks = g_host.commandHooks;
    A_Boolean handledB = false;
    A_Err first = A_Err_NONE;
    for (AEGP_HookPriority priority : {AEGP_HP_BeforeAE, AEGP_HP_AfterAE}) {
        for (const CommandHookEntry& entry : hooks) {
            if (entry.priority != priority || (entry.command != 0 && entry.command != command)) continue;
            A_Boolean handledNow = false;
            const A_Err err =
                entry.hook(PluginRefcon(entry.plugin), entry.refcon, command, priority, handledB, &handledNow);
            if (err && !first) first = err;
            if (handledNow) handledB = true;
        }
    }
    *handled = handledB != 0;
    RunPendingMainThreadWork();
    return first;
}

A_Err RunDeathHooks() {
    const std::vector<DeathHookEntry> hooks = std::move(g_host.deathHooks);
    g_host.deathHooks.clear();
    A_Err first = A_Err_NONE;
    for (const DeathHookEntry& entry : hooks) {
        const A_Err err = entry.hook(PluginRefcon(entry.plugin), entry.refcon);
        if (err && !first) first = err;
    }
    return first;
}

const ImportFlavor* FlavorForFile(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    const std::size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return nullptr;
    const std::string ext = Lower(path.substr(dot + 1));
    for (const ImportFlavor& flavor : g_host.flavors)
        if (flavor.hasCallbacks && std::find(flavor.extensions.begin(), flavor.extensions.end(), ext) !=
                                       flavor.extensions.end())
            return &flavor;
    return nullptr;
}

A_Err VerifyImport(const ImportFlavor& flavor, const std::string& path) {
    if (!flavor.callbacks.verify_cb) return A_Err_NONE;
    const std::u16string units = Utf8ToUtf16(path);
    return flavor.callbacks.verify_cb(reinterpret_cast<const A_UTF16Char*>(units.c_str()), flavor.callbacks.refcon);
}

A_Err RunImport(const ImportFlavor& flavor, const std::string& path) {
    const LookupScope lookups;
    const std::u16string units = Utf8ToUtf16(path);
    return flavor.callbacks.import_cb(reinterpret_cast<const A_UTF16Char*>(units.c_str()), flavor.callbacks.refcon);
}

}  // namespace aehost
