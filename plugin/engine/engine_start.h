#pragma once
// The plug-in's way to a running engine, for both the export command and the import: start
// it on the first use of a run, wait for it, and remember that it runs.
#include "plugin/host/cti.h"

// The text the user reads when the engine library cannot be loaded.
inline constexpr char kEngineMissingMessage[] =
    "Orrery Studio 2024 must be installed in order to use \"Quillon by Vantor\". To install from the Creative "
    "Cloud app, go to After Effects, choose the \"...\" button next to \"Open\" and select 'Add-ons'.";

// Starts the engine unless it runs already and waits for it; false with the reason in the
// frame's errors.
bool EnsureEngineStarted(CTI* cti);
