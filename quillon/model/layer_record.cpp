#include "quillon/model/layer_record.h"

#include "plugin/exporter/scene_ids.h"

namespace quillon {
namespace {

struct Field {
  int32_t LayerRecord::*member;
  int32_t param;
  int32_t fallback;
};

// A layer without a parameter shows, renders and animates, as a new layer does.
constexpr Field kFields[] = {
    {&LayerRecord::solo, LayerParam_Solo, 0},         {&LayerRecord::view, LayerParam_Visible, 1},
    {&LayerRecord::render, LayerParam_Render, 1},     {&LayerRecord::locked, LayerParam_Locked, 0},
    {&LayerRecord::animation, LayerParam_Animation, 1},
};

}  // namespace

LayerRecord LayerRecordOf(const Node& layer) {
  LayerRecord record{};
  for (const Field& field : kFields) {
    auto found = layer.params.find(field.param);
    record.*field.member = found == layer.params.end() ? field.fallback : AsInt32(found->second.raw);
  }
  return record;
}

void ApplyLayerRecord(Node& layer, const LayerRecord& record) {
  for (const Field& field : kFields) SetInt32(layer.params[field.param].raw, record.*field.member);
}

}  // namespace quillon
