#pragma once
// The sink through which a scene file is written: the bytes go on to the file's
// replacement, and the checksum of the body is kept on the way, so that the frame can be
// sealed without the body ever being whole in memory. Full buffers are written and summed
// on a thread of the sink's own while the encoder fills the next one; a few buffers at most
// wait, so the memory a write takes stays bounded.
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "files/replace_file.h"
#include "quillon/format/byte_writer.h"

namespace quillon::format {

// Thrown when the file takes no more bytes; the replacement knows why.
struct FileWriteFailed {};

class SceneFileSink : public ByteSink {
 public:
  explicit SceneFileSink(qae::files::FileReplacement& file);
  // Buffers still waiting are dropped: a write that ends early is abandoned anyway.
  ~SceneFileSink() override;
  SceneFileSink(const SceneFileSink&) = delete;
  SceneFileSink& operator=(const SceneFileSink&) = delete;

  void Append(const std::uint8_t* data, std::size_t size) override;
  void Hand(std::vector<std::uint8_t>& buffer) override;
  void Rewrite(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override;
  // Once every byte handed over is in the file: the checksum of the body.
  std::uint32_t BodyChecksum();

 private:
  // Writes and sums bytes; false when the file took them not.
  bool Store(const std::uint8_t* data, std::size_t size);
  // Waits until the handed buffers are in the file; throws FileWriteFailed if one failed.
  void WaitUntilWritten();
  // The sink's thread: writes the handed buffers in order until the sink ends.
  void WriteHandedBuffers();

  qae::files::FileReplacement& file_;
  std::uint64_t size_ = 0;
  std::uint32_t checksum_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::vector<std::uint8_t>> handed_;  // in order; the front one is being written
  std::vector<std::vector<std::uint8_t>> spare_;  // written, for the encoder to fill again
  bool failed_ = false;
  bool ending_ = false;
  std::thread writer_;
};

}  // namespace quillon::format
