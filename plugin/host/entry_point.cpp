#include "plugin/host/entry_point.h"

#include <cstring>

#include "plugin/host/hooks.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/host/host_text.h"
#include "plugin/importer/import_file.h"
#include "plugin/log/debug_log.h"
#include "plugin/text/load_string_table.h"
#include "plugin/text/string_table.h"

namespace {

// Shows a text of the string table with the host's report box.
A_Err ReportText(SuiteHandler& suites, MessageKey message) {
  const std::optional<std::u16string> text = GetStringU16(message);
  if (!text) return A_Err_NONE;
  const auto* utility = suites.Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13);
  return utility->AEGP_ReportInfoUnicode(g_pluginId, HostText(*text));
}

// Obtains the command and puts it into File > Export; false when that failed.
bool InsertExportCommand(SuiteHandler& suites) {
  const auto* commands = suites.Suite<AEGP_CommandSuite1>(kAEGPCommandSuite, kAEGPCommandSuiteVersion1);
  if (commands->AEGP_GetUniqueCommand(&g_exportCommand) != A_Err_NONE) return false;
  if (g_exportCommand == 0) return true;
  const std::string name = GetString(kStrNameExporter);
  return commands->AEGP_InsertMenuCommand(g_exportCommand, name.c_str(), AEGP_Menu_EXPORT,
                                          AEGP_MENU_INSERT_SORTED) == A_Err_NONE;
}

// Registers with the host under the menu text, then the three hooks, each only if the one
// before succeeded.
A_Err RegisterHooks(SuiteHandler& suites) {
  const auto* utility = suites.Suite<AEGP_UtilitySuite11>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion11);
  const std::string name = GetString(kStrNameExporter);
  A_Err err = utility->AEGP_RegisterWithAEGP(nullptr, name.c_str(), &g_pluginId);
  if (err) return err;
  const auto* reg = suites.Suite<AEGP_RegisterSuite7>(kAEGPRegisterSuite, kAEGPRegisterSuiteVersion7);
  err = reg->AEGP_RegisterCommandHook(g_pluginId, AEGP_HP_AfterAE, 0, &CommandHook, nullptr);
  if (!err) err = reg->AEGP_RegisterUpdateMenuHook(g_pluginId, &UpdateMenuHook, nullptr);
  if (!err) err = reg->AEGP_RegisterDeathHook(g_pluginId, &DeathHook, nullptr);
  return err;
}

A_Err Register(SuiteHandler& suites) {
  LoadStringTable(&suites, g_pluginId);
  // Without a menu item the user is told, and the hooks are still registered unless even
  // telling failed.
  bool registerHooks = true;
  if (!InsertExportCommand(suites)) registerHooks = ReportText(suites, kStrTroublesExporter) == A_Err_NONE;
  if (registerHooks && RegisterHooks(suites) == A_Err_NONE) return RegisterImporter(suites);
  // The importer is registered even when a hook could not be.
  if (const A_Err err = ReportText(suites, kStrTroublesOpenOry)) return err;
  return RegisterImporter(suites);
}

}  // namespace

A_Err RegisterImporter(SuiteHandler& suites) {
  const auto* fim = suites.Suite<AEGP_FileImportManagerSuite3>(kAEGPFileImportManagerSuite,
                                                                kAEGPFileImportManagerSuiteVersion3);
  AE_FIM_ImportFlavorRef flavor = AE_FIM_ImportFlavorRef_NONE;
  const std::string name = GetString(kStrOryImporterExporter);
  A_Err err = fim->AEGP_RegisterImportFlavor(name.c_str(), &flavor);
  if (!err) {
    // The kind word holds the extension's letters in file order and a zero byte.
    AEIO_FileKind kind{};
    std::memcpy(&kind.type, "ory", 4);
    kind.creator = -1;
    AEIO_FileExtension extension{};
    std::memcpy(extension.dot_extension, ".ory", 4);
    err = fim->AEGP_RegisterImportFlavorFileTypes(flavor, 1, &kind, 1, &extension);
  }
  if (!err && flavor != AE_FIM_ImportFlavorRef_NONE) {
    const AE_FIM_ImportCallbacks callbacks{nullptr, &ImportFileCallback, &VerifyFileCallback};
    err = fim->AEGP_RegisterImportFlavorImportCallbacks(flavor, AE_FIM_ImportFlag_COMP, &callbacks);
  }
  if (err) ReportText(suites, kStrTroublesImporterExporter);
  return err;
}

A_Err EntryPointFunc(SPBasicSuite* pica, A_long /*majorVersion*/, A_long /*minorVersion*/, AEGP_PluginID pluginId,
                     AEGP_GlobalRefcon* /*globalRefcon*/) {
  g_pica = pica;
  g_pluginId = pluginId;
  try {
    DebugLogger scope("EntryPointFunc");
    SuiteHandler suites(pica);
    return Register(suites);
  } catch (A_Err err) {
    return err;
  } catch (...) {
    return A_Err_GENERIC;
  }
}
