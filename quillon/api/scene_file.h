// An open scene file of table Hf: the path and mode it was opened with, and
// whether any write to it failed.
#pragma once

#include <string>

#include "plugin/engine/engine_ops.h"
#include "quillon/model/document.h"

struct SceneFile {
  std::string path;
  int32_t mode = 0;
  bool open = false;
  bool failed = false;
  std::string error;
};

namespace quillon {

// Writes document to the file's path; false (and the file marked failed) on
// any error, or when the file is not open for writing.
bool WriteSceneFile(SceneFile& file, const Document& document);
// Replaces the document's content with what path holds.
bool ReadSceneFile(const std::string& path, Document& document, std::string* error);

}  // namespace quillon
