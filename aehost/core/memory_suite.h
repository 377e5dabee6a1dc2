// The memory suite: handles of host memory that the plug-in locks, reads,
// unlocks and frees. The host checks their use: a handle that is freed twice,
// freed while locked or never freed is reported.
#pragma once

#include <string>
#include <vector>

#include "sdk/aegp.h"

namespace aehost {

const AEGP_MemorySuite1* MemorySuite();

// Handles that the host fills for the plug-in (names, paths, script results).
AEGP_MemHandle NewTextHandle(AEGP_PluginID owner, const std::u16string& text);  // UTF-16, zero-terminated
AEGP_MemHandle NewBytesHandle(AEGP_PluginID owner, const std::string& text);    // UTF-8, zero-terminated

// Problems with memory handles that are still open now: handles not freed,
// with their "what" and owner. Empty when all is well.
std::vector<std::string> MemoryLeaks();

}  // namespace aehost
