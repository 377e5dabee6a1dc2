// The natives that app.project and the layer objects are built on.
#pragma once

#include "aehost/script/script_heap.h"

#include <vector>

namespace aehost {

struct Layer;
enum class LayerStream : int;

std::vector<NativeEntry> ProjectNatives();

// How many numbers a script sees of a stream's value: a 2D layer's vectors have
// two, a 3D layer's three, colours four; one gives a plain number.
int ScriptDimensions(const Layer& layer, LayerStream id);

}  // namespace aehost
