// The host's side of the hooks: what it calls in the plug-ins when the user
// opens a menu, clicks a command, imports a file or quits.
#pragma once

#include <string>

#include "aehost/core/host.h"

namespace aehost {

const MenuCommand* FindMenuCommand(AEGP_Command command);
// The inserted command whose menu text is `text` (ignoring a trailing "..."), or null.
const MenuCommand* FindMenuCommandByText(const std::string& text);

// Runs every update-menu hook; the first error is returned, all are run.
A_Err RunUpdateMenuHooks(AEGP_WindowType window);

// The hooks registered for this command, those before the host's own handling
// first; `handled` tells whether one of them took the command.
A_Err RunCommand(AEGP_Command command, bool* handled);

// Every death hook, once; the hooks are then forgotten.
A_Err RunDeathHooks();

// The flavor whose file types include the path's extension, or null.
const ImportFlavor* FlavorForFile(const std::string& path);

// The flavor's verify callback (0: importable) and import callback.
A_Err VerifyImport(const ImportFlavor& flavor, const std::string& path);
A_Err RunImport(const ImportFlavor& flavor, const std::string& path);

}  // namespace aehost
