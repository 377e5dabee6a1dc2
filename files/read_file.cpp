#include "files/read_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "files/file_error.h"

namespace qae::files {
namespace {

const char* KindOf(mode_t mode) {
  if (S_ISDIR(mode)) return "a folder";
  if (S_ISFIFO(mode)) return "a fifo";
  if (S_ISCHR(mode)) return "a character device";
  if (S_ISBLK(mode)) return "a block device";
  if (S_ISSOCK(mode)) return "a socket";
  return "an unknown kind of file";
}

bool RequireRegular(const std::string& path, const struct stat& info, std::string* error) {
  if (S_ISREG(info.st_mode)) return true;
  return Fail(error, path, std::string("not a regular file (") + KindOf(info.st_mode) + ")");
}

bool TooLarge(const std::string& path, const ReadLimit& limit, std::string* error) {
  return Fail(error, path, "larger than the " + SizeText(limit.maxBytes) + " that " + limit.what + " may have");
}

// Reads to the end, not to the size fstat gave: a file may grow while it is read, and some
// files (those of /proc) say they are empty.
bool ReadToEnd(const std::string& path, InputFile& file, const ReadLimit& limit, std::string* bytes,
               std::string* error) {
  constexpr std::size_t kChunk = std::size_t{1} << 16;
  std::size_t total = 0;
  for (;;) {
    if (total > limit.maxBytes) return TooLarge(path, limit, error);
    bytes->resize(total + kChunk);
    std::size_t got = 0;
    if (!file.Read(bytes->data() + total, kChunk, &got, error)) {
      bytes->clear();
      return false;
    }
    if (got == 0) break;
    total += got;
  }
  bytes->resize(total);
  return true;
}

}  // namespace

bool CheckRegularFile(const std::string& path, std::string* error) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return Fail(error, path, "cannot open: " + SystemReason(errno));
  return RequireRegular(path, info, error);
}

bool InputFile::Open(const std::string& path, const ReadLimit& limit, std::string* error) {
  path_ = path;
  // Checked before the open too, since opening a device can itself have effects.
  if (!CheckRegularFile(path, error)) return false;
  // Without O_NONBLOCK a fifo put in the file's place since the check would block the open.
  fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (fd_ < 0) return Fail(error, path, "cannot open: " + SystemReason(errno));
  struct stat info {};
  if (::fstat(fd_, &info) != 0) return Fail(error, path, "cannot read: " + SystemReason(errno));
  if (!RequireRegular(path, info, error)) return false;
  size_ = static_cast<std::size_t>(info.st_size);
  if (size_ > limit.maxBytes) return TooLarge(path, limit, error);
  return true;
}

bool InputFile::Read(void* into, std::size_t size, std::size_t* got, std::string* error) {
  for (;;) {
    const ssize_t n = ::read(fd_, into, size);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return Fail(error, path_, "cannot read: " + SystemReason(errno));
    *got = static_cast<std::size_t>(n);
    return true;
  }
}

InputFile::~InputFile() {
  if (fd_ >= 0) ::close(fd_);
}

bool ReadWholeFile(const std::string& path, const ReadLimit& limit, std::string* bytes, std::string* error) {
  InputFile file;
  if (!file.Open(path, limit, error)) return false;
  bytes->clear();
  bytes->reserve(file.Size());
  return ReadToEnd(path, file, limit, bytes, error);
}

std::string SizeText(std::size_t bytes) {
  constexpr std::size_t kMiB = std::size_t{1} << 20;
  constexpr std::size_t kGiB = std::size_t{1} << 30;
  if (bytes >= kGiB && bytes % kGiB == 0) return std::to_string(bytes / kGiB) + " GiB";
  if (bytes >= kMiB && bytes % kMiB == 0) return std::to_string(bytes / kMiB) + " MiB";
  return std::to_string(bytes) + " bytes";
}

}  // namespace qae::files
