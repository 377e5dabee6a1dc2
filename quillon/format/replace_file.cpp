#include "quillon/format/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quillon::format {
namespace {

bool SetError(std::string* error, const std::string& text) {
  if (error) *error = text;
  return false;
}

std::string SystemReason(int code) { return std::strerror(code); }

bool WriteAll(int fd, const std::uint8_t* data, std::size_t size) {
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

bool ReadAll(int fd, std::uint8_t* data, std::size_t size) {
  while (size > 0) {
    const ssize_t n = ::read(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n == 0) errno = EIO;  // the file shrank while it was read
    if (n <= 0) return false;
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace

bool ReplaceFileContent(const std::string& path, const std::vector<std::uint8_t>& bytes,
                        std::string* error) {
  std::string temp = path + ".tmp-XXXXXX";
  const int fd = ::mkstemp(temp.data());
  if (fd < 0) return SetError(error, path + ": cannot create a temporary file: " + SystemReason(errno));
  // mkstemp creates the file for the owner only; a scene file gets the usual permissions.
  const mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(fd, 0666 & ~mask);
  const bool written = WriteAll(fd, bytes.data(), bytes.size()) && ::fsync(fd) == 0;
  const int writeErrno = errno;
  const bool closed = ::close(fd) == 0;
  if (!written || !closed) {
    ::unlink(temp.c_str());
    return SetError(error, path + ": cannot write: " + SystemReason(written ? errno : writeErrno));
  }
  if (::rename(temp.c_str(), path.c_str()) != 0) {
    const int renameErrno = errno;
    ::unlink(temp.c_str());
    return SetError(error, path + ": cannot replace: " + SystemReason(renameErrno));
  }
  return true;
}

bool ReadFileContent(const std::string& path, std::size_t maxBytes,
                     std::vector<std::uint8_t>& bytes, std::string* error) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return SetError(error, path + ": cannot open: " + SystemReason(errno));
  struct stat info {};
  if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    ::close(fd);
    return SetError(error, path + ": not a regular file");
  }
  const auto size = static_cast<std::uint64_t>(info.st_size);
  if (size > maxBytes) {
    ::close(fd);
    return SetError(error, path + ": " + std::to_string(size) + " bytes is more than the " +
                               std::to_string(maxBytes) + " that a scene file may have");
  }
  bytes.resize(size);
  const bool ok = ReadAll(fd, bytes.data(), bytes.size());
  const int readErrno = errno;
  ::close(fd);
  if (!ok) return SetError(error, path + ": cannot read: " + SystemReason(readErrno));
  return true;
}

}  // namespace quillon::format
