#include "plugin/host/host_text.h"

#include "plugin/text/encodings.h"

namespace {

// Locks the handle, hands its bytes to `read`, then unlocks and frees it; the first error
// is the result.
template <class Read>
A_Err WithLockedHandle(SuiteHandler& suites, AEGP_MemHandle handle, Read read) {
  if (!handle) return A_Err_NONE;
  const auto* memory = suites.Suite<AEGP_MemorySuite1>(kAEGPMemorySuite, kAEGPMemorySuiteVersion1);
  AEGP_MemSize size = 0;
  void* data = nullptr;
  A_Err err = memory->AEGP_GetMemHandleSize(handle, &size);
  if (!err) err = memory->AEGP_LockMemHandle(handle, &data);
  if (!err) {
    if (data) read(data, size);
    err = memory->AEGP_UnlockMemHandle(handle);
  }
  const A_Err freeErr = memory->AEGP_FreeMemHandle(handle);
  return err ? err : freeErr;
}

}  // namespace

std::u16string ToHostUtf16(std::string_view utf8) {
  return DecodeEscapes(EncodeText(DecodeUtf8(utf8), kEncodingEscapes));
}

A_Err ReadUtf16Handle(SuiteHandler& suites, AEGP_MemHandle handle, std::u16string* text) {
  text->clear();
  return WithLockedHandle(suites, handle, [&](const void* data, AEGP_MemSize size) {
    const auto* units = static_cast<const char16_t*>(data);
    const size_t count = size / sizeof(char16_t);
    size_t length = 0;
    while (length < count && units[length] != 0) ++length;
    text->assign(units, length);
  });
}

A_Err ReadUtf8Handle(SuiteHandler& suites, AEGP_MemHandle handle, std::string* text) {
  text->clear();
  return WithLockedHandle(suites, handle, [&](const void* data, AEGP_MemSize size) {
    const auto* bytes = static_cast<const char*>(data);
    size_t length = 0;
    while (length < size && bytes[length] != 0) ++length;
    text->assign(bytes, length);
  });
}
