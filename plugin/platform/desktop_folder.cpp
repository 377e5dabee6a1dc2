#include "plugin/platform/desktop_folder.h"

#include <cstdlib>
#include <fstream>

#include "plugin/platform/file_system.h"

namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

// The value of XDG_DESKTOP_DIR in a user-dirs.dirs file: a line XDG_DESKTOP_DIR="..."
// whose value may begin with $HOME. Empty when the file has no such line.
std::string DesktopFromUserDirs(const std::string& home) {
  std::string config = Environment("XDG_CONFIG_HOME");
  if (config.empty()) config = JoinPath(home, ".config");
  std::ifstream in(JoinPath(config, "user-dirs.dirs"));
  const std::string prefix = "XDG_DESKTOP_DIR=\"";
  for (std::string line; std::getline(in, line);) {
    if (line.compare(0, prefix.size(), prefix) != 0 || line.back() != '"') continue;
    std::string value = line.substr(prefix.size(), line.size() - prefix.size() - 1);
    if (value.compare(0, 5, "$HOME") == 0) value = home + value.substr(5);
    return value;
  }
  return "";
}

}  // namespace

std::string DesktopFolder() {
  std::string folder = Environment("XDG_DESKTOP_DIR");
  const std::string home = Environment("HOME");
  if (folder.empty() && !home.empty()) folder = DesktopFromUserDirs(home);
  if (folder.empty() && !home.empty()) folder = JoinPath(home, "Desktop");
  return FileExists(folder, true) ? folder : "";
}
