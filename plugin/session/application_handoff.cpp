#include "plugin/session/application_handoff.h"

#include <vector>

#include "plugin/platform/process_start.h"

namespace quillon {

std::string HandoffArguments(const std::string& file, bool merge) { return (merge ? "$$$MERGE$$$" : "") + file; }

bool LaunchApplication(const std::string& executable, const std::string& arguments) {
  std::vector<std::string> words;
  if (!arguments.empty()) words.push_back(arguments);
  std::string ignored;
  return StartDetachedProcess(executable, words, &ignored);
}

bool OpenFileInApplication(const std::string& executable, const std::string& file, bool merge) {
  return LaunchApplication(executable, HandoffArguments(file, merge));
}

bool LaunchWith(const std::string& executable, const std::string& first, const std::string& second) {
  return LaunchApplication(executable, first + " " + second);
}

}  // namespace quillon
