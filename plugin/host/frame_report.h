#pragma once
// The one message at the end of a hook that failed: what went wrong during the call, or
// what was thrown, shown to the user, and the code that the hook gives back to the host.
#include <string>

#include "plugin/host/cti.h"

// The report's text and, in `finalCode`, the code for the host. `cti` may be null (no frame
// could be made); `thrown` is the thrown integer, 0 when what was thrown was not one.
std::string FormatFrameReport(const CTI* cti, int32_t event, A_Err thrown, A_Err* finalCode);

// Builds the report, shows it through the frame (when there is one) and gives the code.
A_Err ReportFrameError(CTI* cti, int32_t event, const A_Err* thrown);

// Runs `body` in a new frame of `event` on this thread. Whatever it throws becomes the
// frame's report and the returned code; nothing escapes to the host.
template <class Body>
A_Err RunInFrame(const SPBasicSuite* pica, int32_t event, AEGP_PluginID pluginId, Body body) {
  FrameScope frame(pica, event, pluginId);
  CTI* cti = nullptr;
  try {
    cti = CurrentCTI();
    body(cti);
    return A_Err_NONE;
  } catch (A_Err thrown) {
    return ReportFrameError(cti, event, &thrown);
  } catch (...) {
    const A_Err none = A_Err_NONE;
    return ReportFrameError(cti, event, &none);
  }
}
