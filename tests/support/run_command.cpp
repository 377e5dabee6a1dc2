#include "tests/support/run_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace qae_test {
namespace {

// Reads both pipes until both are closed, so that a child writing a lot to one of
// them never blocks on a full pipe while we wait on the other.
void DrainPipes(int outFd, int errFd, std::string& out, std::string& err) {
  pollfd fds[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
  int open = 2;
  char buffer[65536];
  while (open > 0) {
    if (poll(fds, 2, -1) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
      ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        (i == 0 ? out : err).append(buffer, static_cast<size_t>(n));
      } else if (n == 0 || errno != EINTR) {
        close(fds[i].fd);
        fds[i].fd = -1;
        --open;
      }
    }
  }
}

}  // namespace

CommandResult RunCommand(const std::string& program, const std::vector<std::string>& args,
                         const std::vector<std::string>& extraEnv) {
  int outPipe[2], errPipe[2];
  if (pipe(outPipe) != 0 || pipe(errPipe) != 0) throw std::runtime_error("pipe failed");

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, outPipe[1], 1);
  posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);
  posix_spawn_file_actions_addclose(&actions, outPipe[0]);
  posix_spawn_file_actions_addclose(&actions, errPipe[0]);

  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);

  std::vector<char*> envp;
  for (char** e = environ; *e; ++e) envp.push_back(*e);
  for (const auto& e : extraEnv) envp.push_back(const_cast<char*>(e.c_str()));
  envp.push_back(nullptr);

  pid_t pid = 0;
  int rc = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data());
  posix_spawn_file_actions_destroy(&actions);
  close(outPipe[1]);
  close(errPipe[1]);

  CommandResult result;
  if (rc != 0) {
    close(outPipe[0]);
    close(errPipe[0]);
    result.err = "cannot start " + program + ": " + std::strerror(rc);
    return result;
  }
  DrainPipes(outPipe[0], errPipe[0], result.out, result.err);
  int status = 0;
  rusage usage{};
  while (wait4(pid, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  result.cpuSeconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                      static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  result.peakResidentKiB = usage.ru_maxrss;
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  else if (WIFSIGNALED(status)) result.exitCode = 128 + WTERMSIG(status);
  return result;
}

std::string AehostPath() { return std::string(QAE_BIN_DIR) + "/aehost"; }
std::string OrytoolPath() { return std::string(QAE_BIN_DIR) + "/orytool"; }

std::string MakeTempDir(const std::string& prefix) {
  const char* base = std::getenv("TMPDIR");
  std::string pattern = std::string(base && *base ? base : "/tmp") + "/" + prefix + "-XXXXXX";
  std::vector<char> buffer(pattern.begin(), pattern.end());
  buffer.push_back('\0');
  if (!mkdtemp(buffer.data())) throw std::runtime_error("mkdtemp failed for " + pattern);
  return buffer.data();
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) throw std::runtime_error("cannot write " + path);
  out << content;
}

bool FileExists(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0;
}

}  // namespace qae_test
