#include "plugin/script/run_script.h"

#include "plugin/host/host_text.h"

A_Err RunScript(SuiteHandler& suites, AEGP_PluginID pluginId, int32_t utilityVersion, const std::string& script,
                AEGP_MemHandle* result, AEGP_MemHandle* error) {
  const auto* utility = suites.Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, utilityVersion);
  return utility->AEGP_ExecuteScript(pluginId, script.c_str(), false, result, error);
}

A_Err ReadReply(SuiteHandler& suites, AEGP_MemHandle handle, std::string* reply) {
  return ReadUtf8Handle(suites, handle, reply);
}

A_Err FreeScriptHandles(SuiteHandler& suites, AEGP_MemHandle result, AEGP_MemHandle error) {
  const auto* memory = suites.Suite<AEGP_MemorySuite1>(kAEGPMemorySuite, kAEGPMemorySuiteVersion1);
  const A_Err freedResult = result ? memory->AEGP_FreeMemHandle(result) : A_Err_NONE;
  const A_Err freedError = error ? memory->AEGP_FreeMemHandle(error) : A_Err_NONE;
  return freedResult ? freedResult : freedError;
}
