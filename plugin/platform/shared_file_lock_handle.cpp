#include "plugin/platform/shared_file_lock_handle.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

constexpr int32_t kRetryMilliseconds = 500;

const char* LockWord(bool write) { return write ? "write" : "read"; }

}  // namespace

int TryLockFile(const std::string& path, bool write, std::string* errorText) {
  const int flags = (write ? O_WRONLY | O_CREAT : O_RDONLY) | O_CLOEXEC;
  int handle = ::open(path.c_str(), flags, 0644);
  if (handle >= 0 && ::flock(handle, (write ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0) {
    const int lockError = errno;
    ::close(handle);
    handle = kNoFileHandle;
    errno = lockError;
  }
  if (handle >= 0) return handle;
  *errorText = std::string("\nFailed to get ") + LockWord(write) + " lock : " + std::strerror(errno);
  return kNoFileHandle;
}

int AcquireFileLock(const std::string& path, bool write, int32_t seconds, void (*sleep)(int32_t milliseconds),
                    std::string* errorText) {
  int64_t remaining = static_cast<int64_t>(seconds) * 1000;
  int handle = TryLockFile(path, write, errorText);
  while (handle == kNoFileHandle && remaining >= 1) {
    remaining -= kRetryMilliseconds;
    sleep(kRetryMilliseconds);
    handle = TryLockFile(path, write, errorText);
  }
  if (handle != kNoFileHandle) {
    errorText->clear();
    return handle;
  }
  *errorText += std::string("\nFailed to get ") + LockWord(write) + " lock on file " + path + " after " +
                std::to_string(seconds) + " seconds. Gave up.";
  return kNoFileHandle;
}

bool ReleaseFileLock(int handle, std::string* errorText) {
  if (::close(handle) == 0) return true;
  *errorText += std::string("Failed to release file lock.\n") + std::strerror(errno);
  return false;
}

