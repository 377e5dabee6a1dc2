#include "plugin/host/hooks.h"

#include "plugin/engine/engine_loader.h"
#include "plugin/host/active_composition.h"
#include "plugin/host/export_command.h"
#include "plugin/host/frame_report.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/log/debug_log.h"
#include "plugin/text/load_string_table.h"
#include "plugin/text/string_table.h"

namespace {

A_Err EnableExportCommand() {
  SuiteHandler suites(g_pica);
  const auto* commands = suites.Suite<AEGP_CommandSuite1>(kAEGPCommandSuite, kAEGPCommandSuiteVersion1);
  if (g_exportCommand != 0) {
    const ActiveComposition active = FindActiveComposition(suites);
    if (!active.err && active.comp) return commands->AEGP_EnableCommand(g_exportCommand);
  }
  return commands->AEGP_DisableCommand(g_exportCommand);
}

}  // namespace

A_Err CommandHook(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command command, AEGP_HookPriority,
                  A_Boolean alreadyHandled, A_Boolean* handled) {
  if (command != g_exportCommand || alreadyHandled || !g_pica) return A_Err_NONE;
  return RunInFrame(g_pica, eQuillon_AEGP_CommandHook, g_pluginId, [&](CTI* cti) {
    DebugLogger scope("CommandHook");
    if (!IsStringTableLoaded()) {
      SuiteHandler suites(g_pica);
      LoadStringTable(&suites, g_pluginId);
    }
    RunExportCommand(cti);
    *handled = true;
    // What the command recorded on a way out that threw nothing still reaches the user,
    // unless a message of the command has told of it already.
    if (cti->errors.size() > cti->errorsTold) ReportFrameError(cti, eQuillon_AEGP_CommandHook, nullptr);
  });
}

A_Err UpdateMenuHook(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
  try {
    return EnableExportCommand();
  } catch (A_Err err) {
    return err;
  } catch (...) {
    return A_Err_GENERIC;
  }
}

A_Err DeathHook(AEGP_GlobalRefcon, AEGP_DeathRefcon) {
  try {
    LogEvent("DeathHook", "shutting the engine down");
  } catch (...) {
    // The log is never worth a failed shutdown.
  }
  return UnloadQuillon(false) ? A_Err_NONE : A_Err_GENERIC;
}
