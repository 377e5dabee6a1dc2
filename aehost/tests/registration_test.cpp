#include <vector>

#include "aehost/core/basic_suite.h"
#include "aehost/core/exit_report.h"
#include "aehost/core/hooks.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

using RegistrationTest = HostTest;

std::vector<std::string> g_calls;

A_Err RecordingHook(AEGP_GlobalRefcon, AEGP_CommandRefcon refcon, AEGP_Command command, AEGP_HookPriority priority,
                    A_Boolean already_handled, A_Boolean* handled) {
    g_calls.push_back(std::string(static_cast<const char*>(refcon)) + ":" + std::to_string(command) + ":" +
                      std::to_string(priority) + ":" + (already_handled ? "h" : "-"));
    *handled = true;
    return A_Err_NONE;
}

A_Err DisablingMenuHook(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon refcon, AEGP_WindowType) {
    return CommandSuite()->AEGP_DisableCommand(*static_cast<AEGP_Command*>(refcon));
}

A_Err CountingDeathHook(AEGP_GlobalRefcon, AEGP_DeathRefcon) {
    g_calls.push_back("death");
    return A_Err_NONE;
}

std::string g_verifiedPath;

A_Err VerifyOry(const A_UTF16Char* path, AE_FIM_Refcon) {
    g_verifiedPath = Utf16zToUtf8(path);
    return A_Err_NONE;
}

A_Err ImportOry(const A_UTF16Char*, AE_FIM_Refcon) { return A_Err_STRUCT; }

TEST_F(RegistrationTest, MenuCommandsAreInsertedEnabledAndDisabled) {
    const AEGP_CommandSuite1* commands = CommandSuite();
    AEGP_Command first = 0, second = 0;
    ASSERT_EQ(commands->AEGP_GetUniqueCommand(&first), A_Err_NONE);
    ASSERT_EQ(commands->AEGP_GetUniqueCommand(&second), A_Err_NONE);
    EXPECT_NE(first, second);
    // Menu texts are code page 1252: 0xE9 is e acute, 0x85 an ellipsis.
    ASSERT_EQ(commands->AEGP_InsertMenuCommand(first, "Caf\xE9 Exporter\x85", AEGP_Menu_EXPORT, AEGP_MENU_INSERT_SORTED),
              A_Err_NONE);
    EXPECT_NE(commands->AEGP_InsertMenuCommand(first, "again", AEGP_Menu_EXPORT, AEGP_MENU_INSERT_SORTED), A_Err_NONE);
    const MenuCommand* entry = FindMenuCommand(first);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->text, "Caf\xC3\xA9 Exporter\xE2\x80\xA6");
    EXPECT_EQ(entry->menu, AEGP_Menu_EXPORT);
    EXPECT_TRUE(entry->enabled);

    ASSERT_EQ(RegisterSuite()->AEGP_RegisterUpdateMenuHook(kPlugin, DisablingMenuHook, &first), A_Err_NONE);
    EXPECT_EQ(RunUpdateMenuHooks(AEGP_WindType_COMP), A_Err_NONE);
    EXPECT_FALSE(FindMenuCommand(first)->enabled);
    EXPECT_EQ(commands->AEGP_EnableCommand(first), A_Err_NONE);
    EXPECT_TRUE(FindMenuCommand(first)->enabled);
    EXPECT_NE(commands->AEGP_EnableCommand(999), A_Err_NONE);
}

TEST_F(RegistrationTest, CommandHooksRunBeforeThenAfterTheHost) {
    g_calls.clear();
    const AEGP_RegisterSuite7* reg = RegisterSuite();
    static const char after[] = "after", before[] = "before", other[] = "other";
    ASSERT_EQ(reg->AEGP_RegisterCommandHook(kPlugin, AEGP_HP_AfterAE, 0, RecordingHook, const_cast<char*>(after)),
              A_Err_NONE);
    ASSERT_EQ(reg->AEGP_RegisterCommandHook(kPlugin, AEGP_HP_BeforeAE, 5, RecordingHook, const_cast<char*>(before)),
              A_Err_NONE);
    ASSERT_EQ(reg->AEGP_RegisterCommandHook(kPlugin, AEGP_HP_BeforeAE, 6, RecordingHook, const_cast<char*>(other)),
              A_Err_NONE);
    bool handled = false;
    EXPECT_EQ(RunCommand(5, &handled), A_Err_NONE);
    EXPECT_TRUE(handled);
    EXPECT_EQ(g_calls, (std::vector<std::string>{"before:5:1:-", "after:5:2:h"}));
    // Hooks of unknown plug-ins, with no function or a bad priority are refused.
    EXPECT_NE(reg->AEGP_RegisterCommandHook(99, AEGP_HP_AfterAE, 0, RecordingHook, nullptr), A_Err_NONE);
    EXPECT_NE(reg->AEGP_RegisterCommandHook(kPlugin, AEGP_HP_AfterAE, 0, nullptr, nullptr), A_Err_NONE);
    EXPECT_NE(reg->AEGP_RegisterCommandHook(kPlugin, 3, 0, RecordingHook, nullptr), A_Err_NONE);
}

TEST_F(RegistrationTest, DeathHooksRunOnce) {
    g_calls.clear();
    ASSERT_EQ(RegisterSuite()->AEGP_RegisterDeathHook(kPlugin, CountingDeathHook, nullptr), A_Err_NONE);
    EXPECT_EQ(RunDeathHooks(), A_Err_NONE);
    EXPECT_EQ(RunDeathHooks(), A_Err_NONE);
    EXPECT_EQ(g_calls, std::vector<std::string>{"death"});
}

TEST_F(RegistrationTest, ImportFlavorIsFoundByKindOrExtension) {
    const AEGP_FileImportManagerSuite3* fim = FileImportManagerSuite();
    AE_FIM_ImportFlavorRef flavor = AE_FIM_ImportFlavorRef_NONE;
    ASSERT_EQ(fim->AEGP_RegisterImportFlavor("Scene Importer...", &flavor), A_Err_NONE);
    EXPECT_NE(flavor, AE_FIM_ImportFlavorRef_NONE);
    const AEIO_FileKind kind = {0x6F727900u, -1};  // "ory" and a zero byte
    const AEIO_FileExtension extension = {{'.', 'o', 'r', 'y', 0, 0, 0, 0}};
    ASSERT_EQ(fim->AEGP_RegisterImportFlavorFileTypes(flavor, 1, &kind, 1, &extension), A_Err_NONE);
    // Without callbacks the flavor imports nothing yet.
    EXPECT_EQ(FlavorForFile("/tmp/scene.ory"), nullptr);
    const AE_FIM_ImportCallbacks callbacks = {nullptr, ImportOry, VerifyOry};
    ASSERT_EQ(fim->AEGP_RegisterImportFlavorImportCallbacks(flavor, AE_FIM_ImportFlag_COMP, &callbacks), A_Err_NONE);
    const ImportFlavor* found = FlavorForFile("/tmp/scene.ORY");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->extensions, std::vector<std::string>{"ory"});
    EXPECT_EQ(FlavorForFile("/tmp/scene.ory.json"), nullptr);
    EXPECT_EQ(FlavorForFile("/tmp/ory"), nullptr);
    EXPECT_EQ(VerifyImport(*found, "/tmp/sc\xC3\xA8ne.ory"), A_Err_NONE);
    EXPECT_EQ(g_verifiedPath, "/tmp/sc\xC3\xA8ne.ory");
    EXPECT_EQ(RunImport(*found, "/tmp/scene.ory"), A_Err_STRUCT);
    EXPECT_NE(fim->AEGP_RegisterImportFlavorFileTypes(flavor + 1, 1, &kind, 0, nullptr), A_Err_NONE);
}

TEST_F(RegistrationTest, SuitesAreServedByNameAndVersionAndCounted) {
    SPBasicSuite* pica = BasicSuite();
    const void* suite = nullptr;
    ASSERT_EQ(pica->AcquireSuite(kAEGPLayerSuite, kAEGPLayerSuiteVersion13, &suite), A_Err_NONE);
    EXPECT_EQ(suite, LayerSuite());
    EXPECT_EQ(pica->AcquireSuite(kAEGPLayerSuite, 12, &suite), A_Err_MISSING_SUITE);
    EXPECT_EQ(suite, nullptr);
    EXPECT_EQ(pica->AcquireSuite("AEGP Nonexistent Suite", 1, &suite), A_Err_MISSING_SUITE);
    ASSERT_EQ(UnreleasedSuites().size(), 1u);
    EXPECT_NE(UnreleasedSuites()[0].find("AEGP Layer Suite version 13"), std::string::npos);
    EXPECT_EQ(pica->ReleaseSuite(kAEGPLayerSuite, kAEGPLayerSuiteVersion13), A_Err_NONE);
    EXPECT_TRUE(UnreleasedSuites().empty());
    EXPECT_NE(pica->ReleaseSuite(kAEGPLayerSuite, kAEGPLayerSuiteVersion13), A_Err_NONE);
}

TEST_F(RegistrationTest, UtilitySuiteReportsRunsScriptsAndGivesFolders) {
    const AEGP_UtilitySuite13* util = UtilitySuite();
    const std::u16string text = u"No 3D layers found.";
    EXPECT_EQ(util->AEGP_ReportInfoUnicode(kPlugin, reinterpret_cast<const A_UTF16Char*>(text.c_str())), A_Err_NONE);
    EXPECT_EQ(g_host.transcript, std::vector<std::string>{"No 3D layers found."});
    EXPECT_NE(util->AEGP_ReportInfoUnicode(kPlugin + 1, reinterpret_cast<const A_UTF16Char*>(text.c_str())),
              A_Err_NONE);

    EXPECT_EQ(util->AEGP_StartUndoGroup("Import"), A_Err_NONE);
    EXPECT_FALSE(ExitProblems().empty());
    EXPECT_EQ(util->AEGP_EndUndoGroup(), A_Err_NONE);
    EXPECT_NE(util->AEGP_EndUndoGroup(), A_Err_NONE);

    g_host.runScript = [](const std::string& source, std::string* result, std::string* error) {
        if (source == "fail") {
            *error = "Error: boom";
            return false;
        }
        *result = "ran " + source;
        return true;
    };
    AEGP_MemHandle result = nullptr, error = nullptr;
    ASSERT_EQ(util->AEGP_ExecuteScript(kPlugin, "1+1", false, &result, &error), A_Err_NONE);
    void* data = nullptr;
    MemorySuite()->AEGP_LockMemHandle(result, &data);
    EXPECT_STREQ(static_cast<const char*>(data), "ran 1+1");
    MemorySuite()->AEGP_UnlockMemHandle(result);
    MemorySuite()->AEGP_FreeMemHandle(result);
    MemorySuite()->AEGP_FreeMemHandle(error);
    ASSERT_EQ(util->AEGP_ExecuteScript(kPlugin, "fail", false, &result, &error), A_Err_GENERIC);
    MemorySuite()->AEGP_LockMemHandle(error, &data);
    EXPECT_STREQ(static_cast<const char*>(data), "Error: boom");
    MemorySuite()->AEGP_UnlockMemHandle(error);
    MemorySuite()->AEGP_FreeMemHandle(error);
    MemorySuite()->AEGP_FreeMemHandle(result);

    g_host.appDir = "/opt/host/AfterEffects";
    AEGP_MemHandle path = nullptr;
    ASSERT_EQ(util->AEGP_GetPluginPaths(kPlugin, AEGP_GetPathTypes_APP, &path), A_Err_NONE);
    EXPECT_EQ(TakeText(path), "/opt/host/AfterEffects");
    EXPECT_NE(util->AEGP_GetPluginPaths(kPlugin, 9, &path), A_Err_NONE);
    EXPECT_EQ(path, nullptr);
}

}  // namespace
}  // namespace aehost
