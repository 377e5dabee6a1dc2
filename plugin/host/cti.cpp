#include "plugin/host/cti.h"

#include <atomic>
#include <cstdlib>
#include <map>
#include <new>
#include <thread>

#include "plugin/host/host_text.h"

namespace {

// Read once at load: the environment is not consulted again.
const bool g_memoryReporting = std::getenv("QUILLON_AE_ENABLE_MEMORY_REPORTING") != nullptr;

// The frames of every thread. The lock is held only to push, pop and look up.
std::atomic_flag g_frameLock = ATOMIC_FLAG_INIT;
std::map<std::thread::id, std::vector<CTI*>> g_frameStacks;

struct FrameLock {
  FrameLock() {
    while (g_frameLock.test_and_set(std::memory_order_acquire)) std::this_thread::yield();
  }
  ~FrameLock() { g_frameLock.clear(std::memory_order_release); }
};

CTI* TopOfThisThread() {
  FrameLock lock;
  const auto stack = g_frameStacks.find(std::this_thread::get_id());
  return stack == g_frameStacks.end() || stack->second.empty() ? nullptr : stack->second.back();
}

bool Push(CTI* cti) {
  FrameLock lock;
  try {
    g_frameStacks[std::this_thread::get_id()].push_back(cti);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

CTI* Pop() {
  FrameLock lock;
  const auto stack = g_frameStacks.find(std::this_thread::get_id());
  if (stack == g_frameStacks.end() || stack->second.empty()) return nullptr;
  CTI* top = stack->second.back();
  stack->second.pop_back();
  if (stack->second.empty()) g_frameStacks.erase(stack);
  return top;
}

void EnableMemoryReporting(CTI* cti) {
  try {
    const auto* memory = cti->Suite<AEGP_MemorySuite1>(kAEGPMemorySuite, kAEGPMemorySuiteVersion1);
    if (const A_Err err = memory->AEGP_SetMemReportingOn(true)) cti->AddError(err, "Failed to enable memory logging");
  } catch (A_Err) {
    // The missing suite is already in the frame's error list.
  }
}

}  // namespace

CTI::CTI(const SPBasicSuite* pica, AEGP_PluginID id) : SuiteHandler(pica), pluginId(id) {}

CTI::~CTI() { delete generalCall; }

void CTI::AddError(int32_t code, std::string text) { errors.push_back({code, std::move(text)}); }

std::string CTI::FormatErrors() const {
  if (errors.empty()) return "No Error";
  std::string text;
  for (const FrameError& error : errors) {
    text += std::string("Code (") + ErrorName(error.code) + ") : " + error.text + "\n";
  }
  return text;
}

int32_t CTI::GetAbortCode() {
  if (abortCode != 0) return abortCode;
  const ProgressCallback* callback = generalCall ? generalCall->progressCallback : nullptr;
  if (callback && !HasNoCTI()) abortCode = callback->pollAbort(callback->refcon);
  return abortCode;
}

void CTI::Progress(double percent) {
  if (abortCode != 0 || HasNoCTI()) return;
  const auto count = static_cast<A_long>(percent);
  const ProgressCallback* callback = generalCall ? generalCall->progressCallback : nullptr;
  if (callback) {
    abortCode = callback->report(callback->refcon, count, 100);
    return;
  }
  if (!progressDialog) OpenProgress(u"Processing...");
  if (!progressDialog) return;
  const auto* app = Suite<PFAppSuite1>(kPFAppSuite, kPFAppSuiteVersion1);
  abortCode = app->PF_AppProgressDialogUpdate(progressDialog, count, 100);
}

void CTI::OpenProgress(const std::u16string& title) {
  CloseProgress();
  const auto* app = Suite<PFAppSuite1>(kPFAppSuite, kPFAppSuiteVersion1);
  PF_AppProgressDialogP dialog = nullptr;
  if (app->PF_CreateNewAppProgressDialog(HostText(title), nullptr, false, &dialog) == A_Err_NONE) {
    progressDialog = dialog;
  }
}

void CTI::CloseProgress() {
  if (!progressDialog) return;
  const auto* app = Suite<PFAppSuite1>(kPFAppSuite, kPFAppSuiteVersion1);
  app->PF_DisposeAppProgressDialog(progressDialog);
  progressDialog = nullptr;
}

void CTI::ReportMessage(const std::u16string& text) {
  if (text.empty()) return;
  CloseProgress();
  const auto* utility = Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13);
  utility->AEGP_ReportInfoUnicode(pluginId, HostText(text));
  errorsTold = errors.size();
}

void OpenFrame(const SPBasicSuite* pica, int32_t event, AEGP_PluginID pluginId) {
  CTI* cti = new (std::nothrow) CTI(pica, pluginId);
  if (!cti) return;
  cti->generalCall = new (std::nothrow) GeneralCall{event, nullptr, nullptr};
  if (!cti->generalCall || !Push(cti)) {
    delete cti;
    return;
  }
  if (g_memoryReporting) EnableMemoryReporting(cti);
}

void CloseFrame() {
  CTI* cti = Pop();
  if (!cti) return;
  try {
    cti->CloseProgress();
  } catch (A_Err) {
    // A dialog that cannot be closed through a missing suite was never opened.
  }
  delete cti;
}

CTI* CurrentCTI() {
  CTI* cti = TopOfThisThread();
  if (!cti) throw static_cast<A_Err>(PF_Err_INTERNAL_STRUCT_DAMAGED);
  return cti;
}

bool HasNoCTI() { return TopOfThisThread() == nullptr; }
