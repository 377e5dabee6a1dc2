// An open scene file of table Hf: the path and mode it was opened with, and
// whether any write to it failed.
#pragma once

#include <memory>
#include <string>

#include "plugin/engine/engine_ops.h"
#include "quillon/model/document.h"
#include "quillon/model/memory_file.h"

struct SceneFile {
  std::string path;
  int32_t mode = 0;
  bool open = false;
  bool failed = false;
  std::string error;
  // The bytes of a memory file that the file was opened on, else null.
  std::shared_ptr<quillon::MemoryBuffer> memory;
  // The 3D application's file version to write (SetWriterVersion); 0 for the current one.
  int32_t writerVersion = 0;
};

namespace quillon {

// Writes document to the file's path; false (and the file marked failed) on
// any error, or when the file is not open for writing.
bool WriteSceneFile(SceneFile& file, const Document& document);
// Replaces the document's content with what path holds.
bool ReadSceneFile(const std::string& path, Document& document, std::string* error);
// The same for a file that may be a memory file.
bool ReadSceneFileFrom(const Filename& file, Document& document, std::string* error);

}  // namespace quillon
