#pragma once
// The frame in which every call from the host runs. Each hook opens a CTI on its thread's
// stack, and everything below it reaches the host through that frame: the suites it has
// acquired (released when it closes), the errors that went wrong (shown once, by the
// frame's report, when the hook ends in an exception), the user's cancel and the progress
// dialog. Frames nest; CurrentCTI() is the innermost one of the calling thread.
//
// A fatal problem is recorded and thrown as an integer:
//   cti->AddError(2, "No item selected."); throw A_Err(2);
// and the hook's catch turns it into one message and one code for the host.
#include <cstdint>
#include <string>
#include <vector>

#include "plugin/host/events.h"
#include "plugin/host/suite_handler.h"

// Set by callers that run the frame's work on their own thread and have their own way to
// show progress and to learn of a cancel.
struct ProgressCallback {
  void* refcon;
  A_Err (*pollAbort)(void* refcon);
  A_Err (*report)(void* refcon, A_long count, A_long total);
};

struct GeneralCall {
  int32_t event;
  void* module;
  ProgressCallback* progressCallback;
};

// What a call through an effect brings along: the host's input record of that call.
struct EffectCall {
  const PF_InData* inData;
};

struct FrameError {
  int32_t code;
  std::string text;  // UTF-8
};

struct CTI : SuiteHandler {
  CTI(const SPBasicSuite* pica, AEGP_PluginID pluginId);
  ~CTI();

  // Appends to the frame's error list, which only the exception report shows.
  void AddError(int32_t code, std::string text);
  // "No Error", or one line per error: "Code (" name ") : " text.
  std::string FormatErrors() const;
  // 517 once the user has cancelled; it then stays so for the rest of the frame.
  int32_t GetAbortCode();
  // Reports progress from 0 to 100, opening the "Processing..." dialog on first use.
  void Progress(double percent);
  void OpenProgress(const std::u16string& title);
  void CloseProgress();
  // Shows a text to the user at once; an empty text shows nothing.
  void ReportMessage(const std::u16string& text);

  EffectCall* effectCall = nullptr;  // never set by this plug-in's hooks
  GeneralCall* generalCall = nullptr;
  std::vector<FrameError> errors;
  AEGP_PluginID pluginId;
  PF_AppProgressDialogP progressDialog = nullptr;
  int32_t abortCode = 0;
  size_t errorsTold = 0;  // errors recorded before the latest message: the user knows of them
};

// Pushes a new frame for `event` on the calling thread. When memory runs out nothing is
// pushed, and the caller's CurrentCTI() reports it.
void OpenFrame(const SPBasicSuite* pica, int32_t event, AEGP_PluginID pluginId);
// Pops and destroys the calling thread's innermost frame, releasing its suites.
void CloseFrame();
// The calling thread's innermost frame; throws 512 when it has none.
CTI* CurrentCTI();
bool HasNoCTI();

// Opens a frame for a scope and closes it on every way out.
struct FrameScope {
  FrameScope(const SPBasicSuite* pica, int32_t event, AEGP_PluginID pluginId) { OpenFrame(pica, event, pluginId); }
  ~FrameScope() { CloseFrame(); }
  FrameScope(const FrameScope&) = delete;
  FrameScope& operator=(const FrameScope&) = delete;
};
