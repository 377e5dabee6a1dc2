#include "quillon/format/file_sink.h"

#include <algorithm>
#include <string_view>

#include "quillon/format/file_frame.h"

namespace quillon::format {
namespace {

std::string_view View(const std::uint8_t* data, std::size_t size) {
  return std::string_view(reinterpret_cast<const char*>(data), size);
}

}  // namespace

SceneFileSink::SceneFileSink(qae::files::FileReplacement& file) : file_(file), checksum_(EmptyChecksum()) {}

void SceneFileSink::Append(const std::uint8_t* data, std::size_t size) {
  if (!file_.Append(View(data, size))) throw FileWriteFailed{};
  // The header is no part of the body that the checksum covers.
  const std::size_t header = size_ < kFrameHeaderBytes ? std::min(size, static_cast<std::size_t>(kFrameHeaderBytes - size_)) : 0;
  checksum_ = AddToChecksum(checksum_, data + header, size - header);
  size_ += size;
}

void SceneFileSink::Rewrite(std::uint64_t offset, const std::uint8_t* data, std::size_t size) {
  if (!file_.Overwrite(offset, View(data, size))) throw FileWriteFailed{};
  if (offset >= kFrameHeaderBytes) checksum_ = ChecksumAfterRewrite(checksum_, data, size, size_ - offset - size);
}

}  // namespace quillon::format
