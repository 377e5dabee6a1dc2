#include "quillon/format/file_sink.h"

#include <algorithm>
#include <string_view>

#include "quillon/format/file_frame.h"

namespace quillon::format {
namespace {

// Buffers handed over and not yet written, the one being written included: two keep the
// encoder and the writer busy together, more would only hold memory.
constexpr std::size_t kMaxHanded = 2;

std::string_view View(const std::uint8_t* data, std::size_t size) {
  return std::string_view(reinterpret_cast<const char*>(data), size);
}

}  // namespace

SceneFileSink::SceneFileSink(qae::files::FileReplacement& file) : file_(file), checksum_(EmptyChecksum()) {}

SceneFileSink::~SceneFileSink() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  if (writer_.joinable()) writer_.join();
}

bool SceneFileSink::Store(const std::uint8_t* data, std::size_t size) {
  if (!file_.Append(View(data, size))) return false;
  // The header is no part of the body that the checksum covers.
  const std::size_t header = size_ < kFrameHeaderBytes ? std::min(size, static_cast<std::size_t>(kFrameHeaderBytes - size_)) : 0;
  checksum_ = AddToChecksum(checksum_, data + header, size - header);
  size_ += size;
  return true;
}

void SceneFileSink::WriteHandedBuffers() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return !handed_.empty() || ending_; });
    if (ending_) return;
    std::vector<std::uint8_t>& buffer = handed_.front();
    lock.unlock();
    // After a failure the rest is not written; the encoder learns of it at its next hand-over.
    const bool stored = !failed_ && Store(buffer.data(), buffer.size());
    lock.lock();
    failed_ = failed_ || !stored;
    spare_.push_back(std::move(handed_.front()));
    spare_.back().clear();
    handed_.pop_front();
    changed_.notify_all();
  }
}

void SceneFileSink::Hand(std::vector<std::uint8_t>& buffer) {
  std::unique_lock<std::mutex> lock(mutex_);
  if (!writer_.joinable()) writer_ = std::thread(&SceneFileSink::WriteHandedBuffers, this);
  changed_.wait(lock, [this] { return handed_.size() < kMaxHanded || failed_; });
  if (failed_) throw FileWriteFailed{};
  const std::size_t capacity = buffer.capacity();
  handed_.push_back(std::move(buffer));
  if (spare_.empty()) {
    buffer = std::vector<std::uint8_t>();
    buffer.reserve(capacity);
  } else {
    buffer = std::move(spare_.back());
    spare_.pop_back();
  }
  changed_.notify_all();
}

void SceneFileSink::WaitUntilWritten() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return handed_.empty(); });
  if (failed_) throw FileWriteFailed{};
}

void SceneFileSink::Append(const std::uint8_t* data, std::size_t size) {
  WaitUntilWritten();
  if (!Store(data, size)) throw FileWriteFailed{};
}

void SceneFileSink::Rewrite(std::uint64_t offset, const std::uint8_t* data, std::size_t size) {
  WaitUntilWritten();
  if (!file_.Overwrite(offset, View(data, size))) throw FileWriteFailed{};
  if (offset >= kFrameHeaderBytes) checksum_ = ChecksumAfterRewrite(checksum_, data, size, size_ - offset - size);
}

std::uint32_t SceneFileSink::BodyChecksum() {
  WaitUntilWritten();
  return checksum_;
}

}  // namespace quillon::format
