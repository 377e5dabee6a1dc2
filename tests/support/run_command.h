#pragma once
// Runs a command line of the build tree as a user would and captures what it says.
#include <string>
#include <vector>

namespace qae_test {

struct CommandResult {
  int exitCode = -1;   // the process's exit status; 128+N when killed by signal N
  std::string out;     // standard output
  std::string err;     // standard error
  double cpuSeconds = 0.0;     // user and system CPU time of the process
  long peakResidentKiB = 0;    // its largest resident set
};

// Runs `program` (a path) with `args`, standard input from /dev/null, extra environment
// entries ("NAME=value") added to the current environment. Never uses a shell.
CommandResult RunCommand(const std::string& program, const std::vector<std::string>& args,
                         const std::vector<std::string>& extraEnv = {});

// Paths of the built tools.
std::string AehostPath();
std::string OrytoolPath();

// A fresh empty directory under the system's temporary folder, removed by the caller.
std::string MakeTempDir(const std::string& prefix);

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& content);
bool FileExists(const std::string& path);

}  // namespace qae_test
