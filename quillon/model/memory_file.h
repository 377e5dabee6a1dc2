// Memory files: a Filename that reads from or writes to bytes in memory, so
// that a document can arrive as bytes under a name and go out the same way.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "quillon/model/value.h"

namespace quillon {

struct MemoryBuffer {
  std::vector<uint8_t> bytes;
};

// The bytes behind a memory file, or null for a path on the disk.
std::shared_ptr<MemoryBuffer> MemoryOf(const Filename& file);
// Makes file a memory file on buffer: "mfs:/" and the leaf of its path ("memory" without
// one), or its text as it was when it was a memory file already.
void MakeMemoryFile(Filename& file, std::shared_ptr<MemoryBuffer> buffer);

}  // namespace quillon
