#include "plugin/platform/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>

bool FileExists(const std::string& path, bool asDirectory) {
  struct stat info {};
  if (path.empty() || stat(path.c_str(), &info) != 0) return false;
  return S_ISDIR(info.st_mode) == asDirectory;
}

std::optional<std::string> ReadFileBytes(const std::string& path) {
  if (!FileExists(path, false)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return std::nullopt;
  return bytes;
}

bool AppendToFile(const std::string& path, const std::string& text) {
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  size_t written = 0;
  while (written < text.size()) {
    const ssize_t n = write(fd, text.data() + written, text.size() - written);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    written += static_cast<size_t>(n);
  }
  const bool closed = close(fd) == 0;
  return closed && written == text.size();
}

std::string JoinPath(const std::string& folder, const std::string& leaf) {
  if (folder.empty() || folder.back() == '/') return folder + leaf;
  return folder + "/" + leaf;
}
