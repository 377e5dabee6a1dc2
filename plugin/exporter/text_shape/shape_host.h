#pragma once
// The host's evaluated shapes as the shape exporter holds them: a shape at a time and the
// outlines of one of its items, each disposed when it goes out of scope, and the time frame
// of a layer as the shape export reads it.
#include "sdk/aegp.h"

// The layer's shape at a layer time through the shape layer suite of `version` (2 for reading,
// 3 for identities and colours); none when the layer has no items then.
class HostShape {
 public:
  HostShape(AEGP_LayerH layer, const A_Time& at, int32_t version);
  ~HostShape();
  HostShape(const HostShape&) = delete;
  HostShape& operator=(const HostShape&) = delete;

  AEGP_ShapeH get() const { return shape_; }
  A_Err error() const { return err_; }
  // The item at `index`, null when there is none or the call fails.
  AEGP_ShapeItemH Item(A_long index) const;

 private:
  const AEGP_ShapeLayerSuite3* suite_;
  AEGP_ShapeH shape_ = nullptr;
  A_Err err_ = A_Err_NONE;
};

// The contours of an item, read like text outlines.
class ItemOutlines {
 public:
  explicit ItemOutlines(AEGP_ShapeItemH item);
  ~ItemOutlines();
  ItemOutlines(const ItemOutlines&) = delete;
  ItemOutlines& operator=(const ItemOutlines&) = delete;

  bool ok() const { return outlines_ != nullptr; }
  A_long Count() const;
  // Contour `index`, null when the host gives none.
  PF_PathOutlinePtr Path(A_long index) const;

 private:
  AEGP_TextOutlinesH outlines_ = nullptr;
};

// The layer's in point and duration in composition time and its composition's frame rate,
// each read only when the one before was; the rate stays 25 when it cannot be read.
struct ShapeTimeFrame {
  A_Time inPoint{0, 1};
  A_Time duration{0, 1};
  double rate = 25.0;
};
A_Err ReadShapeTimeFrame(AEGP_LayerH layer, ShapeTimeFrame* frame);
