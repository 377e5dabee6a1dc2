#pragma once
// The hooks the plug-in registers: the command hook runs the export when the user clicks
// the menu item, the update-menu hook enables that item exactly when a composition is
// active, and the death hook shuts the engine down when the host ends.
#include "sdk/aegp.h"

A_Err CommandHook(AEGP_GlobalRefcon pluginRefcon, AEGP_CommandRefcon commandRefcon, AEGP_Command command,
                  AEGP_HookPriority hookPriority, A_Boolean alreadyHandled, A_Boolean* handled);
A_Err UpdateMenuHook(AEGP_GlobalRefcon pluginRefcon, AEGP_UpdateMenuRefcon hookRefcon, AEGP_WindowType activeWindow);
A_Err DeathHook(AEGP_GlobalRefcon pluginRefcon, AEGP_DeathRefcon hookRefcon);
