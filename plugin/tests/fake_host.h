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

 private:
  SPBasicSuite pica_;
};
