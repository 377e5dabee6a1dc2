#include "plugin/exporter/layer_stream.h"

#include <utility>

#include "plugin/exporter/exporter_host.h"

LayerStream::LayerStream(AEGP_LayerH layer, AEGP_LayerStream which) {
  A_Boolean legal = false;
  if (StreamSuite9()->AEGP_IsStreamLegal(layer, which, &legal) || !legal) return;
  if (StreamSuite9()->AEGP_GetNewLayerStream(PluginId(), layer, which, &stream_)) stream_ = nullptr;
}

LayerStream::~LayerStream() {
  if (stream_) StreamSuite9()->AEGP_DisposeStream(stream_);
}

LayerStream::LayerStream(LayerStream&& other) noexcept : stream_(std::exchange(other.stream_, nullptr)) {}

LayerStream& LayerStream::operator=(LayerStream&& other) noexcept {
  if (this != &other) {
    if (stream_) StreamSuite9()->AEGP_DisposeStream(stream_);
    stream_ = std::exchange(other.stream_, nullptr);
  }
  return *this;
}

StreamValue::~StreamValue() {
  if (held_) StreamSuite9()->AEGP_DisposeStreamValue(&value_);
}

A_Err StreamValue::Read(AEGP_StreamRefH stream, const A_Time& compTime) {
  if (held_) {
    StreamSuite9()->AEGP_DisposeStreamValue(&value_);
    held_ = false;
  }
  const A_Err err =
      StreamSuite9()->AEGP_GetNewStreamValue(PluginId(), stream, AEGP_LTimeMode_CompTime, &compTime, false, &value_);
  held_ = err == A_Err_NONE;
  return err;
}
