#pragma once
// Loading the string table for the host's language, and the alert for a failure code.
#include "plugin/host/cti.h"

// Reads the string file of the host's language beside the plug-in. With no suites the
// plug-in's own folder is used and the English file read. Only an unreadable file is
// shown to the user; every other failure leaves the built-in texts in place.
void LoadStringTable(SuiteHandler* suites, AEGP_PluginID pluginId);

// Shows the text of failure `code` at once, in the frame of `cti`; null does nothing.
void ReportError(int32_t code, CTI* cti);
