#pragma once
// Handing a document to the 3D application: starting it with a line of arguments, or with a
// scene file to open or to merge into what it has open. The application is started on its
// own and left running; nothing waits for it.
#include <string>

namespace quillon {

// The arguments that hand `file` over: its path as it is, not quoted; to merge, the word
// "$$$MERGE$$$" directly in front of it.
std::string HandoffArguments(const std::string& file, bool merge);

// Starts `executable` with `arguments` as one argument (none when empty). True when the
// process started.
bool LaunchApplication(const std::string& executable, const std::string& arguments);

// Starts `executable` with the arguments that hand `file` over.
bool OpenFileInApplication(const std::string& executable, const std::string& file, bool merge);

// Starts `executable` with `first`, a blank and `second` as its argument.
bool LaunchWith(const std::string& executable, const std::string& first, const std::string& second);

}  // namespace quillon
