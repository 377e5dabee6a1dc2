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
  FileReplacement replacement;
  if (!replacement.Begin(path, error)) return false;
  replacement.Append(bytes);  // a failure is kept for Commit to report
  return replacement.Commit(error);
}

bool FileReplacement::Begin(const std::string& path, std::string* error) {
  lock_ = std::unique_lock<std::mutex>(g_writing);
  path_ = path;
  std::optional<struct stat> existing;
  if (!Replaceable(path, &existing, error)) return false;
  if (!ResolveTarget(path, &target_, error)) return false;
  RemoveStaleTemps(target_);
  temp_ = TempPathFor(target_, ::getpid());
  pending_.emplace(temp_);
  fd_ = ::open(temp_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);  // the umask applies
  if (fd_ < 0 || (existing && ::fchmod(fd_, existing->st_mode & 07777) != 0)) {
    const int code = errno;
    if (fd_ < 0) temp_.clear();  // not made by this open: nothing of ours to remove
    Abandon();
    return Fail(error, path, "cannot write: " + SystemReason(code));
  }
  return true;
}

bool FileReplacement::Failed(int code) {
  if (problem_ == 0) problem_ = code;
  return false;
}

bool FileReplacement::Append(std::string_view bytes) {
  if (fd_ < 0 || problem_ != 0) return false;
  if (!WriteAll(fd_, bytes)) return Failed(errno);
  appended_ += bytes.size();
  StartWriteBack();
  return true;
}

// The disk takes what was written while more is being made, so that the flush at the commit
// has little left to wait for: a large file is otherwise written out all at once at its end.
// Only a hint; where the system does not take it the flush does all the work as before.
void FileReplacement::StartWriteBack() {
  constexpr std::uint64_t kWriteBackBytes = std::uint64_t{8} << 20;
  if (appended_ - writeBackFrom_ < kWriteBackBytes) return;
  ::sync_file_range(fd_, static_cast<off_t>(writeBackFrom_), static_cast<off_t>(appended_ - writeBackFrom_),
                    SYNC_FILE_RANGE_WRITE);
  writeBackFrom_ = appended_;
}

bool FileReplacement::Overwrite(std::uint64_t offset, std::string_view bytes) {
  if (fd_ < 0 || problem_ != 0) return false;
  while (!bytes.empty()) {
    const ssize_t n = ::pwrite(fd_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return Failed(errno);
    bytes.remove_prefix(static_cast<std::size_t>(n));
    offset += static_cast<std::uint64_t>(n);
  }
  return true;
}

bool FileReplacement::Commit(std::string* error) {
  if (fd_ < 0) return Fail(error, path_, "cannot write: " + SystemReason(EBADF));
  if (problem_ == 0 && ::fsync(fd_) != 0) Failed(errno);
  if (::close(fd_) != 0) Failed(errno);
  fd_ = -1;
  if (problem_ == 0 && ::rename(temp_.c_str(), target_.c_str()) != 0) Failed(errno);
  if (problem_ != 0) {
    Abandon();
    return Fail(error, path_, "cannot write: " + SystemReason(problem_));
  }
  temp_.clear();
  pending_.reset();
  SyncFolderOf(target_);
  return true;
}

// Removes the temporary file of a replacement that did not come to its rename.
void FileReplacement::Abandon() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  if (!temp_.empty()) ::unlink(temp_.c_str());
  temp_.clear();
  pending_.reset();
}

FileReplacement::~FileReplacement() { Abandon(); }

}  // namespace qae::files
