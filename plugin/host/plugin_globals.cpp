#include "plugin/host/plugin_globals.h"

const SPBasicSuite* g_pica = nullptr;
AEGP_PluginID g_pluginId = 0;
AEGP_Command g_exportCommand = 0;
bool g_engineStarted = false;
