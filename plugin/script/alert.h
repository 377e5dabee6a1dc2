#pragma once
// A message in a dialog window of its own, for texts longer than the host's report box
// shows well.
#include <string>

#include "plugin/host/cti.h"

// Shows `message` (UTF-8); true when every host call succeeded.
bool ShowAlert(CTI* cti, const std::string& message);

// The dialog's script with `message` as a single-quoted string literal.
std::string AlertScript(const std::string& message);
