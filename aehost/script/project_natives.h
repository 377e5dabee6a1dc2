// The natives that app.project and the layer objects are built on.
#pragma once

#include "aehost/script/script_heap.h"

#include <vector>

namespace aehost {

std::vector<NativeEntry> ProjectNatives();

}  // namespace aehost
