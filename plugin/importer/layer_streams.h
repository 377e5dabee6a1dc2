#pragma once
// Values and keys of a new layer's streams, as the import writes them: a stream is tested,
// fetched, given its value, and kept open for the keys that follow.
#include "plugin/host/cti.h"

enum class StreamResult { kSet, kNotLegal, kFailed };

// A stream kept open for keys; closed with its scope, where a batch that was not ended
// (a host call failed) is ended without its keys. Each value handed to the host is disposed
// after use.
struct OpenStream {
  AEGP_StreamRefH stream = nullptr;
  AEGP_AddKeyframesInfoH keys = nullptr;
  OpenStream() = default;
  ~OpenStream();
  OpenStream(const OpenStream&) = delete;
  OpenStream& operator=(const OpenStream&) = delete;
  // Starts a batch of keys; false when the host refused.
  bool StartKeys();
  // A key at `time` in layer time; does nothing without a batch. False when the host failed.
  bool AddKey(const A_Time& time, const AEGP_StreamVal2& value);
  // Commits the batch; false when the host failed.
  bool EndKeys();
};

// Tests `which` on `layer`, fetches it into `out` (left open) and sets `value`.
StreamResult SetLayerStream(AEGP_LayerH layer, AEGP_LayerStream which, const AEGP_StreamVal2& value, OpenStream* out);

// Whether the host has the stream on the layer; false also when it failed to say.
bool IsLayerStreamLegal(AEGP_LayerH layer, AEGP_LayerStream which);

AEGP_StreamVal2 ThreeD(double x, double y, double z);
AEGP_StreamVal2 OneD(double value);
