#include "files/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

#include "files/file_error.h"
#include "files/pending_temp.h"

namespace qae::files {
namespace {

// One write at a time in a process: the signal handlers know one temporary file.
std::mutex g_writing;

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

// The file's new name lasts through a crash only once its folder is on the disk too. The
// content is complete either way, so a folder that cannot be synced is no failure.
void SyncFolderOf(const std::string& path) {
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  const int fd = ::open(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

// Where the bytes go: `path` itself, or the file a link at `path` leads to, so that the link stays.
bool ResolveTarget(const std::string& path, std::string* target, std::string* error) {
  struct stat link {};
  if (::lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) {
    *target = path;
    return true;
  }
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  if (!real) return Fail(error, path, "cannot write: " + SystemReason(errno));
  *target = real.get();
  return true;
}

// Writes the temporary file and renames it over `target`; errno tells why when it fails.
bool WriteAndRename(const std::string& temp, const std::string& target, const struct stat* existing,
                    std::string_view bytes) {
  const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);  // the umask applies
  if (fd < 0) return false;
  bool ok = (!existing || ::fchmod(fd, existing->st_mode & 07777) == 0) && WriteAll(fd, bytes) && ::fsync(fd) == 0;
  int problem = errno;
  if (::close(fd) != 0 && ok) {
    ok = false;
    problem = errno;
  }
  if (ok && ::rename(temp.c_str(), target.c_str()) != 0) {
    ok = false;
    problem = errno;
  }
  if (!ok) ::unlink(temp.c_str());
  errno = problem;
  return ok;
}

// Whether `path` may be replaced: a regular file, or missing in an existing folder.
// `existing` receives what stat gave, or nothing when the file is missing.
bool Replaceable(const std::string& path, std::optional<struct stat>* existing, std::string* error) {
  struct stat info {};
  if (::stat(path.c_str(), &info) == 0) {
    if (S_ISDIR(info.st_mode)) return Fail(error, path, "cannot write: " + SystemReason(EISDIR));
    if (!S_ISREG(info.st_mode)) return Fail(error, path, "not a regular file; only a regular file is replaced");
    *existing = info;
    return true;
  }
  if (errno != ENOENT) return Fail(error, path, "cannot write: " + SystemReason(errno));
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  if (!parent.empty() && ::stat(parent.c_str(), &info) != 0)
    return Fail(error, path, "cannot write: " + SystemReason(errno));
  existing->reset();
  return true;
}

}  // namespace

bool CheckReplaceable(const std::string& path, std::string* error) {
  std::optional<struct stat> existing;
  return Replaceable(path, &existing, error);
}

bool ReplaceFileContent(const std::string& path, std::string_view bytes, std::string* error) {
  const std::lock_guard<std::mutex> lock(g_writing);
  std::optional<struct stat> existing;
  if (!Replaceable(path, &existing, error)) return false;
  std::string target;
  if (!ResolveTarget(path, &target, error)) return false;
  RemoveStaleTemps(target);
  const std::string temp = TempPathFor(target, ::getpid());
  const PendingTemp pending(temp);
  if (!WriteAndRename(temp, target, existing ? &*existing : nullptr, bytes))
    return Fail(error, path, "cannot write: " + SystemReason(errno));
  SyncFolderOf(target);
  return true;
}

}  // namespace qae::files
