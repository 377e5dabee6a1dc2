#include "plugin/host/frame_report.h"

#include "plugin/host/host_text.h"

namespace {

// The newest error that has a code, looking from the end; 512 when none has.
A_Err NewestErrorCode(const CTI& cti) {
  for (auto error = cti.errors.rbegin(); error != cti.errors.rend(); ++error) {
    if (error->code != 0) return error->code;
  }
  return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

}  // namespace

std::string FormatFrameReport(const CTI* cti, int32_t event, A_Err thrown, A_Err* finalCode) {
  std::string text = std::string("Error during event ") + EventName(event);
  if (!cti) {
    text += "\nFailed to create CTI, probably out of memory.";
    *finalCode = thrown != 0 ? thrown : PF_Err_OUT_OF_MEMORY;
  } else if (!cti->errors.empty()) {
    text += "\n" + cti->FormatErrors();
    *finalCode = NewestErrorCode(*cti);
  } else if (thrown != 0) {
    text += std::string("\nUnexpected error [") + ErrorName(thrown) + "]";
    *finalCode = thrown;
  } else {
    text += std::string("\nUnhandled error during event ") + EventName(event);
    *finalCode = PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  return text;
}

A_Err ReportFrameError(CTI* cti, int32_t event, const A_Err* thrown) {
  A_Err finalCode = A_Err_NONE;
  const std::string text = FormatFrameReport(cti, event, thrown ? *thrown : 0, &finalCode);
  if (!cti) return finalCode;
  try {
    cti->ReportMessage(ToHostUtf16(text));
  } catch (...) {
    // The host cannot be told; the code still reaches it.
  }
  return finalCode;
}
