// A scene layer's switches as one record: what the render session reads and
// writes when it switches layers on and off. The record is a view on the
// layer's parameters, which stay the one place the switches are kept.
#pragma once

#include "plugin/engine/engine_ops.h"
#include "quillon/model/node.h"

namespace quillon {

// The layer parameters behind the fields that the scene identifiers do not name.
constexpr int32_t LayerParam_Solo = 1001;
constexpr int32_t LayerParam_Render = 1003;

LayerRecord LayerRecordOf(const Node& layer);
void ApplyLayerRecord(Node& layer, const LayerRecord& record);

}  // namespace quillon
