#pragma once
// The save dialog for the scene file, run as a script in the host.
#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/host/cti.h"

// Asks the user where to save, starting in the project's folder with the composition's
// name. `target` stays empty when the user cancelled; the result is the host's error.
A_Err ChooseTargetFile(CTI* cti, Filename* target);

// The script of the save dialog, proposing `scriptPath` (a path in ExtendScript's form);
// the script's File receives exactly that text, whatever characters the path holds.
std::string SaveDialogScript(const std::string& scriptPath);
