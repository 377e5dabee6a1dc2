#pragma once
// The sink through which a scene file is written: the bytes go on to the file's
// replacement, and the checksum of the body is kept on the way, so that the frame can be
// sealed without the body ever being whole in memory.
#include <cstdint>

#include "files/replace_file.h"
#include "quillon/format/byte_writer.h"

namespace quillon::format {

// Thrown when the file takes no more bytes; the replacement knows why.
struct FileWriteFailed {};

class SceneFileSink : public ByteSink {
 public:
  explicit SceneFileSink(qae::files::FileReplacement& file);
  void Append(const std::uint8_t* data, std::size_t size) override;
  void Rewrite(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override;
  std::uint32_t BodyChecksum() const { return checksum_; }

 private:
  qae::files::FileReplacement& file_;
  std::uint64_t size_ = 0;
  std::uint32_t checksum_;
};

}  // namespace quillon::format
