// The trace of --verbose: each step of a run as the host sees it (commands
// clicked, scripts run, dialogs answered, files handed over and written,
// layers walked, items and layers made), one line a step on standard error,
// so that a developer can follow what the plug-in asked for.
#pragma once

#include <string>

#include "aehost/model/project.h"

namespace aehost {

// Whether steps are traced (g_host.verbose).
bool Tracing();

// One step: "trace: " and the text on standard error, when tracing.
void Trace(const std::string& step);

// A name as the trace shows it: in double quotes.
std::string Quoted(const std::string& name);

// A number as a person reads it: at most six significant digits, no trailing zeros.
std::string ShortNumber(double value);

// The name a layer goes by on the timeline: its own, else its source's.
std::string ShownLayerName(const Project& project, const Layer& layer);

// The first line of a text that is not blank, without its indent, cut to a
// length that fits a trace line.
std::string FirstLine(const std::string& text);

}  // namespace aehost
