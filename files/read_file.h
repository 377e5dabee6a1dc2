// Reading a whole input file that a user named: only a regular file is read, so that a fifo
// cannot block and a device such as /dev/zero cannot fill the memory, and no more than a
// cap the caller sets for that kind of file.
#pragma once

#include <cstddef>
#include <string>

namespace qae::files {

struct ReadLimit {
  std::size_t maxBytes;
  const char* what;  // the kind of file, for the message: "a project description"
};

// Reads all of `path` into `bytes`. False with "<path>: <reason>" in `error` when the path
// is missing or unreadable, is not a regular file, or holds more than `limit` allows.
// std::bad_alloc is left to the caller, which knows what it was reading for.
bool ReadWholeFile(const std::string& path, const ReadLimit& limit, std::string* bytes, std::string* error);

// An input file read in pieces, for content too large to hold whole: Open makes the checks of
// ReadWholeFile but for reading to the end, and Read gives the next bytes.
class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  bool Open(const std::string& path, const ReadLimit& limit, std::string* error);
  // The size the file had when it was opened.
  std::size_t Size() const { return size_; }
  // Up to `size` bytes into `into`: how many, 0 at the end. False with "<path>: cannot read:
  // <reason>" in `error` when the system refuses.
  bool Read(void* into, std::size_t size, std::size_t* got, std::string* error);

 private:
  std::string path_;
  int fd_ = -1;
  std::size_t size_ = 0;
};

// True when `path` names a regular file (after links); otherwise false with the reason.
// For inputs that another component opens itself.
bool CheckRegularFile(const std::string& path, std::string* error);

// "256 MiB", "1 MiB", "64 GiB" or a number of bytes: a cap as a user reads it.
std::string SizeText(std::size_t bytes);

}  // namespace qae::files
