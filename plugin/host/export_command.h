#pragma once
// The export command, from the click in the menu down to the closed scene file.
#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/host/cti.h"

// The text the user reads when the engine library cannot be loaded.
inline constexpr char kEngineMissingMessage[] =
    "Orrery Studio 2024 must be installed in order to use \"Quillon by Vantor\". To install from the Creative "
    "Cloud app, go to After Effects, choose the \"...\" button next to \"Open\" and select 'Add-ons'.";

// Starts the engine unless it runs already and waits for it; false with the reason in the
// frame's errors.
bool EnsureEngineStarted(CTI* cti);

// Starts the engine on the first call, then exports the active composition into the
// scene file the user chooses. The result has no reader; failures reach the user.
bool RunExportCommand(CTI* cti);

// Fills `document` from the active composition under a root object named after the
// project and the composition, asking the user the text question and for `target`.
// False when nothing is to be written.
bool ExportActiveComposition(CTI* cti, BaseDocument* document, Filename* target, const std::string& projectName);
