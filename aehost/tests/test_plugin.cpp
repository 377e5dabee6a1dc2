// A small general plug-in that uses the host's suites from the plug-in's side,
// the way a real plug-in does: it registers a command under File > Export, an
// update-menu hook, a death hook and an import flavor for ".tst" files.
//
// Its export writes one line a layer of the active composition (index, name,
// 3D switch, the translation of its layer-to-world matrix at time 0) to the
// file chosen in a save dialog script. The environment variable
// AEHOST_TEST_PLUGIN picks a misbehaviour instead: "leak" (a memory handle
// never freed), "double-free", "unhandled" (the command is not taken).
// Its import reads a ".tst" file ("TST1", then one name a line) into a folder
// "Imported" with a composition "Scene" holding one null a name, and marks the
// selected layer, if any, with a marker "imported N names" at 1 s.
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "sdk/aegp.h"

namespace {

SPBasicSuite* g_pica = nullptr;
AEGP_PluginID g_id = 0;
AEGP_Command g_command = 0;

// A suite for the length of one scope.
template <class Suite>
struct Use {
    const char* name;
    A_long version;
    const Suite* suite = nullptr;
    Use(const char* n, A_long v) : name(n), version(v) {
        const void* table = nullptr;
        if (g_pica->AcquireSuite(name, version, &table) == A_Err_NONE) suite = static_cast<const Suite*>(table);
    }
    ~Use() {
        if (suite) g_pica->ReleaseSuite(name, version);
    }
    const Suite* operator->() const { return suite; }
};

std::u16string U16(const std::string& ascii) { return std::u16string(ascii.begin(), ascii.end()); }
const A_UTF16Char* Units(const std::u16string& s) { return reinterpret_cast<const A_UTF16Char*>(s.c_str()); }

std::string Scenario() {
    const char* value = std::getenv("AEHOST_TEST_PLUGIN");
    return value ? value : "";
}

// The text of a handle of UTF-16 (ASCII only here), freed.
std::string TakeAscii(AEGP_MemHandle handle) {
    Use<AEGP_MemorySuite1> mem(kAEGPMemorySuite, kAEGPMemorySuiteVersion1);
    void* data = nullptr;
    std::string text;
    if (mem->AEGP_LockMemHandle(handle, &data) == A_Err_NONE) {
        for (const A_UTF16Char* c = static_cast<const A_UTF16Char*>(data); *c; ++c) text += static_cast<char>(*c);
        mem->AEGP_UnlockMemHandle(handle);
    }
    mem->AEGP_FreeMemHandle(handle);
    return text;
}

std::string ChooseFile() {
    Use<AEGP_UtilitySuite11> util(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion11);
    Use<AEGP_MemorySuite1> mem(kAEGPMemorySuite, kAEGPMemorySuiteVersion1);
    AEGP_MemHandle result = nullptr, error = nullptr;
    const char* script =
        "var f = new File(\"/tmp/untitled.tst\").saveDlg(\"Export\", \"*.tst\"); f == null ? \"\" : f.fsName;";
    std::string path;
    if (util->AEGP_ExecuteScript(g_id, script, false, &result, &error) == A_Err_NONE) {
        void* data = nullptr;
        mem->AEGP_LockMemHandle(result, &data);
        path = static_cast<const char*>(data);
        mem->AEGP_UnlockMemHandle(result);
    }
    if (result) mem->AEGP_FreeMemHandle(result);
    if (error) mem->AEGP_FreeMemHandle(error);
    return path;
}

void ExportLayers(AEGP_CompH comp, const std::string& path) {
    Use<AEGP_LayerSuite13> layers(kAEGPLayerSuite, kAEGPLayerSuiteVersion13);
    Use<PFAppSuite1> app(kPFAppSuite, kPFAppSuiteVersion1);
    A_long count = 0;
    layers->AEGP_GetCompNumLayers(comp, &count);
    const std::u16string title = U16("Exporting");
    PF_AppProgressDialogP dialog = nullptr;
    app->PF_CreateNewAppProgressDialog(Units(title), nullptr, false, &dialog);
    std::ostringstream out;
    for (A_long i = 0; i < count; ++i) {
        AEGP_LayerH layer = nullptr;
        layers->AEGP_GetCompLayerByIndex(comp, i, &layer);
        AEGP_MemHandle name = nullptr, source = nullptr;
        layers->AEGP_GetLayerName(g_id, layer, &name, &source);
        std::string shown = TakeAscii(name);
        const std::string sourceName = TakeAscii(source);
        if (shown.empty()) shown = sourceName;
        A_Boolean is3D = false;
        layers->AEGP_IsLayer3D(layer, &is3D);
        A_Matrix4 m{};
        const A_Time zero{0, 1};
        layers->AEGP_GetLayerToWorldXform(layer, &zero, &m);
        out << i << ' ' << shown << ' ' << (is3D ? "3d" : "2d") << ' ' << m.mat[3][0] << ' ' << m.mat[3][1] << ' '
            << m.mat[3][2] << '\n';
        if (app->PF_AppProgressDialogUpdate(dialog, i + 1, count) == PF_Interrupt_CANCEL) break;
    }
    app->PF_DisposeAppProgressDialog(dialog);
    std::ofstream(path) << out.str();
    Use<AEGP_UtilitySuite13> util(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13);
    const std::u16string done = U16("exported " + std::to_string(count) + " layers");
    util->AEGP_ReportInfoUnicode(g_id, Units(done));
}

void Misbehave(const std::string& scenario) {
    Use<AEGP_MemorySuite1> mem(kAEGPMemorySuite, kAEGPMemorySuiteVersion1);
    AEGP_MemHandle handle = nullptr;
    mem->AEGP_NewMemHandle(g_id, scenario.c_str(), 64, AEGP_MemFlag_CLEAR, &handle);
    if (scenario == "double-free") {
        mem->AEGP_FreeMemHandle(handle);
        mem->AEGP_FreeMemHandle(handle);
    }
}

AEGP_CompH ActiveComp() {
    Use<AEGP_ItemSuite13> items(kAEGPItemSuite, kAEGPItemSuiteVersion13);
    Use<AEGP_CompSuite19> comps(kAEGPCompSuite, kAEGPCompSuiteVersion19);
    AEGP_ItemH item = nullptr;
    AEGP_CompH comp = nullptr;
    if (items->AEGP_GetActiveItem(&item) == A_Err_NONE && item) comps->AEGP_GetCompFromItem(item, &comp);
    return comp;
}

A_Err CommandHook(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command command, AEGP_HookPriority,
                  A_Boolean already_handled, A_Boolean* handled) {
    if (command != g_command || already_handled) return A_Err_NONE;
    const std::string scenario = Scenario();
    if (scenario == "unhandled") return A_Err_NONE;
    *handled = true;
    if (scenario == "leak" || scenario == "double-free") {
        Misbehave(scenario);
        return A_Err_NONE;
    }
    AEGP_CompH comp = ActiveComp();
    if (!comp) return A_Err_STRUCT;
    const std::string path = ChooseFile();
    if (!path.empty()) ExportLayers(comp, path);
    return A_Err_NONE;
}

A_Err UpdateMenuHook(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
    Use<AEGP_CommandSuite1> commands(kAEGPCommandSuite, kAEGPCommandSuiteVersion1);
    return ActiveComp() ? commands->AEGP_EnableCommand(g_command) : commands->AEGP_DisableCommand(g_command);
}

A_Err DeathHook(AEGP_GlobalRefcon, AEGP_DeathRefcon) { return A_Err_NONE; }

std::vector<std::string> ReadNames(const A_UTF16Char* path, bool* valid) {
    std::string file;
    for (const A_UTF16Char* c = path; *c; ++c) file += static_cast<char>(*c);
    std::ifstream in(file);
    std::string line;
    std::vector<std::string> names;
    *valid = std::getline(in, line) && line == "TST1";
    while (*valid && std::getline(in, line))
        if (!line.empty()) names.push_back(line);
    return names;
}

A_Err VerifyTst(const A_UTF16Char* path, AE_FIM_Refcon) {
    bool valid = false;
    ReadNames(path, &valid);
    return valid ? A_Err_NONE : A_Err_STRUCT;
}

// Puts a marker on the selected layer the way an importer does: insert a key,
// take the value there, put its own marker into it, set it, dispose of it.
A_Err MarkActiveLayer(std::size_t count) {
    Use<AEGP_LayerSuite14> layers(kAEGPLayerSuite, kAEGPLayerSuiteVersion14);
    Use<AEGP_StreamSuite9> streams(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
    Use<AEGP_KeyframeSuite4> keys(kAEGPKeyframeSuite, kAEGPKeyframeSuiteVersion4);
    Use<AEGP_MarkerSuite2> markers(kAEGPMarkerSuite, kAEGPMarkerSuiteVersion2);
    AEGP_LayerH layer = nullptr;
    A_Err err = layers->AEGP_GetActiveLayer(&layer);
    if (err || !layer) return err;
    AEGP_StreamRefH stream = nullptr;
    err = streams->AEGP_GetNewLayerStream(g_id, layer, AEGP_LayerStream_MARKER, &stream);
    if (err) return err;
    const A_Time second{1, 1};
    A_long index = 0;
    AEGP_StreamValue2 value{};
    AEGP_MarkerValP marker = nullptr;
    const std::u16string comment = U16("imported " + std::to_string(count) + " names");
    err = keys->AEGP_InsertKeyframe(stream, AEGP_LTimeMode_LayerTime, &second, &index);
    if (!err) err = streams->AEGP_GetNewStreamValue(g_id, stream, AEGP_LTimeMode_LayerTime, &second, true, &value);
    if (!err) err = markers->AEGP_DisposeMarker(value.val.markerP);
    if (!err) err = markers->AEGP_NewMarker(&marker);
    if (!err) err = markers->AEGP_SetMarkerString(marker, AEGP_MarkerString_COMMENT, Units(comment),
                                                  static_cast<A_long>(comment.size()));
    value.val.markerP = marker;
    if (!err) err = keys->AEGP_SetKeyframeValue(stream, index, &value);
    if (marker) streams->AEGP_DisposeStreamValue(&value);
    streams->AEGP_DisposeStream(stream);
    return err;
}

A_Err ImportTst(const A_UTF16Char* path, AE_FIM_Refcon) {
    bool valid = false;
    const std::vector<std::string> names = ReadNames(path, &valid);
    if (!valid) return A_Err_STRUCT;
    Use<AEGP_UtilitySuite7> util(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion7);
    Use<AEGP_ProjSuite8> proj(kAEGPProjSuite, kAEGPProjSuiteVersion8);
    Use<AEGP_ItemSuite13> items(kAEGPItemSuite, kAEGPItemSuiteVersion13);
    Use<AEGP_CompSuite19> comps(kAEGPCompSuite, kAEGPCompSuiteVersion19);
    util->AEGP_StartUndoGroup("Import");
    AEGP_ProjectH project = nullptr;
    AEGP_ItemH root = nullptr, folder = nullptr;
    AEGP_CompH comp = nullptr;
    const std::u16string folderName = U16("Imported"), compName = U16("Scene");
    const A_Ratio square{1, 1}, fps{25, 1};
    const A_Time length{4, 1};
    A_Err err = proj->AEGP_GetProjectByIndex(0, &project);
    if (!err) err = proj->AEGP_GetProjectRootFolder(project, &root);
    if (!err) err = items->AEGP_CreateNewFolder(Units(folderName), root, &folder);
    if (!err) err = comps->AEGP_CreateComp(folder, Units(compName), 320, 240, &square, &length, &fps, &comp);
    for (const std::string& name : names) {
        const std::u16string units = U16(name);
        AEGP_LayerH layer = nullptr;
        if (!err) err = comps->AEGP_CreateNullInComp(Units(units), comp, nullptr, &layer);
    }
    if (!err) err = MarkActiveLayer(names.size());
    util->AEGP_EndUndoGroup();
    return err;
}

A_Err Register() {
    Use<AEGP_CommandSuite1> commands(kAEGPCommandSuite, kAEGPCommandSuiteVersion1);
    Use<AEGP_UtilitySuite11> util(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion11);
    Use<AEGP_RegisterSuite7> reg(kAEGPRegisterSuite, kAEGPRegisterSuiteVersion7);
    Use<AEGP_FileImportManagerSuite3> fim(kAEGPFileImportManagerSuite, kAEGPFileImportManagerSuiteVersion3);
    A_Err err = commands->AEGP_GetUniqueCommand(&g_command);
    if (!err) err = commands->AEGP_InsertMenuCommand(g_command, "Test Exporter...", AEGP_Menu_EXPORT,
                                                     AEGP_MENU_INSERT_SORTED);
    if (!err) err = util->AEGP_RegisterWithAEGP(nullptr, "Test Exporter", &g_id);
    if (!err) err = reg->AEGP_RegisterCommandHook(g_id, AEGP_HP_AfterAE, 0, CommandHook, nullptr);
    if (!err) err = reg->AEGP_RegisterUpdateMenuHook(g_id, UpdateMenuHook, nullptr);
    if (!err) err = reg->AEGP_RegisterDeathHook(g_id, DeathHook, nullptr);
    AE_FIM_ImportFlavorRef flavor = AE_FIM_ImportFlavorRef_NONE;
    if (!err) err = fim->AEGP_RegisterImportFlavor("Test Importer...", &flavor);
    const AEIO_FileKind kind = {0x74737400u, -1};  // "tst"
    const AEIO_FileExtension extension = {{'.', 't', 's', 't', 0, 0, 0, 0}};
    if (!err) err = fim->AEGP_RegisterImportFlavorFileTypes(flavor, 1, &kind, 1, &extension);
    const AE_FIM_ImportCallbacks callbacks = {nullptr, ImportTst, VerifyTst};
    if (!err) err = fim->AEGP_RegisterImportFlavorImportCallbacks(flavor, AE_FIM_ImportFlag_COMP, &callbacks);
    return err;
}

}  // namespace

extern "C" AEGP_EXPORT A_Err EntryPointFunc(SPBasicSuite* pica, A_long, A_long, AEGP_PluginID plugin_id,
                                            AEGP_GlobalRefcon*) {
    g_pica = pica;
    g_id = plugin_id;
    return Register();
}
