// What a plug-in left behind when the host quits: handles it never freed or
// disposed, suites it never released, groups and dialogs it never closed,
// and the calls the host refused.
#pragma once

#include <string>
#include <vector>

namespace aehost {

// One line a problem; empty when the plug-ins cleaned up after themselves.
std::vector<std::string> ExitProblems();

}  // namespace aehost
