#include "plugin/exporter/text_shape/shape_host.h"

#include "plugin/exporter/exporter_host.h"

HostShape::HostShape(AEGP_LayerH layer, const A_Time& at, int32_t version)
    : suite_(version == kAEGPShapeLayerSuiteVersion3 ? ShapeLayerSuite3() : ShapeLayerSuite2()) {
  err_ = suite_->GetShapeAtTime(layer, &at, 0, &shape_);
  if (err_) shape_ = nullptr;
}

HostShape::~HostShape() {
  if (shape_) suite_->DisposeShape(shape_);
}

AEGP_ShapeItemH HostShape::Item(A_long index) const {
  AEGP_ShapeItemH item = nullptr;
  if (!shape_ || suite_->GetShapeItem(shape_, index, &item)) return nullptr;
  return item;
}

ItemOutlines::ItemOutlines(AEGP_ShapeItemH item) {
  if (item && AnimatedShapeSuite1()->GetItemOutlines(item, &outlines_)) outlines_ = nullptr;
}

ItemOutlines::~ItemOutlines() {
  if (outlines_) AnimatedShapeSuite1()->DisposeItemOutlines(outlines_);
}

A_long ItemOutlines::Count() const {
  A_long count = 0;
  if (!outlines_ || TextLayerSuite2()->AEGP_GetNumTextOutlines(outlines_, &count)) return 0;
  return count;
}

PF_PathOutlinePtr ItemOutlines::Path(A_long index) const {
  PF_PathOutlinePtr path = nullptr;
  if (!outlines_ || TextLayerSuite2()->AEGP_GetIndexedTextOutline(outlines_, index, &path)) return nullptr;
  return path;
}

A_Err ReadShapeTimeFrame(AEGP_LayerH layer, ShapeTimeFrame* frame) {
  A_Err err = LayerSuite13()->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &frame->inPoint);
  if (!err) err = LayerSuite13()->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &frame->duration);
  AEGP_CompH comp = nullptr;
  if (!err) err = LayerSuite13()->AEGP_GetLayerParentComp(layer, &comp);
  if (!err) err = CompSuite21()->AEGP_GetCompFramerate(comp, &frame->rate);
  return err;
}
