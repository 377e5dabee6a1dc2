#pragma once
// ExtendScript run in the host: the one way to reach what the suites do not offer. A script
// is UTF-8 text that goes to the host unchanged; its reply is the value of its last
// expression, as UTF-8 text.
#include <string>

#include "plugin/host/suite_handler.h"

// Runs `script` through AEGP_ExecuteScript of the utility suite in `utilityVersion` (10 and
// 11 have the call at the same place). The reply and, when asked for, the error text come
// back in host memory handles that the caller frees. The host's error code is returned.
A_Err RunScript(SuiteHandler& suites, AEGP_PluginID pluginId, int32_t utilityVersion, const std::string& script,
                AEGP_MemHandle* result, AEGP_MemHandle* error);

// The text of a reply; the handle is freed.
A_Err ReadReply(SuiteHandler& suites, AEGP_MemHandle handle, std::string* reply);

// Frees the handles a run gave back (either may be null). The host may hand out both also
// when the script failed, so every way out of a caller frees them. The first error of the
// memory suite is returned.
A_Err FreeScriptHandles(SuiteHandler& suites, AEGP_MemHandle result, AEGP_MemHandle error);
