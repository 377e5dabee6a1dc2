// The basic suite handed to a plug-in's entry point: suites by name and
// version. Acquisitions are counted, so that suites a plug-in never handed
// back can be reported at exit.
#pragma once

#include <string>
#include <vector>

#include "sdk/aegp.h"

namespace aehost {

SPBasicSuite* BasicSuite();

// The table of a suite in a version the host serves, or null.
const void* FindSuite(const char* name, A_long version);

// "name version N: K acquisitions not released", one line a suite.
std::vector<std::string> UnreleasedSuites();

}  // namespace aehost
