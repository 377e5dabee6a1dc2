// Writing a whole file so that readers see either the old content or the complete new one,
// and a failure or a signal leaves nothing behind but what was there before.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "files/pending_temp.h"

namespace qae::files {

// Writes `bytes` to a temporary file beside `path`, flushes it to the disk and renames it
// over `path`. Only a regular file or a missing path is replaced (a link is kept and the file
// it leads to replaced); an existing file keeps its permissions, a new one gets 0666 less the
// umask. On any failure the temporary file is removed, `path` keeps what it held, and
// `error` receives "<path>: <reason>" in the system's words where it gave one.
bool ReplaceFileContent(const std::string& path, std::string_view bytes, std::string* error);

// The same replacement for content made piece by piece, too large to hold whole: Begin checks
// `path` and opens the temporary file, Append adds to its end, Overwrite rewrites bytes
// written before (a length or a sum known only at the end), and Commit flushes and renames.
// A replacement that is not committed removes its temporary file when it ends. The first
// failure is kept: later calls do nothing and Commit reports it. One at a time in a process.
class FileReplacement {
 public:
  FileReplacement() = default;
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  ~FileReplacement();

  bool Begin(const std::string& path, std::string* error);
  bool Append(std::string_view bytes);
  bool Overwrite(std::uint64_t offset, std::string_view bytes);
  bool Commit(std::string* error);

 private:
  bool Failed(int code);
  void StartWriteBack();
  void Abandon();

  std::unique_lock<std::mutex> lock_;
  std::string path_;
  std::string target_;
  std::string temp_;
  std::optional<PendingTemp> pending_;
  int fd_ = -1;
  int problem_ = 0;
  std::uint64_t appended_ = 0;       // bytes appended so far
  std::uint64_t writeBackFrom_ = 0;  // where the disk has not yet been asked to take them
};

// What ReplaceFileContent checks before it writes: that `path` is a regular file or a missing
// one in an existing folder. False with the reason, for a writer that opens its target early.
bool CheckReplaceable(const std::string& path, std::string* error);

}  // namespace qae::files
