#pragma once
// The source from which a scene file is read: the bytes come from the open file, and the
// checksum of the body is kept on the way, so that the body is checked as it is decoded
// instead of being held whole for a check before.
#include <cstdint>
#include <string>

#include "files/read_file.h"
#include "quillon/format/byte_reader.h"

namespace quillon::format {

// Thrown when the system refuses to read on; the message says why.
struct FileReadFailed : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class SceneFileSource : public ByteSource {
 public:
  explicit SceneFileSource(qae::files::InputFile& file);
  std::size_t Read(std::uint8_t* into, std::size_t size) override;
  // The checksum of the body bytes read so far, all of them once the reader reached the end.
  std::uint32_t BodyChecksum() const { return checksum_; }
  // Reads what is left of the file, for the checksum of a body that failed to decode.
  void ReadToEnd();

 private:
  qae::files::InputFile& file_;
  std::uint32_t checksum_;
};

}  // namespace quillon::format
