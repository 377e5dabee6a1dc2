#include "files/pending_temp.h"

#include <dirent.h>
#include <limits.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>

namespace qae::files {
namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr std::string_view kTempSuffix = ".tmp";

// What a signal handler may touch: a fixed buffer, and whether it holds a file to remove.
char g_tempPath[PATH_MAX];
volatile std::sig_atomic_t g_armed = 0;

void RemoveTempAndEnd(int signal) {
  if (g_armed) ::unlink(g_tempPath);
  ::signal(signal, SIG_DFL);
  ::raise(signal);  // delivered as soon as this handler returns, with the default action
}

// FNV-1a: stable across runs and builds, so that a later run finds what an earlier one left.
std::uint64_t NameHash(std::string_view text) {
  std::uint64_t hash = 14695981039346656037u;
  for (const unsigned char c : text) {
    hash ^= c;
    hash *= 1099511628211u;
  }
  return hash;
}

std::string TempPrefix(const std::filesystem::path& target) {
  char text[20];
  std::snprintf(text, sizeof text, "%016" PRIx64, NameHash(target.filename().string()));
  return "." + std::string(text) + ".";
}

std::filesystem::path FolderOf(const std::filesystem::path& target) {
  return target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
}

// The pid in a temporary's name of this prefix, or 0 when the name is not one.
long PidOfTemp(std::string_view name, std::string_view prefix) {
  if (name.size() <= prefix.size() + kTempSuffix.size() || !name.starts_with(prefix) || !name.ends_with(kTempSuffix))
    return 0;
  const std::string_view digits = name.substr(prefix.size(), name.size() - prefix.size() - kTempSuffix.size());
  if (digits.size() > 9) return 0;
  long pid = 0;
  for (const char c : digits) {
    if (c < '0' || c > '9') return 0;
    pid = pid * 10 + (c - '0');
  }
  return pid;
}

bool Abandoned(long pid) { return pid == ::getpid() || (::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH); }

}  // namespace

std::string TempPathFor(const std::string& target, long pid) {
  const std::filesystem::path path(target);
  return (FolderOf(path) / (TempPrefix(path) + std::to_string(pid) + std::string(kTempSuffix))).string();
}

void RemoveStaleTemps(const std::string& target) {
  const std::filesystem::path path(target);
  const std::filesystem::path folder = FolderOf(path);
  const std::string prefix = TempPrefix(path);
  DIR* dir = ::opendir(folder.c_str());
  if (!dir) return;  // the write itself will say what is wrong with the folder
  while (const dirent* entry = ::readdir(dir)) {
    const long pid = PidOfTemp(entry->d_name, prefix);
    if (pid > 0 && Abandoned(pid)) ::unlink((folder / entry->d_name).c_str());
  }
  ::closedir(dir);
}

PendingTemp::PendingTemp(const std::string& tempPath) {
  // A path too long for the buffer is too long to create, too; the write fails on its own.
  if (tempPath.size() < sizeof g_tempPath) {
    std::memcpy(g_tempPath, tempPath.c_str(), tempPath.size() + 1);
    g_armed = 1;
  }
  struct sigaction remove {};
  remove.sa_handler = RemoveTempAndEnd;
  sigemptyset(&remove.sa_mask);
  for (std::size_t i = 0; i < std::size(kEndingSignals); ++i) {
    ::sigaction(kEndingSignals[i], nullptr, &before[i]);
    // A signal the process ignores (under nohup, say) stays ignored.
    if (before[i].sa_handler != SIG_IGN) ::sigaction(kEndingSignals[i], &remove, nullptr);
  }
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigemptyset(&ignore.sa_mask);
  ::sigaction(SIGXFSZ, &ignore, &before[std::size(kEndingSignals)]);
}

PendingTemp::~PendingTemp() {
  g_armed = 0;
  for (std::size_t i = 0; i < std::size(kEndingSignals); ++i) ::sigaction(kEndingSignals[i], &before[i], nullptr);
  ::sigaction(SIGXFSZ, &before[std::size(kEndingSignals)], nullptr);
}

}  // namespace qae::files
