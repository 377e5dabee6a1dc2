// The utility suite: messages, undo groups, the plug-in's registration,
// scripts and the host's folders.
#include "aehost/core/host.h"
#include "aehost/core/memory_suite.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"

namespace aehost {

namespace {

PluginRecord* FindPlugin(AEGP_PluginID id) {
    for (PluginRecord& plugin : g_host.plugins)
        if (plugin.id == id) return &plugin;
    return nullptr;
}

A_Err ReportInfo(AEGP_PluginID plugin_id, const A_char* info_stringZ) {
    return GuardCall("AEGP_ReportInfo", [&]() -> A_Err {
        if (!FindPlugin(plugin_id)) return Refuse("AEGP_ReportInfo", "unknown plug-in id");
        if (!info_stringZ) return Refuse("AEGP_ReportInfo", "null text");
        ShowMessage(Cp1252ToUtf8(info_stringZ));
        return A_Err_NONE;
    });
}

A_Err ReportInfoUnicode(AEGP_PluginID plugin_id, const A_UTF16Char* info_stringZ) {
    return GuardCall("AEGP_ReportInfoUnicode", [&]() -> A_Err {
        if (!FindPlugin(plugin_id)) return Refuse("AEGP_ReportInfoUnicode", "unknown plug-in id");
        if (!info_stringZ) return Refuse("AEGP_ReportInfoUnicode", "null text");
        ShowMessage(Utf16zToUtf8(info_stringZ));
        return A_Err_NONE;
    });
}

A_Err StartUndoGroup(const A_char* undo_nameZ) {
    return GuardCall("AEGP_StartUndoGroup", [&]() -> A_Err {
        g_host.undoStack.push_back(undo_nameZ ? Cp1252ToUtf8(undo_nameZ) : std::string());
        Trace("undo group " + Quoted(g_host.undoStack.back()) + " begun");
        return A_Err_NONE;
    });
}

A_Err EndUndoGroup() {
    return GuardCall("AEGP_EndUndoGroup", [&]() -> A_Err {
        if (g_host.undoStack.empty()) return Refuse("AEGP_EndUndoGroup", "no undo group is open");
        g_host.undoStack.pop_back();
        return A_Err_NONE;
    });
}

// The host gives a plug-in its id before its entry point runs; registering
// names it and keeps its refcon for the hooks, and hands back the same id.
A_Err RegisterWithAEGP(AEGP_GlobalRefcon global_refcon, const A_char* plugin_nameZ, AEGP_PluginID* plugin_id) {
    return GuardCall("AEGP_RegisterWithAEGP", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_RegisterWithAEGP", plugin_id);
        if (g_host.plugins.empty()) return Refuse("AEGP_RegisterWithAEGP", "no plug-in is being loaded");
        PluginRecord& plugin = g_host.plugins.back();
        plugin.name = plugin_nameZ ? Cp1252ToUtf8(plugin_nameZ) : std::string();
        plugin.refcon = global_refcon;
        *plugin_id = plugin.id;
        return A_Err_NONE;
    });
}

A_Err ExecuteScript(AEGP_PluginID plugin_id, const A_char* scriptZ, A_Boolean platform_encodingB,
                    AEGP_MemHandle* resultPH0, AEGP_MemHandle* error_stringPH0) {
    return GuardCall("AEGP_ExecuteScript", [&]() -> A_Err {
        if (resultPH0) *resultPH0 = nullptr;
        if (error_stringPH0) *error_stringPH0 = nullptr;
        if (!FindPlugin(plugin_id)) return Refuse("AEGP_ExecuteScript", "unknown plug-in id");
        if (!scriptZ) return Refuse("AEGP_ExecuteScript", "null script");
        std::string source = platform_encodingB ? Cp1252ToUtf8(scriptZ) : std::string(scriptZ);
        std::string result;
        std::string error;
        bool ok = false;
        if (g_host.runScript) {
            Trace("script run: " + FirstLine(source));
            ok = g_host.runScript(source, &result, &error);
            if (!ok) Trace("script failed: " + error);
        } else {
            error = "this host runs no scripts";
        }
        if (resultPH0) *resultPH0 = NewBytesHandle(plugin_id, ok ? result : std::string());
        if (error_stringPH0) *error_stringPH0 = NewBytesHandle(plugin_id, ok ? std::string() : error);
        return ok ? A_Err_NONE : A_Err_GENERIC;
    });
}

A_Err GetPluginPaths(AEGP_PluginID plugin_id, AEGP_GetPathTypes path_type, AEGP_MemHandle* unicode_path_memH) {
    return GuardCall("AEGP_GetPluginPaths", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetPluginPaths", unicode_path_memH);
        *unicode_path_memH = nullptr;
        if (!FindPlugin(plugin_id)) return Refuse("AEGP_GetPluginPaths", "unknown plug-in id");
        std::string path;
        switch (path_type) {
            case AEGP_GetPathTypes_PLUGIN: path = g_host.pluginDirs[plugin_id]; break;
            case AEGP_GetPathTypes_USER_PLUGIN:
            case AEGP_GetPathTypes_ALLUSER_PLUGIN: path = g_host.appDir + "/Plug-ins"; break;
            case AEGP_GetPathTypes_APP: path = g_host.appDir; break;
            default: return Refuse("AEGP_GetPluginPaths", "unknown path type " + std::to_string(path_type));
        }
        *unicode_path_memH = NewTextHandle(plugin_id, Utf8ToUtf16(path));
        return A_Err_NONE;
    });
}

const AEGP_UtilitySuite13 g_utilitySuite = {ReportInfo,       ReportInfoUnicode, StartUndoGroup, EndUndoGroup,
                                            RegisterWithAEGP, ExecuteScript,     GetPluginPaths};

}  // namespace

const AEGP_UtilitySuite13* UtilitySuite() { return &g_utilitySuite; }

}  // namespace aehost
