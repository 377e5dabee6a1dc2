#pragma once
// The plug-in's door: the function the host calls once after loading the library. It
// loads the texts, puts the export command into File > Export, and registers the hooks
// and the import flavor for ".ory" files. The engine is not touched here.
#include "plugin/host/suite_handler.h"
#include "sdk/aegp.h"

extern "C" AEGP_EXPORT A_Err EntryPointFunc(SPBasicSuite* pica, A_long majorVersion, A_long minorVersion,
                                            AEGP_PluginID pluginId, AEGP_GlobalRefcon* globalRefcon);

// Registers the import flavor for scene files; reports and returns the host's error.
A_Err RegisterImporter(SuiteHandler& suites);
