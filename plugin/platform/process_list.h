#pragma once
// The processes of the system, as /proc shows them.
#include <sys/types.h>

#include <string>
#include <vector>

struct RunningProcess {
  pid_t id;
  std::string executable;  // the full path of the program it runs
};

// Up to `limit` processes whose program this user may read, in the order /proc lists them;
// false when the list itself cannot be read.
bool ListProcesses(size_t limit, std::vector<RunningProcess>* processes);

// The full form of `path`: absolute, without links, "." or ".."; the path itself when it
// cannot be resolved.
std::string FullPath(const std::string& path);
