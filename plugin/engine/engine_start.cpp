#include "plugin/engine/engine_start.h"

#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_location.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/log/debug_log.h"
#include "plugin/text/encodings.h"

namespace {

constexpr int32_t kEngineWaitSeconds = 60;

}  // namespace

bool EnsureEngineStarted(CTI* cti) {
  if (g_engineStarted) return true;
  std::u16string path = EngineInstallFolder(*cti, g_pluginId);
  LogEvent("EnsureEngineStarted", "starting the engine in " + EncodeUtf8(path));
  if (!StartEngine(path)) {
    cti->AddError(1, kEngineMissingMessage);
    return false;
  }
  if (!WaitUntilQuillonIsRunning(kEngineWaitSeconds)) {
    cti->AddError(1, "Quillon didn't start properly.");
    return false;
  }
  g_engineStarted = true;
  return true;
}
