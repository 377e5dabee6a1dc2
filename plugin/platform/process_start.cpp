#include "plugin/platform/process_start.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

void CloseBoth(const int pipe[2]) {
  close(pipe[0]);
  close(pipe[1]);
}

// In the grandchild: runs the program, or writes why it could not into `report`.
[[noreturn]] void RunProgram(const std::string& program, std::vector<char*>& argv, int report) {
  execv(program.c_str(), argv.data());
  const int reason = errno;
  (void)!write(report, &reason, sizeof reason);
  _exit(127);
}

// The exec's outcome: the report pipe closes on its own when the exec succeeds (it is
// close-on-exec), and carries errno when it fails.
int ReadExecOutcome(int report) {
  int reason = 0;
  ssize_t n;
  do {
    n = read(report, &reason, sizeof reason);
  } while (n < 0 && errno == EINTR);
  return n == static_cast<ssize_t>(sizeof reason) ? reason : 0;
}

}  // namespace

bool StartDetachedProcess(const std::string& program, const std::vector<std::string>& arguments,
                          std::string* error) {
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) {
    *error = std::strerror(errno);
    return false;
  }
  // Two forks: the child ends at once, so the program is adopted by init and the host
  // never has to reap it.
  const pid_t child = fork();
  if (child < 0) {
    *error = std::strerror(errno);
    CloseBoth(report);
    return false;
  }
  if (child == 0) {
    setsid();
    const pid_t grandchild = fork();
    if (grandchild == 0) RunProgram(program, argv, report[1]);
    _exit(grandchild < 0 ? 127 : 0);
  }
  close(report[1]);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  const bool forked = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  const int reason = forked ? ReadExecOutcome(report[0]) : EAGAIN;
  close(report[0]);
  if (reason != 0) *error = std::strerror(reason);
  return reason == 0;
}
