#pragma once
// The export command, from the click in the menu down to the closed scene file.
#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/host/cti.h"

// Starts the engine on the first call, then exports the active composition into the
// scene file the user chooses. The result has no reader; failures reach the user.
bool RunExportCommand(CTI* cti);

// Fills `document` from the active composition under a root object named after the
// project and the composition, asking the user the text question and for `target`.
// False when nothing is to be written.
bool ExportActiveComposition(CTI* cti, BaseDocument* document, Filename* target, const std::string& projectName);
