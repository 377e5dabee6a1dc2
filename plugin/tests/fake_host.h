#pragma once
// A host for unit tests: a basic suite that hands out the utility, memory and application
// suites, counts acquisitions and releases, and records what the plug-in showed.
#include <map>
#include <string>
#include <vector>

#include "sdk/aegp.h"

struct FakeHost {
  FakeHost();
  ~FakeHost();

  const SPBasicSuite* pica() const { return &pica_; }

  std::map<std::string, int> acquired;  // "name/version" -> count
  std::map<std::string, int> released;
  std::vector<std::u16string> reports;  // texts of AEGP_ReportInfoUnicode
  std::vector<std::u16string> progressTitles;
  std::vector<A_long> progressCounts;
  int progressDisposals = 0;
  int cancelAtUpdate = -1;  // the update call (0-based) at which the user presses Cancel
  bool refuseProgressDialog = false;

  // The project: the active item and its type (a composition when 2).
  bool hasActiveItem = false;
  AEGP_ItemType activeItemType = AEGP_ItemType_COMP;
  std::string appFolder = "/nonexistent/AfterEffects";

  // Registration.
  A_Err uniqueCommandErr = A_Err_NONE;
  AEGP_Command uniqueCommand = 42;
  A_Err insertMenuErr = A_Err_NONE;
  A_Err registerHookErr = A_Err_NONE;
  std::vector<std::string> calls;  // in order, with their arguments
  AEGP_CommandHook commandHook = nullptr;
  AEGP_UpdateMenuHook updateMenuHook = nullptr;
  AEGP_DeathHook deathHook = nullptr;
  std::vector<unsigned char> fileKindBytes;
  std::string extension;
  int liveHandles = 0;  // memory handles given out and not yet freed
  std::vector<std::string> scripts;  // what the plug-in ran
  std::string scriptReply;
  // A script that fails: its error comes back, and, as hosts do, both handles too.
  A_Err scriptErr = A_Err_NONE;

 private:
  SPBasicSuite pica_;
};
