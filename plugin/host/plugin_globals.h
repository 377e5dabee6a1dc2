#pragma once
// What the plug-in keeps from one call of the host to the next. Everything else lives
// for one command only.
#include "sdk/aegp.h"

extern const SPBasicSuite* g_pica;    // null until the entry point has run
extern AEGP_PluginID g_pluginId;      // the id the host gave, then the one of registration
extern AEGP_Command g_exportCommand;  // the menu item's command; 0 when there is none
extern bool g_engineStarted;          // set by the first successful start; never reset
