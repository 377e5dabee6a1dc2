#include "plugin/platform/process_list.h"

#include <dirent.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <cctype>
#include <memory>

namespace {

bool IsProcessId(const char* name) {
  if (!*name) return false;
  for (const char* c = name; *c; ++c)
    if (!std::isdigit(static_cast<unsigned char>(*c))) return false;
  return true;
}

// The program of a process; empty for one that ended meanwhile, a kernel thread or a
// process of another user.
std::string ExecutableOf(const char* id) {
  const std::string link = std::string("/proc/") + id + "/exe";
  char target[PATH_MAX];
  const ssize_t length = readlink(link.c_str(), target, sizeof target);
  if (length <= 0 || length == static_cast<ssize_t>(sizeof target)) return {};
  return std::string(target, static_cast<size_t>(length));
}

}  // namespace

bool ListProcesses(size_t limit, std::vector<RunningProcess>* processes) {
  processes->clear();
  const std::unique_ptr<DIR, int (*)(DIR*)> proc(opendir("/proc"), closedir);
  if (!proc) return false;
  size_t seen = 0;
  while (const dirent* entry = readdir(proc.get())) {
    if (!IsProcessId(entry->d_name)) continue;
    if (++seen > limit) break;
    std::string executable = ExecutableOf(entry->d_name);
    if (!executable.empty())
      processes->push_back({static_cast<pid_t>(std::strtol(entry->d_name, nullptr, 10)), std::move(executable)});
  }
  return true;
}

std::string FullPath(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr), free);
  return resolved ? std::string(resolved.get()) : path;
}
