#include "quillon/format/file_source.h"

#include <vector>

#include "quillon/format/file_frame.h"

namespace quillon::format {

SceneFileSource::SceneFileSource(qae::files::InputFile& file) : file_(file), checksum_(EmptyChecksum()) {}

std::size_t SceneFileSource::Read(std::uint8_t* into, std::size_t size) {
  std::size_t got = 0;
  std::string error;
  if (!file_.Read(into, size, &got, &error)) throw FileReadFailed(error);
  checksum_ = AddToChecksum(checksum_, into, got);
  return got;
}

void SceneFileSource::ReadToEnd() {
  std::vector<std::uint8_t> piece(ByteReader::kBufferBytes);
  while (Read(piece.data(), piece.size()) > 0) {
  }
}

}  // namespace quillon::format
