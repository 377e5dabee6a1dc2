#include "plugin/importer/layer_streams.h"

#include "plugin/host/plugin_globals.h"

namespace {

const AEGP_StreamSuite9* Streams() {
  return CurrentCTI()->Suite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
}

const AEGP_KeyframeSuite4* Keyframes() {
  return CurrentCTI()->Suite<AEGP_KeyframeSuite4>(kAEGPKeyframeSuite, kAEGPKeyframeSuiteVersion4);
}

}  // namespace

// A batch still open here is one that a failed host call left: its keys are not committed,
// and ending it without them hands the batch back to the host.
OpenStream::~OpenStream() {
  if (keys) Keyframes()->AEGP_EndAddKeyframes(false, keys);
  if (stream) Streams()->AEGP_DisposeStream(stream);
}

bool OpenStream::StartKeys() { return stream && Keyframes()->AEGP_StartAddKeyframes(stream, &keys) == A_Err_NONE; }

bool OpenStream::AddKey(const A_Time& time, const AEGP_StreamVal2& value) {
  if (!keys) return true;
  const auto* keyframes = Keyframes();
  A_long index = 0;
  if (keyframes->AEGP_AddKeyframes(keys, AEGP_LTimeMode_LayerTime, &time, &index)) return false;
  AEGP_StreamValue2 key{stream, value};
  const A_Err err = keyframes->AEGP_SetAddKeyframe(keys, index, &key);
  const A_Err disposed = Streams()->AEGP_DisposeStreamValue(&key);
  return !err && !disposed;
}

bool OpenStream::EndKeys() {
  if (!keys) return true;
  AEGP_AddKeyframesInfoH batch = keys;
  keys = nullptr;
  return Keyframes()->AEGP_EndAddKeyframes(true, batch) == A_Err_NONE;
}

bool IsLayerStreamLegal(AEGP_LayerH layer, AEGP_LayerStream which) {
  A_Boolean legal = false;
  return Streams()->AEGP_IsStreamLegal(layer, which, &legal) == A_Err_NONE && legal;
}

StreamResult SetLayerStream(AEGP_LayerH layer, AEGP_LayerStream which, const AEGP_StreamVal2& value, OpenStream* out) {
  if (!IsLayerStreamLegal(layer, which)) return StreamResult::kNotLegal;
  const auto* streams = Streams();
  if (streams->AEGP_GetNewLayerStream(g_pluginId, layer, which, &out->stream)) return StreamResult::kFailed;
  AEGP_StreamValue2 set{out->stream, value};
  const A_Err err = streams->AEGP_SetStreamValue(g_pluginId, out->stream, &set);
  const A_Err disposed = streams->AEGP_DisposeStreamValue(&set);
  return err || disposed ? StreamResult::kFailed : StreamResult::kSet;
}

AEGP_StreamVal2 ThreeD(double x, double y, double z) {
  AEGP_StreamVal2 value{};
  value.three_d = {x, y, z};
  return value;
}

AEGP_StreamVal2 OneD(double value) {
  AEGP_StreamVal2 result{};
  result.one_d = value;
  return result;
}
