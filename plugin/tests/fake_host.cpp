#include "fake_host.h"

#include <cstring>

namespace {

FakeHost* g_host = nullptr;

std::u16string FromHost(const A_UTF16Char* text) {
  std::u16string out;
  while (text && *text) out += static_cast<char16_t>(*text++);
  return out;
}

A_Err ReportInfoUnicode(AEGP_PluginID, const A_UTF16Char* text) {
  g_host->reports.push_back(FromHost(text));
  return A_Err_NONE;
}

A_Err CreateProgress(const A_UTF16Char* title, const A_UTF16Char*, PF_Boolean, PF_AppProgressDialogP* dialog) {
  if (g_host->refuseProgressDialog) return A_Err_GENERIC;
  g_host->progressTitles.push_back(FromHost(title));
  *dialog = reinterpret_cast<PF_AppProgressDialogP>(g_host);
  return A_Err_NONE;
}

A_Err UpdateProgress(PF_AppProgressDialogP, A_long count, A_long) {
  g_host->progressCounts.push_back(count);
  const bool cancel = static_cast<int>(g_host->progressCounts.size()) - 1 == g_host->cancelAtUpdate;
  return cancel ? A_Err(PF_Interrupt_CANCEL) : A_Err(A_Err_NONE);
}

A_Err DisposeProgress(PF_AppProgressDialogP) {
  ++g_host->progressDisposals;
  return A_Err_NONE;
}

AEGP_UtilitySuite13 MakeUtility() {
  AEGP_UtilitySuite13 suite{};
  suite.AEGP_ReportInfoUnicode = &ReportInfoUnicode;
  return suite;
}

PFAppSuite7 MakeApp() {
  PFAppSuite7 suite{};
  suite.PF_CreateNewAppProgressDialog = &CreateProgress;
  suite.PF_AppProgressDialogUpdate = &UpdateProgress;
  suite.PF_DisposeAppProgressDialog = &DisposeProgress;
  return suite;
}

const AEGP_UtilitySuite13 g_utility = MakeUtility();
const PFAppSuite7 g_app = MakeApp();

std::string Key(const char* name, A_long version) { return std::string(name) + "/" + std::to_string(version); }

SPErr Acquire(const char* name, A_long version, const void** suite) {
  *suite = nullptr;
  if (std::strcmp(name, kAEGPUtilitySuite) == 0) *suite = &g_utility;
  if (std::strcmp(name, kPFAppSuite) == 0) *suite = &g_app;
  if (!*suite) return A_Err_MISSING_SUITE;
  ++g_host->acquired[Key(name, version)];
  return A_Err_NONE;
}

SPErr Release(const char* name, A_long version) {
  ++g_host->released[Key(name, version)];
  return A_Err_NONE;
}

}  // namespace

FakeHost::FakeHost() : pica_{&Acquire, &Release, nullptr} { g_host = this; }

FakeHost::~FakeHost() { g_host = nullptr; }
