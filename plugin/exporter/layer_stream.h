#pragma once
// A layer stream opened for reading, disposed on every way out of its scope.
#include "sdk/aegp.h"

class LayerStream {
 public:
  LayerStream() = default;
  // Opens `which` of `layer` if the stream is legal on it; empty otherwise.
  LayerStream(AEGP_LayerH layer, AEGP_LayerStream which);
  ~LayerStream();
  LayerStream(const LayerStream&) = delete;
  LayerStream& operator=(const LayerStream&) = delete;
  LayerStream(LayerStream&& other) noexcept;
  LayerStream& operator=(LayerStream&& other) noexcept;

  AEGP_StreamRefH get() const { return stream_; }
  explicit operator bool() const { return stream_ != nullptr; }

 private:
  AEGP_StreamRefH stream_ = nullptr;
};

// A stream value read at a composition time after expressions, disposed with its scope.
class StreamValue {
 public:
  StreamValue() = default;
  ~StreamValue();
  StreamValue(const StreamValue&) = delete;
  StreamValue& operator=(const StreamValue&) = delete;

  A_Err Read(AEGP_StreamRefH stream, const A_Time& compTime);
  const AEGP_StreamVal2& value() const { return value_.val; }

 private:
  AEGP_StreamValue2 value_{};
  bool held_ = false;
};
